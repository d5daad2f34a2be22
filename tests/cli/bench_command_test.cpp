// `vesk bench`: load from many tills, bounded by count or duration, with
// latency percentiles and failures by kind.

#include "EmulatorFixture.h"

#include <emulator/AdminClient.h>

#include <QElapsedTimer>

namespace vesk::cli::test {
namespace {

using BenchCommand = EmulatorTest;

QStringList benchArguments(const QStringList& arguments, const QStringList& urls) {
    return QStringList{QStringLiteral("bench")} + arguments +
           QStringList{QStringLiteral("--json")} + urls;
}

const QString coffeeRequest = QStringLiteral(R"({"barcode": "4601234000017"})");

void expectOrderedLatencies(const QJsonObject& report) {
    const QJsonObject latency = report.value(QStringLiteral("latencyMs")).toObject();
    const double p50 = latency.value(QStringLiteral("p50")).toDouble(-1);
    const double p90 = latency.value(QStringLiteral("p90")).toDouble(-1);
    const double p99 = latency.value(QStringLiteral("p99")).toDouble(-1);
    const double max = latency.value(QStringLiteral("max")).toDouble(-1);
    EXPECT_GT(p50, 0);
    EXPECT_LE(p50, p90);
    EXPECT_LE(p90, p99);
    EXPECT_LE(p99, max);
}

TEST_F(BenchCommand, OneOperationMakesExactlyTheCountedCalls) {
    const VeskRun run =
        runVesk(benchArguments({QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest,
                                QStringLiteral("--count"), QStringLiteral("40"),
                                QStringLiteral("--concurrency"), QStringLiteral("4")},
                               urlOptions()));
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    const QJsonObject report = run.json();
    EXPECT_EQ(report.value(QStringLiteral("what")).toString(), QStringLiteral("sales itemInfo"));
    EXPECT_EQ(report.value(QStringLiteral("concurrency")).toInt(), 4);
    EXPECT_EQ(report.value(QStringLiteral("calls")).toInt(), 40);
    EXPECT_EQ(report.value(QStringLiteral("failures")).toObject(), QJsonObject());
    EXPECT_GT(report.value(QStringLiteral("callsPerSecond")).toDouble(), 0);
    expectOrderedLatencies(report);
    const emulator::AdminClient admin(QStringLiteral("http://127.0.0.1:%1").arg(port()));
    EXPECT_EQ(admin.health().body.value(QStringLiteral("requestsServed")).toInt(), 40);
}

TEST_F(BenchCommand, SaleScenarioMakesAllSixteenOperationsPerSale) {
    const VeskRun run = runVesk(benchArguments(
        {QStringLiteral("--scenario"), QStringLiteral("sale"), QStringLiteral("--count"),
         QStringLiteral("3"), QStringLiteral("--concurrency"), QStringLiteral("2")},
        urlOptions()));
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    const QJsonObject report = run.json();
    EXPECT_EQ(report.value(QStringLiteral("what")).toString(), QStringLiteral("scenario sale"));
    EXPECT_EQ(report.value(QStringLiteral("sales")).toInt(), 3);
    EXPECT_EQ(report.value(QStringLiteral("failedSales")).toInt(), 0);
    EXPECT_EQ(report.value(QStringLiteral("calls")).toInt(), 48);
    EXPECT_EQ(report.value(QStringLiteral("failures")).toObject(), QJsonObject());
    expectOrderedLatencies(report);
}

TEST_F(BenchCommand, FailuresAreCountedByKindAndFailTheRun) {
    const emulator::AdminClient admin(QStringLiteral("http://127.0.0.1:%1").arg(port()));
    ASSERT_EQ(admin.addFault(QStringLiteral("itemInfo:error=503,code=42;times=5")).kind,
              emulator::AdminClient::Result::Kind::Done);
    ASSERT_EQ(admin.addFault(QStringLiteral("itemInfo:reset;times=2")).kind,
              emulator::AdminClient::Result::Kind::Done);
    ASSERT_EQ(admin.addFault(QStringLiteral("itemInfo:notjson;times=3")).kind,
              emulator::AdminClient::Result::Kind::Done);
    const VeskRun run =
        runVesk(benchArguments({QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest,
                                QStringLiteral("--count"), QStringLiteral("20"),
                                QStringLiteral("--concurrency"), QStringLiteral("1")},
                               urlOptions()));
    EXPECT_EQ(run.exitCode, 1) << testing::PrintToString(run);
    const QJsonObject report = run.json();
    EXPECT_EQ(report.value(QStringLiteral("calls")).toInt(), 20);
    EXPECT_EQ(report.value(QStringLiteral("failures")).toObject(),
              (QJsonObject{{QStringLiteral("ServiceError 42"), 5},
                           {QStringLiteral("ConnectionLost"), 2},
                           {QStringLiteral("NotAnObject"), 3}}));
}

TEST_F(BenchCommand, DurationBoundsTheRun) {
    QElapsedTimer timer;
    timer.start();
    const VeskRun run =
        runVesk(benchArguments({QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest,
                                QStringLiteral("--duration"), QStringLiteral("0.5")},
                               urlOptions()));
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    const double seconds = run.json().value(QStringLiteral("seconds")).toDouble();
    EXPECT_GE(seconds, 0.5);
    EXPECT_LT(seconds, 5.0);
    EXPECT_GT(run.json().value(QStringLiteral("calls")).toInt(), 0);
}

struct BenchUsage {
    const char* name;
    QStringList arguments;
    QString message;
};

void PrintTo(const BenchUsage& row, std::ostream* out) {
    *out << row.name;
}

class BenchUsageTest : public testing::TestWithParam<BenchUsage> {};

TEST_P(BenchUsageTest, IsRefusedBeforeAnyCall) {
    const VeskRun run = runVesk(QStringList{QStringLiteral("bench")} + GetParam().arguments);
    EXPECT_EQ(run.exitCode, 64) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(GetParam().message)) << run.err.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, BenchUsageTest,
    testing::Values(
        BenchUsage{"NoOperation", {}, QStringLiteral("vesk: error: bench needs SERVICE OPERATION")},
        BenchUsage{"UnknownScenario",
                   {QStringLiteral("--scenario"), QStringLiteral("lunch")},
                   QStringLiteral("vesk: error: unknown scenario \"lunch\"")},
        BenchUsage{
            "ZeroConcurrency",
            {QStringLiteral("sales"), QStringLiteral("itemInfo"), QStringLiteral("--concurrency"),
             QStringLiteral("0")},
            QStringLiteral("vesk: error: --concurrency: \"0\" is not a number from 1 to 256")},
        BenchUsage{"EndlessDuration",
                   {QStringLiteral("sales"), QStringLiteral("itemInfo"),
                    QStringLiteral("--duration"), QStringLiteral("86400")},
                   QStringLiteral("vesk: error: --duration: \"86400\" is out of range: a duration "
                                  "from 1ms to 3600s")},
        BenchUsage{"CountThatIsNoNumber",
                   {QStringLiteral("sales"), QStringLiteral("itemInfo"), QStringLiteral("--count"),
                    QStringLiteral("many")},
                   QStringLiteral("vesk: error: --count: \"many\" is not a number")}),
    [](const testing::TestParamInfo<BenchUsage>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::cli::test
