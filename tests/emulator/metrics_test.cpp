// /_emulator/metrics: the counts a load test reads, in the Prometheus text
// format, exact after known calls, and accepted by Prometheus's own linter.

#include "HttpHelpers.h"

#include <emulator/FaultRules.h>
#include <emulator/journal/Journal.h>
#include <emulator/metrics/Metrics.h>

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace vesk::emulator::test {
namespace {

// The value of the sample `series` ("name{labels}") in an exposition; -1 when absent.
double sampleOf(const QByteArray& exposition, const QString& series) {
    for (const QByteArray& line : exposition.split('\n'))
        if (line.startsWith(series.toUtf8() + ' '))
            return line.mid(series.size() + 1).toDouble();
    return -1;
}

// Waits, at most 5 s, until every request the journal keeps is done. A
// reset's client hears of it before the emulator has counted the request;
// the metrics count it before the journal marks it done.
bool awaitAllDone(const Journal& journal) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (std::chrono::steady_clock::now() < deadline) {
        const QList<JournalEntry> kept = journal.select({});
        if (std::all_of(kept.begin(), kept.end(), [](const JournalEntry& e) { return e.done; }))
            return true;
        std::this_thread::yield();
    }
    return false;
}

TEST(Metrics, CountRequestsByOperationAndStatusClassIntoBuckets) {
    Metrics metrics;
    metrics.recordRequest("itemInfo", 200, 400);        // 0.4 ms
    metrics.recordRequest("itemInfo", 200, 3000);       // 3 ms
    metrics.recordRequest("itemInfo", 404, 1000);       // exactly 1 ms: in le="0.001"
    metrics.recordRequest("commitCheque", 0, 20000000); // 20 s, no reply: above every bucket
    metrics.recordRequest("noSuchOperation", 200, 1);
    metrics.recordFault(Fault::Kind::Reset);
    const QByteArray text = metrics.exposition({});
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_requests_total{operation="itemInfo",status="2xx"})"),
              2);
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_requests_total{operation="itemInfo",status="4xx"})"),
              1);
    EXPECT_EQ(
        sampleOf(text, R"(vesk_emulator_requests_total{operation="commitCheque",status="none"})"),
        1);
    EXPECT_EQ(
        sampleOf(
            text,
            R"(vesk_emulator_request_duration_seconds_bucket{operation="itemInfo",le="0.001"})"),
        2);
    EXPECT_EQ(
        sampleOf(
            text,
            R"(vesk_emulator_request_duration_seconds_bucket{operation="itemInfo",le="0.005"})"),
        3);
    EXPECT_EQ(
        sampleOf(
            text,
            R"(vesk_emulator_request_duration_seconds_bucket{operation="itemInfo",le="+Inf"})"),
        3);
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_request_duration_seconds_sum{operation="itemInfo"})"),
              0.0044);
    EXPECT_EQ(
        sampleOf(text, R"(vesk_emulator_request_duration_seconds_count{operation="itemInfo"})"), 3);
    EXPECT_EQ(
        sampleOf(
            text,
            R"(vesk_emulator_request_duration_seconds_bucket{operation="commitCheque",le="10"})"),
        0);
    EXPECT_EQ(
        sampleOf(
            text,
            R"(vesk_emulator_request_duration_seconds_bucket{operation="commitCheque",le="+Inf"})"),
        1);
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_faults_fired_total{fault="reset"})"), 1);
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_faults_fired_total{fault="hang"})"), 0);
    // An operation with no request has no series.
    EXPECT_EQ(text.indexOf("operation=\"discCalc\""), -1);
}

