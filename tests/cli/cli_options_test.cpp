// --verbose's headers, --base, `record --example` and the endpoints of `ops`,
// against an emulator.

#include "EmulatorFixture.h"
#include "InProcess.h"

#include <cli/HeaderTrace.h>
#include <cli/Operations.h>
#include <cli/RecordExample.h>
#include <cli/RecordMembers.h>
#include <requestcheck/RequestCheck.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace vesk::cli::test {
namespace {

const QString coffeeRequest = QStringLiteral(R"({"barcode": "4601234000017"})");

class CliOptions : public EmulatorTest {
protected:
    QString base() const { return QStringLiteral("http://127.0.0.1:%1").arg(port()); }
};

TEST_F(CliOptions, VerboseShowsTheRequestAndReplyHeaders) {
    const VeskRun run =
        runVesk(QStringList{QStringLiteral("--verbose"), QStringLiteral("call"),
                            QStringLiteral("sales"), QStringLiteral("itemInfo"), coffeeRequest} +
                urlOptions());
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    const QString path = QUrl(serviceUrl(QStringLiteral("sales"))).path();
    EXPECT_TRUE(run.err.contains(QStringLiteral("> POST %1itemInfo HTTP/1.1\n"
                                                "> Host: 127.0.0.1:%2\n"
                                                "> Content-Type: application/json\n"
                                                "> Content-Length: 42\n")
                                     .arg(path)
                                     .arg(port())))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("\n< HTTP 200\n"))) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(
        QRegularExpression(QStringLiteral("\n< content-type: application/json[^\n]*\n"),
                           QRegularExpression::CaseInsensitiveOption)))
        << run.err.toStdString();
    // The library sends every plain member: {"barcode":"4601234000017","sectionId":""}.
    // The transport's log line of the exchange, with vesk's prefix.
    EXPECT_TRUE(run.err.contains(QStringLiteral("vesk: vesksales: POST ")))
        << run.err.toStdString();
}

TEST(HeaderTrace, MasksTheValuesOfCredentialHeaders) {
    http::Request request;
    request.method = "POST";
    request.url = QUrl(QStringLiteral("http://127.0.0.1:55555/api/x?token=abc"));
    request.headers.insert("Authorization", "Bearer s3cret");
    request.headers.insert("Cookie", "session=42");
    request.headers.insert("X-Till", "7");
    http::Response response;
    response.statusCode = 200;
    response.headers.insert("set-cookie", "session=43");
    response.headers.insert("content-type", "application/json");
    response.headers.insert(":failure", "none");
    RestClient::Settings settings;
    settings.acceptEncoding = QStringLiteral("gzip");

    EXPECT_EQ(requestHeaderLines(request, settings),
              (QStringList{QStringLiteral("> POST /api/x?token=*** HTTP/1.1"),
                           QStringLiteral("> Host: 127.0.0.1:55555"),
                           QStringLiteral("> Accept-Encoding: gzip"),
                           QStringLiteral("> Authorization: ***"), QStringLiteral("> Cookie: ***"),
                           QStringLiteral("> X-Till: 7")}));
    EXPECT_EQ(replyHeaderLines(response),
              (QStringList{QStringLiteral("< HTTP 200"),
                           QStringLiteral("< content-type: application/json"),
                           QStringLiteral("< set-cookie: ***")}));
}

TEST_F(CliOptions, BasePointsEveryServiceAtItsDefaultPathThere) {
    for (const QString& service : serviceNames()) {
        const Operation* operation = operationsOf(service).first();
        const VeskRun run = runVesk({QStringLiteral("--base"), base(), QStringLiteral("call"),
                                     service, operation->name, QStringLiteral("{}")});
        // The emulator answers each: a response or the service's own refusal.
        EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 2) << testing::PrintToString(run);
        EXPECT_FALSE(run.err.contains(QStringLiteral("network"))) << run.err.toStdString();
    }
    const VeskRun item =
        runVesk({QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                 coffeeRequest, QStringLiteral("--base"), base()});
    EXPECT_EQ(item.exitCode, 0) << testing::PrintToString(item);
    EXPECT_EQ(item.json().value(QStringLiteral("barcode")).toString(),
              QStringLiteral("4601234000017"));
}

