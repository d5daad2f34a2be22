// `vesk emulator`: driving a running emulator's faults, reset and health,
// and asking its journal what a till sent.

#include "EmulatorFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

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
                             "faults, fault SPEC, clear, reset, journal, verify CALL or "
                             "metrics)\n"
                             "Try 'vesk help emulator' for more information.\n"));
    const VeskRun missing = runVesk(emulatorArguments(closed.port(), {QStringLiteral("fault")}));
    EXPECT_EQ(missing.exitCode, 64);
    EXPECT_EQ(missing.err, QStringLiteral("vesk: error: emulator fault needs a SPEC, e.g. "
                                          "itemInfo:error=503;times=1\n"
                                          "Try 'vesk help emulator' for more information.\n"));
}

class JournalCommand : public EmulatorTest {
protected:
    // Two itemInfo calls, one of a barcode the seed lacks, and a refused checkPin.
    void sendSomeCalls() const {
        call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
             QStringLiteral(R"({"barcode": "4601234000017"})"));
        call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
             QStringLiteral(R"({"barcode": "0000000000000"})"));
        call(QStringLiteral("loyalty"), QStringLiteral("checkPin"),
             QStringLiteral(R"({"discCardId": "2775000000011", "pinCode": "1234"})"));
    }
};

TEST_F(JournalCommand, JournalPrintsTheRequestsAsATableWithSecretsMasked) {
    sendSomeCalls();
    const VeskRun listed = runVesk(emulatorArguments(port(), {QStringLiteral("journal")}));
    ASSERT_EQ(listed.exitCode, 0) << testing::PrintToString(listed);
    const QStringList lines = listed.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 4) << listed.out.toStdString();
    const QRegularExpression first(QStringLiteral(
        R"(^#1      \d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z  itemInfo {16}200 {12}\s+\d+ ms  )"
        R"(\{"barcode":"4601234000017","sectionId":""\}$)"));
    EXPECT_TRUE(first.match(lines[0]).hasMatch()) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(QStringLiteral("itemInfo                404 code=1001")))
        << lines[1].toStdString();
    EXPECT_TRUE(lines[2].contains(QStringLiteral(R"("discCardId":"***0011")")))
        << lines[2].toStdString();
    EXPECT_TRUE(lines[2].contains(QStringLiteral(R"("pinCode":"***")"))) << lines[2].toStdString();
    EXPECT_FALSE(listed.out.contains(QStringLiteral("2775000000011")));
    EXPECT_EQ(lines[3], QStringLiteral("3 requests"));
}

TEST_F(JournalCommand, JournalFiltersCountsPrintsJsonAndClears) {
    sendSomeCalls();
    const VeskRun counted = runVesk(
        emulatorArguments(port(), {QStringLiteral("journal"), QStringLiteral("count"),
                                   QStringLiteral("--operation"), QStringLiteral("itemInfo")}));
    EXPECT_EQ(counted.out, QStringLiteral("2\n")) << testing::PrintToString(counted);
    const VeskRun json = runVesk(emulatorArguments(
        port(), {QStringLiteral("journal"), QStringLiteral("--json"), QStringLiteral("--where"),
                 QStringLiteral(R"($.barcode == "0000000000000")")}));
    EXPECT_EQ(json.exitCode, 0) << testing::PrintToString(json);
    const QJsonArray requests = jsonOf(json).value(QStringLiteral("requests")).toArray();
    ASSERT_EQ(requests.size(), 1) << json.out.toStdString();
    EXPECT_EQ(requests[0].toObject().value(QStringLiteral("seq")).toInt(), 2);
    const VeskRun newest = runVesk(emulatorArguments(
        port(), {QStringLiteral("journal"), QStringLiteral("--limit"), QStringLiteral("1")}));
    EXPECT_TRUE(newest.out.startsWith(QStringLiteral("#3 "))) << newest.out.toStdString();
    EXPECT_TRUE(
        newest.out.endsWith(QStringLiteral("1 request (the newest of 3; --limit 0 shows all)\n")))
        << newest.out.toStdString();
    const VeskRun cleared =
        runVesk(emulatorArguments(port(), {QStringLiteral("journal"), QStringLiteral("clear")}));
    EXPECT_EQ(cleared.out, QStringLiteral("cleared 3 requests\n"));
}

TEST_F(JournalCommand, VerifyExitsZeroWhenTheCallsWereMade) {
    sendSomeCalls();
    const VeskRun once = runVesk(emulatorArguments(
        port(), {QStringLiteral("verify"), QStringLiteral(R"(itemInfo $.barcode ~= "^4601")"),
                 QStringLiteral("--exactly"), QStringLiteral("1")}));
    EXPECT_EQ(once.exitCode, 0) << testing::PrintToString(once);
    EXPECT_EQ(once.out, QStringLiteral("Verified: itemInfo with $.barcode ~= \"^4601\" called "
                                       "exactly 1 time (seen 1 time).\n"));
    const VeskRun ordered = runVesk(emulatorArguments(
        port(),
        {QStringLiteral("verify"), QStringLiteral("--in-order"), QStringLiteral("itemInfo"),
         QStringLiteral(R"(checkPin $.discCardId == "2775000000011" && $.pinCode exists)")}));
    EXPECT_EQ(ordered.exitCode, 0) << testing::PrintToString(ordered);
}

