// What an integrator sees in the log when a reply is read as specified but
// hides a problem: a 200 that is no JSON object, an error reply without the
// service's code and message, reply members that do not fit their record.
// The results themselves stay exactly as they were.

#include "support/ConfigScope.h"
#include "support/LogCapture.h"
#include "support/ScriptedRestClient.h"
#include "support/SubstituteApi.h"

#include <vesk/vesk.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace vesk {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const char* const itemInfoUrl = "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/itemInfo";

// The sales client over a scripted substitute, and the log of the calls.
class ReplyDiagnosticsTest : public testing::Test {
protected:
    PreparedRequest<sales::ItemInfoResponse> itemInfo() {
        sales::ItemInfoRequest request;
        request.barcode = QStringLiteral("4601234000017");
        return api->itemInfo(request);
    }

    test::ConfigScope config;
    test::ScriptedRestClient substitute;
    std::unique_ptr<sales::Api> api = test::apiOver<sales::Api>(substitute);
    test::LogCapture log;
};

struct NotAnObjectRow {
    const char* name;
    QByteArray body;
    const char* what;    // how the warning names the body
    const char* excerpt; // what of the body the warning shows
};

void PrintTo(const NotAnObjectRow& row, std::ostream* out) {
    *out << row.name;
}

class NotAnObjectTest : public ReplyDiagnosticsTest,
                        public testing::WithParamInterface<NotAnObjectRow> {};

TEST_P(NotAnObjectTest, SuccessIsAnEmptyRecordAndTheBodyIsShownInAWarning) {
    const NotAnObjectRow& row = GetParam();
    substitute.answer(200, row.body);

    const sales::ItemInfoResponse item = itemInfo().response();

    EXPECT_EQ(item, sales::ItemInfoResponse());
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first().toStdString(),
              std::string("vesksales warning: ") + itemInfoUrl + " answered 200 with " + row.what +
                  ", not a JSON object; the reply reads as an empty object. Body (" +
                  std::to_string(row.body.size()) + " bytes): " + row.excerpt);
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, NotAnObjectTest,
    testing::Values(NotAnObjectRow{"Empty", "", "an empty body", "<empty>"},
                    NotAnObjectRow{"Html", "<html><body>Service Unavailable</body></html>",
                                   "a body that is not JSON",
                                   "<html><body>Service Unavailable</body></html>"},
                    NotAnObjectRow{"JsonArray", "[1,2]", "a JSON array", "[1,2]"},
                    NotAnObjectRow{"CutJson", R"({"barcode": "46012)", "a body that is not JSON",
                                   R"({"barcode": "46012)"}),
    [](const testing::TestParamInfo<NotAnObjectRow>& info) {
        return std::string(info.param.name);
    });

TEST_F(ReplyDiagnosticsTest, ErrorReplyWithHtmlBodyShowsStatusAndBody) {
    const QByteArray page = "<html><h1>502 Bad Gateway</h1></html>";
    substitute.answer(502, page);

    try {
        itemInfo().response();
        FAIL() << "a 502 is no success";
    } catch (const NetworkException&) {
        FAIL() << "a 502 is no network failure";
    } catch (const Exception& e) {
        EXPECT_EQ(e.code(), 0);
        EXPECT_EQ(e.message().text(), QString());
    }
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first().toStdString(),
              std::string("vesksales warning: ") + itemInfoUrl +
                  " answered 502 without a numeric \"code\" or a string \"userMsg\"; raising "
                  "vesk::Exception with code 0 and message \"\". Body (" +
                  std::to_string(page.size()) + " bytes): " + page.toStdString());
}

TEST_F(ReplyDiagnosticsTest, ErrorReplyWithTextCodeNamesWhatIsMissing) {
    substitute.answer(400, R"({"code": "17", "userMsg": "No such item"})");

    EXPECT_THROW(itemInfo().response(), Exception);
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_THAT(log.lines().first().toStdString(),
                AllOf(HasSubstr("answered 400 without a numeric \"code\";"),
                      HasSubstr("code 0 and message \"No such item\"")));
}

TEST_F(ReplyDiagnosticsTest, WholeRepliesAndServiceErrorsLogNothing) {
    substitute.answer(200, R"({"barcode": "4601234000017", "price": 12.5})");
    EXPECT_EQ(itemInfo().response().price, 12.5);
    substitute.answer(404, R"({"code": 17, "userMsg": "No such item"})");
    EXPECT_THROW(itemInfo().response(), Exception);

    EXPECT_EQ(log.all(), "");
}

TEST_F(ReplyDiagnosticsTest, NetworkFailureAddsNoDiagnostic) {
    substitute.failWith(http::Response::Failure::Network, QStringLiteral("Cannot reach it"));

    EXPECT_THROW(itemInfo().response(), NetworkException);
    EXPECT_EQ(log.all(), "");
}