TEST_F(CliOptions, UrlOverridesBaseForItsService) {
    const ClosedPort closed;
    const VeskRun run = runVesk({QStringLiteral("--base"), base(), QStringLiteral("--url"),
                                 QStringLiteral("sales=http://127.0.0.1:%1/").arg(closed.port()),
                                 QStringLiteral("call"), QStringLiteral("sales"),
                                 QStringLiteral("itemInfo"), coffeeRequest});
    EXPECT_EQ(run.exitCode, 7) << testing::PrintToString(run);
    const VeskRun disc = runVesk({QStringLiteral("--base"), base(), QStringLiteral("--url"),
                                  QStringLiteral("sales=http://127.0.0.1:%1/").arg(closed.port()),
                                  QStringLiteral("ops")});
    EXPECT_TRUE(disc.out.contains(QStringLiteral("POST /api/axapta/ExchangeData_Disc/discCalc")))
        << disc.out.toStdString();
}

TEST_F(CliOptions, BenchTakesBase) {
    const VeskRun run =
        runVesk({QStringLiteral("bench"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                 coffeeRequest, QStringLiteral("--count"), QStringLiteral("6"),
                 QStringLiteral("--json"), QStringLiteral("--base"), base()});
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.json().value(QStringLiteral("calls")).toInt(), 6);
    EXPECT_EQ(run.json().value(QStringLiteral("failures")).toObject(), QJsonObject());
}

TEST(OpsEndpoints, FollowTheConfiguredBaseUrl) {
    const VeskRun run =
        runVesk({QStringLiteral("--url"), QStringLiteral("sales=http://10.1.2.3:8080/shop/sales"),
                 QStringLiteral("ops"), QStringLiteral("--json")});
    ASSERT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    const QJsonArray listing = QJsonDocument::fromJson(run.out.toUtf8()).array();
    ASSERT_EQ(listing.size(), 16);
    const QJsonObject itemInfo = listing.at(13).toObject();
    EXPECT_EQ(itemInfo.value(QStringLiteral("operation")).toString(), QStringLiteral("itemInfo"));
    EXPECT_EQ(itemInfo.value(QStringLiteral("endpoint")).toString(),
              QStringLiteral("POST /shop/sales/itemInfo"));
    EXPECT_EQ(itemInfo.value(QStringLiteral("url")).toString(),
              QStringLiteral("http://10.1.2.3:8080/shop/sales/itemInfo"));
}

TEST_F(CliOptions, EmulatorCommandTakesBase) {
    const VeskRun run = runVesk(
        {QStringLiteral("emulator"), QStringLiteral("health"), QStringLiteral("--base"), base()});
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_TRUE(run.out.contains(QStringLiteral("\"requestsServed\""))) << run.out.toStdString();
}

TEST_F(CliOptions, DemoExternalTakesBase) {
    const VeskRun run = runVesk(
        {QStringLiteral("demo"), QStringLiteral("--external"), QStringLiteral("--base"), base()});
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
}

TEST(BaseOption, RefusesAUrlWithAPath) {
    const CliRun run =
        runInProcess({QStringLiteral("--base"), QStringLiteral("http://127.0.0.1:1/api/"),
                      QStringLiteral("ops")});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.err, QStringLiteral("vesk: error: --base \"http://127.0.0.1:1/api/\": expected "
                                      "http://HOST:PORT or https://HOST:PORT, without a path\n"
                                      "Try 'vesk help ops' for more information.\n"));
}