TEST_F(JournalCommand, VerifyThatFailsPrintsTheNearestMissesAndExitsOne) {
    sendSomeCalls();
    const VeskRun failed = runVesk(emulatorArguments(
        port(), {QStringLiteral("verify"), QStringLiteral("itemInfo"), QStringLiteral("--where"),
                 QStringLiteral(R"($.barcode == "4601234000024")")}));
    EXPECT_EQ(failed.exitCode, 1) << testing::PrintToString(failed);
    const QStringList lines = failed.out.split(QLatin1Char('\n'));
    ASSERT_GE(lines.size(), 6) << failed.out.toStdString();
    EXPECT_EQ(lines[0], QStringLiteral("Verification failed: expected itemInfo with $.barcode == "
                                       "\"4601234000024\" called at least 1 time, seen 0 times."));
    EXPECT_EQ(lines[1], QStringLiteral("Nearest misses:"));
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("  #2 itemInfo at "))) << lines[2].toStdString();
    EXPECT_TRUE(lines[2].endsWith(QStringLiteral(" (404)"))) << lines[2].toStdString();
    EXPECT_EQ(lines[3],
              QStringLiteral("    $.barcode: expected \"4601234000024\", was \"0000000000000\""));
    EXPECT_TRUE(lines[4].startsWith(QStringLiteral("  #1 itemInfo at "))) << lines[4].toStdString();
    EXPECT_TRUE(failed.err.isEmpty()) << failed.err.toStdString();
}

TEST_F(JournalCommand, AFaultAimedAtOneBarcodeHitsOnlyItAndMetricsCountIt) {
    const VeskRun added = runVesk(emulatorArguments(
        port(),
        {QStringLiteral("fault"),
         QStringLiteral(
             R"(itemInfo:error=503,code=42,msg=Busy;where=$.barcode == "4601234000024")")}));
    ASSERT_EQ(added.exitCode, 0) << testing::PrintToString(added);
    EXPECT_EQ(jsonOf(added).value(QStringLiteral("where")).toArray(),
              (QJsonArray{QStringLiteral(R"($.barcode == "4601234000024")")}));
    const VeskRun hit = call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                             QStringLiteral(R"({"barcode": "4601234000024"})"));
    EXPECT_EQ(hit.exitCode, 2) << testing::PrintToString(hit);
    const VeskRun spared = call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                                QStringLiteral(R"({"barcode": "4601234000017"})"));
    EXPECT_EQ(spared.exitCode, 0) << testing::PrintToString(spared);

    const VeskRun metrics = runVesk(emulatorArguments(port(), {QStringLiteral("metrics")}));
    ASSERT_EQ(metrics.exitCode, 0) << testing::PrintToString(metrics);
    for (const char* sample :
         {"\nvesk_emulator_requests_total{operation=\"itemInfo\",status=\"5xx\"} 1\n",
          "\nvesk_emulator_requests_total{operation=\"itemInfo\",status=\"2xx\"} 1\n",
          "\nvesk_emulator_faults_fired_total{fault=\"error\"} 1\n"})
        EXPECT_TRUE(metrics.out.contains(QLatin1String(sample))) << metrics.out.toStdString();
}

struct BadVerify {
    const char* name;
    QStringList arguments;
    const char* error;
};

void PrintTo(const BadVerify& row, std::ostream* out) {
    *out << row.name;
}

class EmulatorVerifyUsage : public testing::TestWithParam<BadVerify> {};

TEST_P(EmulatorVerifyUsage, IsRefusedBeforeAnythingIsSent) {
    const ClosedPort closed;
    const VeskRun run = runVesk(emulatorArguments(closed.port(), GetParam().arguments));
    EXPECT_EQ(run.exitCode, 64) << testing::PrintToString(run);
    EXPECT_EQ(run.err, QString::fromUtf8(GetParam().error) +
                           QStringLiteral("\nTry 'vesk help emulator' for more information.\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Table, EmulatorVerifyUsage,
    testing::Values(
        BadVerify{"NoCall",
                  {"verify"},
                  "vesk: error: emulator verify needs a CALL, e.g. 'commitCheque $.chequeId == "
                  "\"C-1\"'"},
        BadVerify{"TwoCallsWithoutOrder",
                  {"verify", "itemInfo", "checkPin"},
                  "vesk: error: emulator verify takes one CALL, or several with --in-order"},
        BadVerify{"ConditionFirst",
                  {"verify", "$.barcode == \"1\""},
                  "vesk: error: emulator verify: \"$.barcode == \"1\"\": a call starts with an "
                  "operation's name, e.g. 'commitCheque $.chequeId == \"C-1\"'"},
        BadVerify{"BadCondition",
                  {"verify", "itemInfo $.barcode = 1"},
                  "vesk: error: emulator verify: \"$.barcode = 1\": expected ==, !=, <, <=, >, "
                  ">=, ~=, exists or absent after $.barcode at column 11"},
        BadVerify{"BadWhere",
                  {"verify", "itemInfo", "--where", "barcode == 1"},
                  "vesk: error: --where 'barcode == 1': expected a path starting with $ (such as "
                  "$.lines[*].barcode) at column 1"},
        BadVerify{"TwoCounts",
                  {"verify", "itemInfo", "--exactly", "1", "--at-most", "2"},
                  "vesk: error: give one of --exactly, --at-least and --at-most"},
        BadVerify{"NegativeCount",
                  {"verify", "itemInfo", "--at-least", "-1"},
                  "vesk: error: --at-least: \"-1\" is not a number from 0"},
        BadVerify{"CountWithOrder",
                  {"verify", "--in-order", "itemInfo", "--exactly", "1"},
                  "vesk: error: --in-order takes no count and no --where: write the conditions "
                  "into each CALL"},
        BadVerify{"JournalWhat",
                  {"journal", "list"},
                  "vesk: error: emulator journal takes count or clear, not \"list\""},
        BadVerify{"BadLimit",
                  {"journal", "--limit", "x"},
                  "vesk: error: --limit: \"x\" is not a number from 0 (0: all)"}),
    [](const testing::TestParamInfo<BadVerify>& info) { return std::string(info.param.name); });

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
