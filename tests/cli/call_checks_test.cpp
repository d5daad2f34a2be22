// `vesk call`: strict reading of the request, the transport options of one
// call, what a refused call shows, the response in the record's order, and
// the JSON listings of ops and record.

#include "EmulatorFixture.h"
#include "InProcess.h"

#include "support/LoopbackServer.h"

#include <emulator/AdminClient.h>

#include <vesk/records/Members.h>
#include <vesk/sales/ItemInfoResponse.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <chrono>
#include <thread>

namespace vesk::cli::test {
namespace {

using CallChecks = EmulatorTest;

const QString badDiscCalc = QStringLiteral(
    R"({"chequeId": 17, "lines": [{"barcode": "4601234000017", "quantity": 2, "lineNum": 1}]})");

qint64 requestsServed(quint16 port) {
    const emulator::AdminClient::Result health =
        emulator::AdminClient(QStringLiteral("http://127.0.0.1:%1").arg(port)).health();
    return health.body.value(QStringLiteral("requestsServed")).toInteger(-1);
}

TEST_F(CallChecks, StrictRefusesAProblematicRequestAndSendsNothing) {
    const VeskRun run =
        runVesk(QStringList{QStringLiteral("call"), QStringLiteral("disc"),
                            QStringLiteral("discCalc"), badDiscCalc, QStringLiteral("--strict")} +
                urlOptions());
    EXPECT_EQ(run.exitCode, 64) << testing::PrintToString(run);
    EXPECT_EQ(
        run.err,
        QStringLiteral(
            "vesk: error: $.chequeId 17 is not text\n"
            "vesk: error: $.lines[0].quantity names no member of vesk::disc::LinesEntryRequest\n"
            "vesk: error: 2 problems in the request of vesk::disc::DiscCalcRequest; nothing was "
            "sent (--strict)\n"));
    EXPECT_EQ(run.out, QString());
    EXPECT_EQ(requestsServed(port()), 0);
}

TEST_F(CallChecks, WithoutStrictTheProblemsAreWarningsAndTheCallIsMade) {
    const VeskRun run =
        call(QStringLiteral("disc"), QStringLiteral("discCalc"),
             QStringLiteral(R"({"chequeId": 17, "lines": [{"barcode": "4601234000017",
                                 "lineNum": 1, "qty": 1, "retailPrice": 1200, "note": "gift"}]})"));
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.err, QStringLiteral("vesk: warning: $.chequeId 17 is not text\n"
                                      "vesk: warning: $.lines[0].note names no member of "
                                      "vesk::disc::LinesEntryRequest\n"));
    EXPECT_EQ(run.json().value(QStringLiteral("chequeId")).toString(), QStringLiteral("17"));
    EXPECT_EQ(requestsServed(port()), 1);
}

TEST_F(CallChecks, WellFormedRequestUnderStrictIsSentSilently) {
    const VeskRun run = runVesk(
        QStringList{QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                    QStringLiteral(R"({"barcode": "4601234000017"})"), QStringLiteral("--strict")} +
        urlOptions());
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.err, QString());
}

TEST_F(CallChecks, ResponseKeepsTheRecordsOrderOfMembers) {
    const VeskRun run = call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                             QStringLiteral(R"({"barcode": "4601234000017"})"));
    ASSERT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    QStringList printed;
    const QRegularExpression topKey(QStringLiteral("^    \"([^\"]+)\": "),
                                    QRegularExpression::MultilineOption);
    for (auto it = topKey.globalMatch(run.out); it.hasNext();)
        printed << it.next().captured(1);
    QStringList declared;
    for (const records::Member& member :
         records::membersOf(sales::ItemInfoResponse::staticMetaObject))
        if (run.json().contains(QLatin1String(member.key)))
            declared << QString::fromLatin1(member.key);
    EXPECT_EQ(printed, declared) << run.out.toStdString();
    EXPECT_EQ(printed.size(), run.json().size());
    EXPECT_NE(printed, [&] {
        QStringList sorted = printed;
        sorted.sort();
        return sorted;
    }()) << "the record's order happens to be alphabetical: the test shows nothing";
}

TEST_F(CallChecks, RefusalShowsTheHttpStatusAndTheBodysStart) {
    const VeskRun run = call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                             QStringLiteral(R"({"barcode": "0000000000000"})"));
    EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(run);
    EXPECT_EQ(run.err,
              QStringLiteral("vesk: error: service: HTTP 404, code 1001: No item with barcode "
                             "\"0000000000000\"\n"
                             "  body: {\"code\":1001,\"userMsg\":\"No item with "
                             "barcode \\\"0000000000000\\\"\"}\n"));
}

TEST(CallRefusal, HtmlErrorPageShowsItsStatusAndStart) {
    vesk::test::LoopbackServer server;
    server.replyToAll(502, "<html><body><h1>502 Bad Gateway</h1></body></html>", "text/html");
    const VeskRun run = runVesk({QStringLiteral("call"), QStringLiteral("sales"),
                                 QStringLiteral("itemInfo"), QStringLiteral("{}"),
                                 QStringLiteral("--url"), QStringLiteral("sales=") + server.url()});
    EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(run);
    // After the library's own warning about a body that is not the service's.
    EXPECT_TRUE(run.err.endsWith(QStringLiteral("vesk: error: service: HTTP 502, code 0: \n"
                                                "  body: <html><body><h1>502 Bad "
                                                "Gateway</h1></body></html>\n")))
        << run.err.toStdString();
}