TEST(OpsListing, ShowsEachOperationsEndpoint) {
    const CliRun run = runInProcess({QStringLiteral("ops"), QStringLiteral("--json")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonArray listing = QJsonDocument::fromJson(run.out.toUtf8()).array();
    ASSERT_EQ(listing.size(), operations().size());
    for (const QJsonValue& entry : listing) {
        const QString service = entry[QStringLiteral("service")].toString();
        const QString name = entry[QStringLiteral("operation")].toString();
        const QString path =
            QUrl(QString::fromLatin1(findOperation(service, name)->client->defaultUrl)).path() +
            name;
        EXPECT_EQ(entry[QStringLiteral("endpoint")].toString(), QStringLiteral("POST ") + path);
    }
    const CliRun table = runInProcess({QStringLiteral("ops")});
    EXPECT_TRUE(table.out.contains(
        QRegularExpression(QStringLiteral("\nsales +itemInfo +POST "
                                          "/api/axapta/ExchangeData_Sales/itemInfo +vesk::sales::"
                                          "ItemInfoRequest +vesk::sales::ItemInfoResponse\n"))))
        << table.out.toStdString();
}

TEST(RecordExample, EveryRequestsExamplePassesItsCheckWithEveryMember) {
    for (const Operation& operation : operations()) {
        const QVariantMap example = recordExample(*operation.request);
        EXPECT_EQ(check::checkRequest(example, *operation.request), QList<check::RequestProblem>())
            << operation.name.toStdString();
        EXPECT_EQ(example.size(),
                  recordMembers(QMetaType::fromName(operation.request->className())).size());
    }
}

TEST(RecordExample, PrintsTypedPlaceholdersAndNestedEntries) {
    const CliRun run =
        runInProcess({QStringLiteral("record"), QStringLiteral("sales::ItemInfoRequest"),
                      QStringLiteral("--example")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, QStringLiteral("{\n    \"sectionId\": \"\",\n    \"barcode\": \"\"\n}\n"));
    const CliRun disc =
        runInProcess({QStringLiteral("record"), QStringLiteral("disc::DiscCalcRequest"),
                      QStringLiteral("--example")});
    EXPECT_EQ(disc.exitCode, 0);
    EXPECT_TRUE(disc.out.contains(QStringLiteral("\"lines\": [\n        {\n")))
        << disc.out.toStdString();
    EXPECT_TRUE(disc.out.contains(QStringLiteral(": 0.0"))) << disc.out.toStdString();
    const CliRun reserve =
        runInProcess({QStringLiteral("record"), QStringLiteral("sales::ReserveChequeRequest"),
                      QStringLiteral("--example")});
    EXPECT_TRUE(reserve.out.contains(QStringLiteral(": false"))) << reserve.out.toStdString();
    const CliRun parking =
        runInProcess({QStringLiteral("record"), QStringLiteral("loyalty::ParkingInfoResponse"),
                      QStringLiteral("--example")});
    EXPECT_TRUE(parking.out.contains(
        QStringLiteral("\"parkingDateTimeEntry\": \"2026-01-01T09:00:00.000\"")))
        << parking.out.toStdString();
}

TEST_F(CliOptions, ExampleIsAcceptedByAStrictCall) {
    const CliRun example =
        runInProcess({QStringLiteral("record"), QStringLiteral("disc::DiscCalcRequest"),
                      QStringLiteral("--example")});
    ASSERT_EQ(example.exitCode, 0);
    const VeskRun run = runVesk(QStringList{QStringLiteral("call"), QStringLiteral("--strict"),
                                            QStringLiteral("disc"), QStringLiteral("discCalc"),
                                            QStringLiteral("-")} +
                                    urlOptions(),
                                example.out.toUtf8());
    // Sent, and answered: no problem stopped it.
    EXPECT_FALSE(run.err.contains(QStringLiteral("problem"))) << run.err.toStdString();
    EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 2) << testing::PrintToString(run);
}

} // namespace
} // namespace vesk::cli::test
