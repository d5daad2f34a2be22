// `vesk emulator`: driving a running emulator's faults, reset and health.

#include "EmulatorFixture.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace vesk::cli::test {
namespace {

using EmulatorCommand = EmulatorTest;

QStringList emulatorArguments(quint16 port, const QStringList& action) {
    return QStringList{QStringLiteral("emulator")} + action +
           QStringList{QStringLiteral("--listen"), QStringLiteral("127.0.0.1:%1").arg(port)};
}

QJsonObject jsonOf(const VeskRun& run) {
    return QJsonDocument::fromJson(run.out.toUtf8()).object();
}

TEST_F(EmulatorCommand, FaultMakesTheNextCallFailAndClearEndsIt) {
    const VeskRun added = runVesk(emulatorArguments(
        port(), {QStringLiteral("fault"), QStringLiteral("itemInfo:error=503,code=42,msg=Busy")}));
    ASSERT_EQ(added.exitCode, 0) << testing::PrintToString(added);
    EXPECT_EQ(jsonOf(added).value(QStringLiteral("spec")).toString(),
              QStringLiteral("itemInfo:error=503,code=42,msg=Busy"));

    const VeskRun refused = call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                                 QStringLiteral(R"({"barcode": "4601234000017"})"));
    EXPECT_EQ(refused.exitCode, 2) << testing::PrintToString(refused);
    EXPECT_TRUE(refused.err.contains(QStringLiteral("Busy"))) << refused.err.toStdString();

    const VeskRun listed = runVesk(emulatorArguments(port(), {QStringLiteral("faults")}));
    EXPECT_EQ(listed.exitCode, 0);
    const QJsonArray faults = jsonOf(listed).value(QStringLiteral("faults")).toArray();
    ASSERT_EQ(faults.size(), 1) << listed.out.toStdString();
    EXPECT_EQ(faults.at(0).toObject().value(QStringLiteral("fired")).toInt(), 1);

    const VeskRun cleared = runVesk(emulatorArguments(port(), {QStringLiteral("clear")}));
    EXPECT_EQ(jsonOf(cleared), (QJsonObject{{QStringLiteral("cleared"), 1}}));
    EXPECT_EQ(respond(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                      QStringLiteral(R"({"barcode": "4601234000017"})"))
                  .value(QStringLiteral("barcode"))
                  .toString(),
              QStringLiteral("4601234000017"));
}

TEST_F(EmulatorCommand, HealthAndResetAnswerAsJson) {
    const VeskRun health = runVesk(emulatorArguments(port(), {QStringLiteral("health")}));
    EXPECT_EQ(health.exitCode, 0) << testing::PrintToString(health);
    EXPECT_EQ(jsonOf(health).value(QStringLiteral("status")).toString(), QStringLiteral("ok"));
    const VeskRun reset = runVesk(emulatorArguments(port(), {QStringLiteral("reset")}));
    EXPECT_EQ(reset.exitCode, 0) << testing::PrintToString(reset);
    EXPECT_EQ(jsonOf(reset), (QJsonObject{{QStringLiteral("reset"), true}}));
}

TEST_F(EmulatorCommand, BadSpecIsRefusedByTheEmulatorWithItsReason) {
    const VeskRun run = runVesk(
        emulatorArguments(port(), {QStringLiteral("fault"), QStringLiteral("itemInfo:explode")}));
    EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(
        QStringLiteral(
            "vesk: error: the emulator at http://127.0.0.1:%1 refused (HTTP 400): Bad fault: "
            "unknown fault \"explode\"")
            .arg(port())))
        << run.err.toStdString();
}

TEST(EmulatorCommandUsage, UnknownActionOrMissingSpecIsAUsageError) {
    const ClosedPort closed;
    const VeskRun unknown = runVesk(emulatorArguments(closed.port(), {QStringLiteral("restart")}));
    EXPECT_EQ(unknown.exitCode, 64);
    EXPECT_EQ(unknown.err,
              QStringLiteral("vesk: error: unknown emulator action \"restart\" (health, "
                             "faults, fault SPEC, clear or reset)\n"
                             "Try 'vesk help emulator' for more information.\n"));
    const VeskRun missing = runVesk(emulatorArguments(closed.port(), {QStringLiteral("fault")}));
    EXPECT_EQ(missing.exitCode, 64);
    EXPECT_EQ(missing.err, QStringLiteral("vesk: error: emulator fault needs a SPEC, e.g. "
                                          "itemInfo:error=503;times=1\n"
                                          "Try 'vesk help emulator' for more information.\n"));
}

TEST(EmulatorCommandUsage, NoEmulatorListeningIsANetworkFailure) {
    const ClosedPort closed;
    const VeskRun run = runVesk(emulatorArguments(closed.port(), {QStringLiteral("health")}));
    EXPECT_EQ(run.exitCode, 3) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(
        QStringLiteral(
            "vesk: error: no emulator answers at http://127.0.0.1:%1: Connection refused by")
            .arg(closed.port())))
        << run.err.toStdString();
}

} // namespace
} // namespace vesk::cli::test
