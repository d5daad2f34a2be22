// The emulator's request log: the line of each request, the order of the
// lines, and what it says of replies that never reached their client.

#include "HttpHelpers.h"

#include "support/LogCapture.h"

#include <gmock/gmock.h>

#include <emulator/Fault.h>
#include <emulator/FaultRules.h>
#include <emulator/RequestLog.h>

#include <QRegularExpression>
#include <QTimeZone>

#include <chrono>
#include <thread>
#include <vector>

namespace vesk::emulator::test {
namespace {

using Clock = std::chrono::steady_clock;

const char* const itemInfoBody = R"({"sectionId": "HALL", "barcode": "4601234000017"})";

struct LineCase {
    const char* name;
    RequestRecord record;
    const char* line;
};

class RequestLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(RequestLineTest, ReadsAsExpected) {
    const QDateTime written(QDate(2026, 11, 20), QTime(9, 30, 0, 123), QTimeZone::utc());
    EXPECT_EQ(requestLine(written, GetParam().record).toStdString(), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    RequestLog, RequestLineTest,
    testing::Values(
        LineCase{"answered",
                 {QStringLiteral("itemInfo"), 200, std::nullopt, 3},
                 "2026-11-20T09:30:00.123Z itemInfo 200 3 ms"},
        LineCase{"refused_with_service_code",
                 {QStringLiteral("itemInfo"), 404, 1001, 2},
                 "2026-11-20T09:30:00.123Z itemInfo 404 code=1001 2 ms"},
        LineCase{"hang_sends_no_reply",
                 {QStringLiteral("commitCheque"), 0, std::nullopt, 1000, QStringLiteral("hang")},
                 "2026-11-20T09:30:00.123Z commitCheque - 1000 ms fault=hang"},
        LineCase{"reset_after_the_operation",
                 {QStringLiteral("commitCheque"), 0, std::nullopt, 4, QStringLiteral("reset,after"),
                  QStringLiteral("operation=200")},
                 "2026-11-20T09:30:00.123Z commitCheque - 4 ms fault=reset,after operation=200"},
        LineCase{"replayed",
                 {QStringLiteral("commitCheque"), 200, std::nullopt, 1, QString(),
                  QStringLiteral("replayed")},
                 "2026-11-20T09:30:00.123Z commitCheque 200 1 ms replayed"},
        LineCase{"reply_not_delivered",
                 {QStringLiteral("itemInfo"), 200, std::nullopt, 502, QStringLiteral("delay"),
                  QString(), QStringLiteral("client closed")},
                 "2026-11-20T09:30:00.123Z itemInfo 200 (not delivered: client closed) 502 ms "
                 "fault=delay"},
        LineCase{"refusal_not_delivered",
                 {QStringLiteral("itemInfo"), 404, 1001, 7, QString(), QString(),
                  QStringLiteral("client closed")},
                 "2026-11-20T09:30:00.123Z itemInfo 404 code=1001 (not delivered: client closed) "
                 "7 ms"},
        LineCase{"admin_call_without_code",
                 {QStringLiteral("POST /_emulator/faults"), 201, std::nullopt, 0},
                 "2026-11-20T09:30:00.123Z POST /_emulator/faults 201 0 ms"}),
    [](const testing::TestParamInfo<LineCase>& info) { return std::string(info.param.name); });

// The request lines that `log` holds, without the logger's prefix.
QStringList requestLines(const vesk::test::LogCapture& log) {
    static const QRegularExpression line(QStringLiteral(
        R"(^vesk\.emulator info: (\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z \S+ .* \d+ ms.*)$)"));
    QStringList lines;
    for (const QString& captured : log.lines()) {
        const QRegularExpressionMatch match = line.match(captured);
        if (match.hasMatch())
            lines << match.captured(1);
    }
    return lines;
}

// Waits, at most 5 s, until the log holds a request line that matches `pattern`.
QString awaitLine(const vesk::test::LogCapture& log, const QString& pattern) {
    const QRegularExpression expression(pattern);
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(5);
    while (Clock::now() < deadline) {
        for (const QString& line : requestLines(log))
            if (expression.match(line).hasMatch())
                return line;
        std::this_thread::yield();
    }
    return QString();
}

using RequestLogTest = RunningEmulator;

TEST_F(RequestLogTest, LinesAreStampedWhenWrittenSoTheirTimesNeverGoBackwards) {
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.info=true"));
    // A long request arrives first and ends last, among many short ones.
    emulator->faults().add(*parseFaultSpec(QStringLiteral("itemInfo:delay=300;times=1"), nullptr));
    std::thread slow([&] { post(emulator->port(), salesPath("itemInfo"), itemInfoBody); });
    ASSERT_TRUE(emulator->faults().waitFired(1, std::chrono::seconds(5)));
    std::vector<std::thread> tills;
    for (int t = 0; t < 8; ++t)
        tills.emplace_back([&] {
            for (int i = 0; i < 10; ++i)
                post(emulator->port(), salesPath("itemInfo"), itemInfoBody);
        });
    for (std::thread& till : tills)
        till.join();
    slow.join();

    const QStringList lines = requestLines(log);
    ASSERT_EQ(lines.size(), 81) << log.all();
    EXPECT_TRUE(lines.last().contains(QStringLiteral(" fault=delay"))) << log.all();
    for (int i = 1; i < lines.size(); ++i)
        EXPECT_LE(lines[i - 1].left(24).toStdString(), lines[i].left(24).toStdString())
            << "line " << i << "\n"
            << log.all();
}

TEST_F(RequestLogTest, ReplyToAClientThatGaveUpIsLoggedAsNotDelivered) {
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.info=true"));
    emulator->faults().add(*parseFaultSpec(QStringLiteral("itemInfo:delay=400;times=1"), nullptr));
    {
        httplib::Client impatient("127.0.0.1", emulator->port());
        impatient.set_read_timeout(0, 100000); // 100 ms, then the connection is closed
        EXPECT_FALSE(impatient.Post(salesPath("itemInfo"), itemInfoBody, "application/json"));
    }
    EXPECT_THAT(awaitLine(log, QStringLiteral(" itemInfo ")).toStdString(),
                testing::MatchesRegex(R"(.*Z itemInfo 200 \(not delivered: client closed\) )"
                                      R"([0-9]+ ms fault=delay)"))
        << log.all();
}

TEST_F(RequestLogTest, HangThatTheClientGaveUpOnIsLoggedAsTheFaultWithNoStatus) {
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.info=true"));
    emulator->faults().add(*parseFaultSpec(QStringLiteral("itemInfo:hang=5000;times=1"), nullptr));
    {
        httplib::Client impatient("127.0.0.1", emulator->port());
        impatient.set_read_timeout(0, 100000);
        EXPECT_FALSE(impatient.Post(salesPath("itemInfo"), itemInfoBody, "application/json"));
    }
    EXPECT_THAT(awaitLine(log, QStringLiteral(" itemInfo ")).toStdString(),
                testing::MatchesRegex(R"(.*Z itemInfo - [0-9]+ ms fault=hang)"))
        << log.all();
}

TEST_F(RequestLogTest, AdminCallsAreLoggedByPathAndStatusWithoutAServiceCode) {
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.info=true"));
    EXPECT_EQ(
        post(emulator->port(), "/_emulator/faults", R"({"spec": "itemInfo:reset;times=1"})").status,
        201);
    EXPECT_EQ(post(emulator->port(), "/_emulator/faults", R"({"spec": "nonsense"})").status, 400);
    EXPECT_EQ(send(emulator->port(), "DELETE", "/_emulator/faults").status, 200);
    const QStringList lines = requestLines(log);
    ASSERT_EQ(lines.size(), 3) << log.all();
    EXPECT_THAT(lines[0].mid(25).toStdString(),
                testing::MatchesRegex(R"(POST /_emulator/faults 201 [0-9]+ ms)"));
    EXPECT_THAT(lines[1].mid(25).toStdString(),
                testing::MatchesRegex(R"(POST /_emulator/faults 400 [0-9]+ ms)"));
    EXPECT_THAT(lines[2].mid(25).toStdString(),
                testing::MatchesRegex(R"(DELETE /_emulator/faults 200 [0-9]+ ms)"));
}

} // namespace
} // namespace vesk::emulator::test
