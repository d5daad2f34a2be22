// `vesk demo`: the whole sale, against an emulator in the vesk process or one
// already listening.

#include "EmulatorFixture.h"

namespace vesk::cli::test {
namespace {

const QString allGood = QStringLiteral("Every step behaved as the seed says.");

TEST(DemoCommand, RunsTheWholeSaleAgainstItsOwnEmulator) {
    const VeskRun run = runVesk(
        {QStringLiteral("demo"), QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0")});
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("A whole sale through the library's clients\n")));
    EXPECT_TRUE(run.out.contains(allGood)) << run.out.toStdString();
}

using ExternalDemo = EmulatorTest;

TEST_F(ExternalDemo, RunsTheWholeSaleAgainstAListeningEmulator) {
    const VeskRun run =
        runVesk({QStringLiteral("demo"), QStringLiteral("--external"), QStringLiteral("--listen"),
                 QStringLiteral("127.0.0.1:%1").arg(port())});
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_TRUE(run.out.contains(allGood)) << run.out.toStdString();
}

TEST_F(ExternalDemo, RunsAgainAndAgainAgainstTheSameEmulator) {
    const QStringList arguments{QStringLiteral("demo"), QStringLiteral("--external"),
                                QStringLiteral("--listen"),
                                QStringLiteral("127.0.0.1:%1").arg(port())};
    for (int run = 1; run <= 3; ++run) {
        const VeskRun demo = runVesk(arguments);
        EXPECT_EQ(demo.exitCode, 0) << "run " << run << ": " << testing::PrintToString(demo);
        EXPECT_TRUE(demo.out.contains(QStringLiteral("Emulator reset to its seed\n")))
            << demo.out.toStdString();
        EXPECT_TRUE(demo.out.contains(allGood)) << demo.out.toStdString();
    }
}

TEST(DemoCommand, NoEmulatorListeningFailsWithExitStatus1) {
    const ClosedPort closed;
    const VeskRun run =
        runVesk({QStringLiteral("demo"), QStringLiteral("--external"), QStringLiteral("--listen"),
                 QStringLiteral("127.0.0.1:%1").arg(closed.port())});
    EXPECT_EQ(run.exitCode, 1) << testing::PrintToString(run);
    EXPECT_TRUE(run.out.contains(QStringLiteral("FAILED"))) << run.out.toStdString();
}

TEST(DemoCommand, UrlOptionIsIgnoredWithAWarning) {
    const ClosedPort closed;
    const VeskRun run = runVesk({QStringLiteral("demo"), QStringLiteral("--listen"),
                                 QStringLiteral("127.0.0.1:0"), QStringLiteral("--url"),
                                 QStringLiteral("sales=http://127.0.0.1:%1/").arg(closed.port())});
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.err, QStringLiteral("vesk: warning: the demo points the clients at its "
                                      "emulator; --url is ignored\n"));
}

} // namespace
} // namespace vesk::cli::test
