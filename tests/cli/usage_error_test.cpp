// A usage error is one line and a pointer to the help, never the whole usage.

#include "InProcess.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vesk::cli::test {
namespace {

struct UsageRow {
    const char* name;
    QStringList arguments;
    const char* err; // the whole of standard error
};

void PrintTo(const UsageRow& row, std::ostream* out) {
    *out << row.name;
}

class UsageError : public testing::TestWithParam<UsageRow> {};

TEST_P(UsageError, IsOneLineAndWhereToReadMore) {
    const CliRun run = runInProcess(GetParam().arguments);
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.out, QString());
    EXPECT_EQ(run.err, QString::fromUtf8(GetParam().err));
}

INSTANTIATE_TEST_SUITE_P(
    Cli, UsageError,
    testing::Values(
        UsageRow{"UnknownOptionPointsToTheGeneralHelp",
                 {QStringLiteral("--frobnicate")},
                 "vesk: error: Unknown option 'frobnicate'.\n"
                 "Try 'vesk --help' for more information.\n"},
        UsageRow{"NoCommandPointsToTheGeneralHelp",
                 {},
                 "vesk: error: no command given\n"
                 "Try 'vesk --help' for more information.\n"},
        UsageRow{"MistakeInAKnownCommandPointsToItsHelp",
                 {QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                  QStringLiteral("--timeout"), QStringLiteral("-1")},
                 "vesk: error: --timeout: \"-1\" is not a duration: write 1500ms, 2s or 1.5s (a "
                 "bare number counts milliseconds), from 1ms to 3600s\n"
                 "Try 'vesk help call' for more information.\n"},
        UsageRow{"WrongArgumentCountPointsToTheCommandsHelp",
                 {QStringLiteral("record")},
                 "vesk: error: record takes 1 argument, not 0\n"
                 "Try 'vesk help record' for more information.\n"}),
    [](const testing::TestParamInfo<UsageRow>& info) { return std::string(info.param.name); });

TEST(Help, ListsTheExitStatusesByKindOfFailure) {
    const CliRun run = runInProcess({QStringLiteral("--help")});
    EXPECT_EQ(run.exitCode, 0);
    for (const char* line : {"  6   the host name did not resolve\n",
                             "  7   no connection: refused, or not made within the connect "
                             "timeout\n",
                             "  28  the request was sent and no reply came within the timeout\n",
                             "  35  no secure connection (TLS handshake or certificate)\n",
                             "  52  the server closed the connection without any reply\n",
                             "  56  the connection broke: reset, or cut while the reply arrived\n",
                             "  63  the reply is larger than the transport's limit\n"})
        EXPECT_TRUE(run.out.contains(QString::fromUtf8(line))) << line;
}

} // namespace
} // namespace vesk::cli::test
