// Parsing the command line: options of every command on both sides of the
// command's name, a command's own options after it.

#include <cli/CommandLine.h>

#include <gtest/gtest.h>

namespace vesk::cli::test {
namespace {

std::optional<CommandLine> parse(const QStringList& arguments, QString* error = nullptr,
                                 QString* command = nullptr) {
    QString ignoredError;
    QString ignoredCommand;
    return parseCommandLine(arguments, error ? error : &ignoredError,
                            command ? command : &ignoredCommand);
}

TEST(CommandLine, OptionsOfEveryCommandStandOnBothSidesOfTheCommand) {
    const std::optional<CommandLine> line =
        parse({QStringLiteral("--url"), QStringLiteral("disc=http://a/"), QStringLiteral("call"),
               QStringLiteral("disc"), QStringLiteral("--verbose"), QStringLiteral("discCalc"),
               QStringLiteral("--url"), QStringLiteral("sales=http://b/"),
               QStringLiteral("--config"), QStringLiteral("vesk.ini")});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->command, QStringLiteral("call"));
    EXPECT_EQ(line->arguments, (QStringList{QStringLiteral("disc"), QStringLiteral("discCalc")}));
    EXPECT_EQ(line->urls,
              (QStringList{QStringLiteral("disc=http://a/"), QStringLiteral("sales=http://b/")}));
    EXPECT_EQ(line->configFile, QStringLiteral("vesk.ini"));
    EXPECT_TRUE(line->verbose);
    EXPECT_FALSE(line->help);
}

TEST(CommandLine, SingleDashIsTheStandardInputArgument) {
    const std::optional<CommandLine> line =
        parse({QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
               QStringLiteral("-")});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->arguments.value(2), QStringLiteral("-"));
}

TEST(CommandLine, DemoTakesItsListenAddress) {
    const std::optional<CommandLine> line =
        parse({QStringLiteral("demo"), QStringLiteral("--external"), QStringLiteral("--listen"),
               QStringLiteral("127.0.0.1:8080")});
    ASSERT_TRUE(line);
    EXPECT_TRUE(line->external);
    EXPECT_EQ(line->listenHost, QStringLiteral("127.0.0.1"));
    EXPECT_EQ(line->listenPort, 8080);
}

TEST(CommandLine, OptionsOfDemoAreNoOptionsOfOtherCommands) {
    QString error;
    QString command;
    EXPECT_FALSE(parse({QStringLiteral("ops"), QStringLiteral("--external")}, &error, &command));
    EXPECT_EQ(error, QStringLiteral("Unknown option 'external'."));
    EXPECT_EQ(command, QStringLiteral("ops"));
}

TEST(CommandLine, HelpWithoutCommandIsTheHelpCommand) {
    const std::optional<CommandLine> line = parse({QStringLiteral("--help")});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->command, QStringLiteral("help"));
}

TEST(CommandLine, HelpOfACommandSkipsTheCountOfItsArguments) {
    const std::optional<CommandLine> line = parse({QStringLiteral("record"), QStringLiteral("-h")});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->command, QStringLiteral("record"));
    EXPECT_TRUE(line->help);
}

TEST(CommandLine, MistakeBeforeTheCommandGetsTheGeneralUsage) {
    QString error;
    QString command = QStringLiteral("unchanged");
    EXPECT_FALSE(parse({QStringLiteral("--bogus"), QStringLiteral("ops")}, &error, &command));
    EXPECT_EQ(error, QStringLiteral("Unknown option 'bogus'."));
    EXPECT_EQ(command, QString());
}

TEST(CommandLine, UsageOfAnUnknownCommandIsTheGeneralOne) {
    EXPECT_EQ(usage(QStringLiteral("sell")), usage());
    EXPECT_TRUE(isCommand(QStringLiteral("call")));
    EXPECT_FALSE(isCommand(QStringLiteral("sell")));
}

} // namespace
} // namespace vesk::cli::test