TEST(Metrics, BucketsOnlyGrowAndEndAtTheCount) {
    Metrics metrics;
    for (qint64 us : {10, 900, 1500, 4000, 40000, 300000, 7000000, 90000000})
        metrics.recordRequest("discCalc", 200, us);
    const QByteArray text = metrics.exposition({});
    double previous = 0;
    const QRegularExpression bucket(QStringLiteral(
        R"(^vesk_emulator_request_duration_seconds_bucket\{operation="discCalc",le="[^"]+"\} (\d+)$)"));
    int buckets = 0;
    for (const QByteArray& line : text.split('\n')) {
        const QRegularExpressionMatch match = bucket.match(QString::fromUtf8(line));
        if (!match.hasMatch())
            continue;
        const double count = match.captured(1).toDouble();
        EXPECT_GE(count, previous) << line.toStdString();
        previous = count;
        ++buckets;
    }
    EXPECT_EQ(buckets, int(Metrics::buckets.size()) + 1);
    EXPECT_EQ(previous, 8);
    EXPECT_EQ(
        sampleOf(text, R"(vesk_emulator_request_duration_seconds_count{operation="discCalc"})"), 8);
}

TEST_F(RunningEmulator, MetricsCountWhatTheTillsGot) {
    const quint16 port = emulator->port();
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(post(port, salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status, 200);
    ASSERT_EQ(post(port, salesPath("itemInfo"), R"({"barcode": "0000000000000"})").status, 404);
    QString error;
    emulator->faults().add(*parseFaultSpec(QStringLiteral("processId:reset;times=1"), &error));
    ASSERT_EQ(post(port, loyaltyPath("processId"), "{}").status, 0);
    ASSERT_TRUE(awaitAllDone(emulator->journal()));

    httplib::Client client("127.0.0.1", port);
    const httplib::Result scraped = client.Get("/_emulator/metrics");
    ASSERT_TRUE(scraped);
    EXPECT_EQ(scraped->status, 200);
    EXPECT_EQ(scraped->get_header_value("Content-Type"), Metrics::contentType);
    const QByteArray text = QByteArray::fromStdString(scraped->body);
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_requests_total{operation="itemInfo",status="2xx"})"),
              3);
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_requests_total{operation="itemInfo",status="4xx"})"),
              1);
    EXPECT_EQ(
        sampleOf(text, R"(vesk_emulator_requests_total{operation="processId",status="none"})"), 1);
    EXPECT_EQ(
        sampleOf(text, R"(vesk_emulator_request_duration_seconds_count{operation="itemInfo"})"), 4);
    EXPECT_EQ(sampleOf(text, R"(vesk_emulator_faults_fired_total{fault="reset"})"), 1);
    EXPECT_EQ(sampleOf(text, "vesk_emulator_journal_requests"), 5);
    EXPECT_EQ(sampleOf(text, "vesk_emulator_journal_dropped_total"), 0);
    EXPECT_EQ(sampleOf(text, "vesk_emulator_admin_requests_total"), 1);
    EXPECT_GT(sampleOf(text, "vesk_emulator_database_jobs_total"), 0);
    EXPECT_GT(sampleOf(text, "vesk_emulator_database_seconds_total"), 0);
    EXPECT_GT(sampleOf(text, "vesk_emulator_start_time_seconds"), 1.7e9);
}

TEST_F(RunningEmulator, MetricsPassPrometheusOwnLinter) {
    const QString promtool = QStandardPaths::findExecutable(QStringLiteral("promtool"));
    ASSERT_FALSE(promtool.isEmpty())
        << "promtool is not installed: scripts/install-deps.sh installs Debian's prometheus";
    const quint16 port = emulator->port();
    post(port, salesPath("itemInfo"), R"({"barcode": "4601234000017"})");
    post(port, discPath("discCalc"), R"({"lines": "x"})");
    post(port, "/_emulator/faults", R"({"spec": "itemInfo:delay=1;times=1"})");
    post(port, salesPath("itemInfo"), R"({"barcode": "4601234000017"})");
    httplib::Client client("127.0.0.1", port);
    const httplib::Result scraped = client.Get("/_emulator/metrics");
    ASSERT_TRUE(scraped);

    QProcess lint;
    lint.start(promtool, {QStringLiteral("check"), QStringLiteral("metrics")});
    ASSERT_TRUE(lint.waitForStarted(10000));
    lint.write(QByteArray::fromStdString(scraped->body));
    lint.closeWriteChannel();
    ASSERT_TRUE(lint.waitForFinished(30000));
    const QByteArray said = lint.readAllStandardOutput() + lint.readAllStandardError();
    EXPECT_EQ(lint.exitCode(), 0) << said.toStdString();
    EXPECT_EQ(said.trimmed(), QByteArray()) << said.toStdString();
}

} // namespace
} // namespace vesk::emulator::test
