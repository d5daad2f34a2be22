// How `vesk` fails: the service's refusals (2), the network (3) and wrong
// usage or input (64), each with its message on standard error and nothing
// on standard output.

#include "EmulatorFixture.h"

namespace vesk::cli::test {
namespace {

using CallFailure = EmulatorTest;

TEST_F(CallFailure, ServiceRefusalExitsWith2AndPrintsItsCodeAndMessage) {
    const VeskRun run = call(QStringLiteral("sales"), QStringLiteral("itemInfo"),
                             QStringLiteral(R"({"barcode": "0000000000000"})"));
    EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("vesk: error: service: HTTP 404, code 1001: No "
                                                  "item with barcode \"0000000000000\"\n  body: ")))
        << run.err.toStdString();
    EXPECT_EQ(run.out, QString());
}

TEST_F(CallFailure, WrongPinIsAServiceRefusal) {
    const QString token = identify(goldCard);
    const QString request =
        QStringLiteral(R"({"discCardId": "%1", "token": "%2"})").arg(goldCard, token);
    ASSERT_EQ(call(QStringLiteral("loyalty"), QStringLiteral("processPin"), request).exitCode, 0);
    const VeskRun run =
        call(QStringLiteral("loyalty"), QStringLiteral("checkPin"),
             QStringLiteral(R"({"discCardId": "%1", "token": "%2", "pinCode": "0000"})")
                 .arg(goldCard, token));
    EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(
        QStringLiteral("vesk: error: service: HTTP 403, code 3003: Wrong PIN\n  body: ")))
        << run.err.toStdString();
}

TEST_F(CallFailure, NoRequestArgumentSendsTheEmptyObject) {
    const VeskRun run = runVesk(
        QStringList{QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo")} +
        urlOptions());
    EXPECT_EQ(run.exitCode, 2) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral(
        "vesk: error: service: HTTP 404, code 1001: No item with barcode \"\"\n  body: ")))
        << run.err.toStdString();
}

TEST(CallNetworkFailure, ClosedPortExitsWith7AndPrintsTheTransportMessage) {
    const ClosedPort closed;
    const QString url = QStringLiteral("http://127.0.0.1:%1/api/").arg(closed.port());
    const VeskRun run =
        runVesk({QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                 QStringLiteral("{}"), QStringLiteral("--url"), QStringLiteral("sales=") + url});
    EXPECT_EQ(run.exitCode, 7) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("vesk: error: network: ")))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(url + QStringLiteral("itemInfo"))) << run.err.toStdString();
    EXPECT_EQ(run.out, QString());
}

// A mistake on the command line or in the request: exit 64 before any call.
struct UsageRow {
    const char* name;
    QStringList arguments;
    QString message;   // the start of standard error
    bool pointsToHelp; // usage errors end with "Try 'vesk ... ' for more information."
};

void PrintTo(const UsageRow& row, std::ostream* out) {
    *out << row.name;
}

class UsageFailure : public ::testing::TestWithParam<UsageRow> {
public:
    static std::string rowName(const ::testing::TestParamInfo<UsageRow>& info) {
        return info.param.name;
    }
};

TEST_P(UsageFailure, ExitsWith64AndSaysWhatIsWrong) {
    const VeskRun run = runVesk(GetParam().arguments);
    EXPECT_EQ(run.exitCode, 64) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(GetParam().message)) << run.err.toStdString();
    EXPECT_FALSE(run.err.contains(QStringLiteral("Usage:"))) << run.err.toStdString();
    EXPECT_EQ(run.err.contains(QStringLiteral("\nTry 'vesk ")), GetParam().pointsToHelp)
        << run.err.toStdString();
    EXPECT_EQ(run.out, QString());
}

QStringList callSales(const QStringList& more) {
    return QStringList{QStringLiteral("call"), QStringLiteral("sales"),
                       QStringLiteral("itemInfo")} +
           more;
}

