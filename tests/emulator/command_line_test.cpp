// The command line of vesk-emulator.

#include <emulator/CommandLine.h>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

std::optional<CommandLine> parse(QStringList arguments, QString* error = nullptr) {
    arguments.prepend(QStringLiteral("vesk-emulator"));
    return parseCommandLine(arguments, error);
}

TEST(CommandLineTest, DefaultsServeTheLoopbackPortInMemory) {
    const std::optional<CommandLine> line = parse({});
    ASSERT_TRUE(line);
    EXPECT_FALSE(line->help);
    EXPECT_FALSE(line->version);
    EXPECT_EQ(line->options.host, "127.0.0.1");
    EXPECT_EQ(line->options.port, 55555);
    EXPECT_EQ(line->options.databaseFile, "");
    EXPECT_EQ(line->options.seedFile, "");
}

TEST(CommandLineTest, OptionsSetTheAddressDatabaseAndSeed) {
    const std::optional<CommandLine> line =
        parse({"--listen", "0.0.0.0:8080", "--db", "state.db", "--seed=my.json"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->options.host, "0.0.0.0");
    EXPECT_EQ(line->options.port, 8080);
    EXPECT_EQ(line->options.databaseFile, "state.db");
    EXPECT_EQ(line->options.seedFile, "my.json");
    EXPECT_TRUE(parse({"--help"})->help);
    EXPECT_FALSE(parse({"--help"})->version);
    EXPECT_TRUE(parse({"--version"})->version);
}

TEST(CommandLineTest, StrictRequestsAndTheJournalsBoundsAreTaken) {
    const std::optional<CommandLine> defaults = parse({});
    EXPECT_FALSE(defaults->options.strictRequests);
    EXPECT_EQ(defaults->options.journalEntries, 10000);
    EXPECT_EQ(defaults->options.journalBytes, 64 * 1024 * 1024);
    const std::optional<CommandLine> line =
        parse({"--strict-requests", "--journal-size", "0", "--journal-bytes", "4096"});
    ASSERT_TRUE(line);
    EXPECT_TRUE(line->options.strictRequests);
    EXPECT_EQ(line->options.journalEntries, 0);
    EXPECT_EQ(line->options.journalBytes, 4096);
}

TEST(CommandLineTest, FaultsAreReadInTheirOrder) {
    const std::optional<CommandLine> line =
        parse({"--fault", "commitCheque:reset,after;times=1", "--fault=itemInfo:delay=5"});
    ASSERT_TRUE(line);
    ASSERT_EQ(line->options.faults.size(), 2);
    EXPECT_EQ(line->options.faults[0].operation, "commitCheque");
    EXPECT_EQ(line->options.faults[0].fault.kind, Fault::Kind::Reset);
    EXPECT_TRUE(line->options.faults[0].fault.after);
    EXPECT_EQ(line->options.faults[0].times, 1);
    EXPECT_EQ(line->options.faults[1].fault.kind, Fault::Kind::Delay);
    EXPECT_FALSE(line->options.faults[1].fault.after);
}

TEST(CommandLineTest, ListenTakesBracketedIpv6AndPortZero) {
    const std::optional<CommandLine> line = parse({"--listen", "[::1]:0"});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->options.host, "::1");
    EXPECT_EQ(line->options.port, 0);
}

struct BadUsage {
    const char* name;
    QStringList arguments;
    const char* error;
};

void PrintTo(const BadUsage& usage, std::ostream* out) {
    *out << usage.name;
}

class BadUsageTest : public ::testing::TestWithParam<BadUsage> {};

TEST_P(BadUsageTest, IsRefusedWithAMessage) {
    QString error;
    EXPECT_FALSE(parse(GetParam().arguments, &error));
    EXPECT_EQ(error.toStdString(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Usage, BadUsageTest,
    ::testing::Values(
        BadUsage{"unknown_option", {"--port", "1"}, "Unknown option 'port'."},
        BadUsage{"missing_value", {"--db"}, "Missing value after '--db'."},
        BadUsage{"stray_argument", {"serve"}, "Unexpected argument: serve"},
        BadUsage{"listen_without_port",
                 {"--listen", "localhost"},
                 "--listen: \"localhost\" is not HOST:PORT (a port from 0 to 65535)"},
        BadUsage{"listen_port_too_large",
                 {"--listen", "127.0.0.1:65536"},
                 "--listen: \"127.0.0.1:65536\" is not HOST:PORT (a port from 0 to 65535)"},
        BadUsage{"listen_without_host",
                 {"--listen", ":80"},
                 "--listen: \":80\" is not HOST:PORT (a port from 0 to 65535)"},
        BadUsage{"empty_db", {"--db", ""}, "--db: the file name is empty"},
        BadUsage{"negative_journal_size",
                 {"--journal-size", "-1"},
                 "--journal-size: \"-1\" is not a number of requests from 0"},
        BadUsage{"zero_journal_bytes",
                 {"--journal-bytes", "0"},
                 "--journal-bytes: \"0\" is not a number of bytes from 1"},
        BadUsage{"fault_aimed_by_a_bad_condition",
                 {"--fault", "commitCheque:reset;where=$.dataId = 1"},
                 "--fault commitCheque:reset;where=$.dataId = 1: where: expected ==, !=, <, <=, "
                 ">, >=, ~=, exists or absent after $.dataId at column 10"},
        BadUsage{"after_on_a_fault_that_sends_no_reply_of_the_operation",
                 {"--fault", "commitCheque:notjson,after"},
                 "--fault commitCheque:notjson,after: notjson does not take \"after\""}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::emulator::test