TEST(CallTransportOptions, TimeoutBoundsOneCall) {
    vesk::test::LoopbackServer server;
    server.onPost("/itemInfo", [](const httplib::Request&, httplib::Response& response) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        response.set_content("{}", "application/json");
    });
    QElapsedTimer timer;
    timer.start();
    const VeskRun run =
        runVesk({QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                 QStringLiteral("{}"), QStringLiteral("--timeout"), QStringLiteral("300"),
                 QStringLiteral("--url"), QStringLiteral("sales=") + server.url()});
    EXPECT_LT(timer.elapsed(), 2500);
    EXPECT_EQ(run.exitCode, 28) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("vesk: error: network: ")))
        << run.err.toStdString();
}

TEST(CallTransportOptions, BadValuesAreUsageErrors) {
    for (const auto& [option, value, message] :
         {std::tuple{"--timeout", "0",
                     "--timeout: \"0\" is out of range: a duration from 1ms to 3600s"},
          std::tuple{"--connect-timeout", "soon",
                     "--connect-timeout: \"soon\" is not a duration: write 1500ms, 2s or 1.5s "
                     "(a bare number counts milliseconds), from 1ms to 3600s"},
          std::tuple{"--cacert", "/nonexistent/ca.pem",
                     "--cacert: cannot read \"/nonexistent/ca.pem\""}}) {
        const CliRun run = runInProcess({QStringLiteral("call"), QStringLiteral("sales"),
                                         QStringLiteral("itemInfo"), QStringLiteral("{}"),
                                         QLatin1String(option), QLatin1String(value)});
        EXPECT_EQ(run.exitCode, 64) << option;
        EXPECT_TRUE(run.err.startsWith(QStringLiteral("vesk: error: ") + QLatin1String(message)))
            << run.err.toStdString();
    }
}

TEST(ListingsAsJson, OpsGivesEveryOperationWithItsRecordsAndPath) {
    const CliRun run = runInProcess({QStringLiteral("ops"), QStringLiteral("--json")});
    EXPECT_EQ(run.exitCode, 0);
    const QJsonArray listing = QJsonDocument::fromJson(run.out.toUtf8()).array();
    ASSERT_EQ(listing.size(), 16) << run.out.toStdString();
    EXPECT_EQ(listing.at(0).toObject(),
              (QJsonObject{{"service", "disc"},
                           {"operation", "discCalc"},
                           {"request", "vesk::disc::DiscCalcRequest"},
                           {"response", "vesk::disc::DiscCalcResponse"},
                           {"endpoint", "POST /api/axapta/ExchangeData_Disc/discCalc"},
                           {"url", "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc"},
                           {"path", "/api/axapta/ExchangeData_Disc/discCalc"}}));
}

TEST(ListingsAsJson, RecordGivesEveryMemberWithItsKindAndEntry) {
    const CliRun run = runInProcess(
        {QStringLiteral("record"), QStringLiteral("DiscCalcRequest"), QStringLiteral("--json")});
    EXPECT_EQ(run.exitCode, 0);
    const QJsonArray listing = QJsonDocument::fromJson(run.out.toUtf8()).array();
    ASSERT_EQ(listing.size(), 7) << run.out.toStdString();
    EXPECT_EQ(listing.at(0).toObject(), (QJsonObject{{"key", "cardList"},
                                                     {"kind", "list of vesk::disc::CardListEntry"},
                                                     {"optional", false},
                                                     {"entry", "vesk::disc::CardListEntry"}}));
    EXPECT_EQ(listing.at(1).toObject(), (QJsonObject{{"key", "chequeId"},
                                                     {"kind", "string"},
                                                     {"optional", false},
                                                     {"entry", QJsonValue::Null}}));
}

struct NotAnObjectRow {
    const char* name;
    const char* body;
    const char* shown; // how the error shows the body's start
};

void PrintTo(const NotAnObjectRow& row, std::ostream* out) {
    *out << row.name;
}

class CallNotAnObject : public testing::TestWithParam<NotAnObjectRow> {};

TEST_P(CallNotAnObject, A200ThatIsNotAnObjectIsAnErrorUnlessLenient) {
    const NotAnObjectRow& row = GetParam();
    vesk::test::LoopbackServer server;
    server.replyToAll(200, row.body, "text/html");
    const QStringList arguments{
        QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
        QStringLiteral("{}"),   QStringLiteral("--url"), QStringLiteral("sales=") + server.url()};

    const VeskRun strict = runVesk(arguments);
    EXPECT_EQ(strict.exitCode, 4) << testing::PrintToString(strict);
    EXPECT_EQ(strict.out, QString());
    EXPECT_TRUE(strict.err.endsWith(
        QStringLiteral("vesk: error: the reply is not a JSON object: HTTP 200, body: %1\n"
                       "  (--lenient takes it as the library does: an empty response)\n")
            .arg(QString::fromUtf8(row.shown))))
        << strict.err.toStdString();

    const VeskRun lenient = runVesk(arguments + QStringList{QStringLiteral("--lenient")});
    EXPECT_EQ(lenient.exitCode, 0) << testing::PrintToString(lenient);
    EXPECT_TRUE(lenient.out.contains(QStringLiteral("\"barcode\": \"\"")))
        << lenient.out.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Bodies, CallNotAnObject,
                         testing::Values(NotAnObjectRow{"Html",
                                                        "<html><body>Maintenance</body></html>",
                                                        "<html><body>Maintenance</body></html>"},
                                         NotAnObjectRow{"Empty", "", "(empty)"},
                                         NotAnObjectRow{"Array", "[1, 2]", "[1,2]"}),
                         [](const testing::TestParamInfo<NotAnObjectRow>& info) {
                             return std::string(info.param.name);
                         });

} // namespace
} // namespace vesk::cli::test