INSTANTIATE_TEST_SUITE_P(
    Cli, UsageFailure,
    ::testing::Values(
        UsageRow{"unknown_service",
                 {QStringLiteral("call"), QStringLiteral("stock"), QStringLiteral("itemInfo")},
                 QStringLiteral(
                     "vesk: error: unknown service \"stock\" (the services are disc, loyalty, "
                     "sales)\n"),
                 true},
        UsageRow{"unknown_operation",
                 {QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("discCalc")},
                 QStringLiteral("vesk: error: unknown operation \"discCalc\" of service sales (its "
                                "operations are itemInfo, reserveCheque, unreserveCheque)\n"),
                 true},
        UsageRow{"malformed_json", callSales({QStringLiteral(R"({"barcode": )")}),
                 QStringLiteral("vesk: error: the request in the argument is not valid JSON: "),
                 false},
        UsageRow{
            "json_array", callSales({QStringLiteral("[{}]")}),
            QStringLiteral("vesk: error: the request in the argument must be a JSON object, not an "
                           "array\n"),
            false},
        UsageRow{
            "json_string", callSales({QStringLiteral(R"("4601234000017")")}),
            QStringLiteral("vesk: error: the request in the argument must be a JSON object, not a "
                           "string\n"),
            false},
        UsageRow{
            "json_number", callSales({QStringLiteral("42")}),
            QStringLiteral("vesk: error: the request in the argument must be a JSON object, not a "
                           "number\n"),
            false},
        UsageRow{
            "empty_standard_input", callSales({QStringLiteral("-")}),
            QStringLiteral("vesk: error: the request in standard input is empty: expected a JSON "
                           "object\n"),
            false},
        UsageRow{"missing_file",
                 callSales({QStringLiteral("@/nonexistent-vesk-folder/request.json")}),
                 QStringLiteral("vesk: error: cannot read the request file "
                                "\"/nonexistent-vesk-folder/request.json\": "),
                 false},
        UsageRow{"url_without_service",
                 callSales({QStringLiteral("--url"), QStringLiteral("http://127.0.0.1:1/")}),
                 QStringLiteral("vesk: error: --url \"http://127.0.0.1:1/\": expected SERVICE=URL, "
                                "SERVICE one of disc, loyalty, sales\n"),
                 true},
        UsageRow{"url_of_unknown_service",
                 callSales({QStringLiteral("--url"), QStringLiteral("stock=http://127.0.0.1:1/")}),
                 QStringLiteral("vesk: error: --url \"stock=http://127.0.0.1:1/\": expected "
                                "SERVICE=URL, SERVICE one of disc, loyalty, sales\n"),
                 true},
        UsageRow{
            "url_not_http",
            callSales({QStringLiteral("--url"), QStringLiteral("sales=127.0.0.1:1")}),
            QStringLiteral("vesk: error: --url \"sales=127.0.0.1:1\": \"127.0.0.1:1\" is not an "
                           "http or https URL with a host\n"),
            true},
        UsageRow{"url_without_value", callSales({QStringLiteral("--url")}),
                 QStringLiteral("vesk: error: Missing value after '--url'.\n"), true},
        UsageRow{"unreadable_config",
                 {QStringLiteral("--config"), QStringLiteral("/nonexistent-vesk-folder/vesk.ini"),
                  QStringLiteral("ops")},
                 QStringLiteral("vesk: error: --config: cannot read "
                                "\"/nonexistent-vesk-folder/vesk.ini\"\n"),
                 true},
        UsageRow{"no_command", {}, QStringLiteral("vesk: error: no command given\n"), true},
        UsageRow{"unknown_command",
                 {QStringLiteral("sell")},
                 QStringLiteral("vesk: error: unknown command \"sell\"\n"),
                 true},
        UsageRow{"unknown_option",
                 {QStringLiteral("ops"), QStringLiteral("--all")},
                 QStringLiteral("vesk: error: Unknown option 'all'.\n"),
                 true},
        UsageRow{"command_option_before_command",
                 {QStringLiteral("--external"), QStringLiteral("demo")},
                 QStringLiteral("vesk: error: Unknown option 'external'.\n"),
                 true},
        UsageRow{"call_without_operation",
                 {QStringLiteral("call"), QStringLiteral("sales")},
                 QStringLiteral("vesk: error: call takes 2 to 3 arguments, not 1\n"),
                 true},
        UsageRow{"call_with_two_requests", callSales({QStringLiteral("{}"), QStringLiteral("{}")}),
                 QStringLiteral("vesk: error: call takes 2 to 3 arguments, not 4\n"), true},
        UsageRow{"record_without_name",
                 {QStringLiteral("record")},
                 QStringLiteral("vesk: error: record takes 1 argument, not 0\n"),
                 true},
        UsageRow{"unknown_record",
                 {QStringLiteral("record"), QStringLiteral("Receipt")},
                 QStringLiteral("vesk: error: no record named \"Receipt\"\n"),
                 true},
        UsageRow{"ambiguous_record",
                 {QStringLiteral("record"), QStringLiteral("CardListEntry")},
                 QStringLiteral("vesk: error: \"CardListEntry\" names more than one record:\n"
                                "  vesk::disc::CardListEntry\n"
                                "  vesk::loyalty::CardListEntry\n"),
                 false},
        UsageRow{"bad_listen_address",
                 {QStringLiteral("demo"), QStringLiteral("--listen"), QStringLiteral("localhost")},
                 QStringLiteral(
                     "vesk: error: --listen: \"localhost\" is not HOST:PORT (a port from 0 to "
                     "65535)\n"),
                 true},
        UsageRow{"help_of_unknown_command",
                 {QStringLiteral("help"), QStringLiteral("sell")},
                 QStringLiteral("vesk: error: unknown command \"sell\"\n"),
                 true}),
    UsageFailure::rowName);

} // namespace
} // namespace vesk::cli::test