TEST_F(ReplyDiagnosticsTest, MembersThatDoNotFitAreNamedWithTheirValues) {
    substitute.answer(200, R"({"barcode": "4601234000017", "barcodeType": "EAN",)"
                           R"( "price": 1.5, "properties": 2147483648, "name": {"ru": "x"}})");

    const sales::ItemInfoResponse item = itemInfo().response();

    // What the record holds is what Qt's conversions make of the values.
    EXPECT_EQ(item.barcode, QStringLiteral("4601234000017"));
    EXPECT_EQ(item.barcodeType, 0);
    EXPECT_EQ(item.properties, -2147483647 - 1);
    EXPECT_EQ(item.name, QString());
    EXPECT_EQ(item.price, 1.5);

    const std::string all = log.all();
    EXPECT_EQ(log.lines().size(), 3) << all;
    const std::string start = std::string("vesksales warning: ") + itemInfoUrl +
                              ": reply member vesk::sales::ItemInfoResponse.";
    EXPECT_THAT(all, HasSubstr(start + "barcodeType is \"EAN\", which is not a 32-bit integer; "
                                       "the record holds 0"));
    EXPECT_THAT(all, HasSubstr(start + "properties is 2147483648, which is not a 32-bit integer; "
                                       "the record holds -2147483648"));
    EXPECT_THAT(all, HasSubstr(start + "name is"));
    EXPECT_THAT(all, HasSubstr("which is not a string"));
}

TEST_F(ReplyDiagnosticsTest, FractionForAnIntegerIsNamed) {
    substitute.answer(200, R"({"barcodeType": 2.5})");

    // Qt rounds a fraction to the nearest integer.
    EXPECT_EQ(itemInfo().response().barcodeType, 3);
    EXPECT_THAT(log.all(), HasSubstr("ItemInfoResponse.barcodeType is 2.5, which is not a 32-bit "
                                     "integer; the record holds 3"));
}

TEST_F(ReplyDiagnosticsTest, NullsAndNumbersForTextAreNoLoss) {
    substitute.answer(200, R"({"barcode": 4601234000017, "barcodeType": null, "price": 3})");

    const sales::ItemInfoResponse item = itemInfo().response();

    EXPECT_EQ(item.barcode, QStringLiteral("4601234000017"));
    EXPECT_EQ(item.price, 3.0);
    EXPECT_EQ(log.all(), "");
}

TEST(ReplyDiagnostics, ObjectForAListIsNamedInsideNestedRecordsToo) {
    test::ConfigScope config;
    test::ScriptedRestClient substitute;
    const auto api = test::apiOver<disc::Api>(substitute);
    test::LogCapture log;
    substitute.answer(200, R"({"chequeId": "A-1", "lines": [{"lineNum": "one", "discounts": 5}]})");

    const disc::DiscCalcResponse reply = api->discCalc(disc::DiscCalcRequest()).response();

    ASSERT_EQ(reply.lines.size(), 1);
    EXPECT_EQ(reply.lines[0].lineNum, 0);
    EXPECT_TRUE(reply.lines[0].discounts.isEmpty());
    EXPECT_THAT(log.all(), HasSubstr("veskdisc warning: "));
    EXPECT_THAT(log.all(), HasSubstr("reply member vesk::disc::LinesEntryResponse.lineNum is "
                                     "\"one\", which is not a 32-bit integer"));
    EXPECT_THAT(log.all(), HasSubstr("reply member vesk::disc::LinesEntryResponse.discounts is 5, "
                                     "which is not a list of objects"));
}

TEST(ReplyDiagnostics, SecretMembersAreMaskedInTheWarning) {
    test::ConfigScope config;
    test::ScriptedRestClient substitute;
    const auto api = test::apiOver<loyalty::Api>(substitute);
    test::LogCapture log;
    substitute.answer(200, R"({"token": {"secret": "T-998877"}, "discCardId": ["2775000000011"]})");

    api->processId(loyalty::ProcessIdRequest()).response();

    EXPECT_THAT(log.all(), HasSubstr("ProcessIdResponse.token is"));
    EXPECT_THAT(log.all(), HasSubstr("ProcessIdResponse.discCardId is"));
    EXPECT_THAT(log.all(), Not(HasSubstr("T-998877")));
    EXPECT_THAT(log.all(), Not(HasSubstr("2775000000011")));
}

TEST(ReplyDiagnostics, RecordWritesOutsideACallLogNothing) {
    test::LogCapture log;

    const auto item = serder::deserialize<sales::ItemInfoResponse>(
        QVariantMap{{QStringLiteral("barcodeType"), QStringLiteral("EAN")}});

    EXPECT_EQ(item.barcodeType, 0);
    EXPECT_EQ(log.all(), "");
}

} // namespace
} // namespace vesk
