// The discount client: its three operations, their URLs and bodies, and
// calls through the real transport.

#include "DiscObjects.h"

#include "support/ConfigScope.h"
#include "support/Json.h"
#include "support/OperationTable.h"
#include "support/ScriptedRestClient.h"

#include <vesk/disc/disc.h>

#include <gtest/gtest.h>

#include <optional>
#include <type_traits>

namespace vesk::test {
namespace {

using namespace disc;

static_assert(std::is_same_v<decltype(&Api::discCalc),
                             PreparedRequest<DiscCalcResponse> (Api::*)(const DiscCalcRequest&)>,
              "discCalc prepares the call of a DiscCalcResponse");
static_assert(std::is_same_v<decltype(&Api::discCalcPay), PreparedRequest<DiscCalcPayResponse> (
                                                              Api::*)(const DiscCalcPayRequest&)>,
              "discCalcPay prepares the call of a DiscCalcPayResponse");
static_assert(
    std::is_same_v<decltype(&Api::getPublicityList), PreparedRequest<GetPublicityListResponse> (
                                                         Api::*)(const GetPublicityListRequest&)>,
    "getPublicityList prepares the call of a GetPublicityListResponse");
static_assert(std::is_polymorphic_v<Api>, "the operations are virtual");
static_assert(std::is_base_of_v<PreparedRequestBase, PreparedRequest<DiscCalcResponse>>);
static_assert(std::is_copy_constructible_v<PreparedRequest<DiscCalcResponse>> &&
                  std::is_copy_constructible_v<PreparedRequest<DiscCalcPayResponse>> &&
                  std::is_copy_constructible_v<PreparedRequest<GetPublicityListResponse>>,
              "prepared requests are values");

INSTANTIATE_TEST_SUITE_P(
    Disc, OperationTableTest,
    testing::Values(
        operationRow(&Api::discCalc, "Vesk.disc:url",
                     "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc",
                     discObjects::discCalcRequest(), discObjects::discCalcResponse()),
        operationRow(&Api::discCalcPay, "Vesk.disc:url",
                     "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalcPay",
                     discObjects::discCalcPayRequest(), discObjects::discCalcPayResponse()),
        operationRow(&Api::getPublicityList, "Vesk.disc:url",
                     "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/getPublicityList",
                     discObjects::getPublicityListRequest(),
                     discObjects::getPublicityListResponse())),
    OperationTableTest::rowName);

TEST(DiscClient, DefaultConfigurationPreparesEachOperationOnTheLoopbackServicePath) {
    ConfigScope config;
    Api api;
    EXPECT_EQ(api.discCalc(DiscCalcRequest()).url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc"));
    EXPECT_EQ(api.discCalcPay(DiscCalcPayRequest()).url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalcPay"));
    EXPECT_EQ(
        api.getPublicityList(GetPublicityListRequest()).url,
        QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/getPublicityList"));

    const QUrl url(api.discCalc(DiscCalcRequest()).url);
    EXPECT_EQ(url.scheme(), QStringLiteral("http"));
    EXPECT_EQ(url.host(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(url.port(), 55555);
    EXPECT_EQ(url.path(), QStringLiteral("/api/axapta/ExchangeData_Disc/discCalc"));
}

// Performs each operation on a request in which nothing was set through a
// substitute client, and gives the bodies as posted.
class DiscPostedBodies : public testing::Test {
protected:
    DiscPostedBodies() {
        MockFactory<RestClient>::mocked = &substitute;
        api.emplace();
        MockFactory<RestClient>::mocked = nullptr;
    }

    template <class Response>
    QByteArray post(PreparedRequest<Response> prepared) {
        prepared.response();
        return substitute.sent.empty() ? QByteArray() : substitute.sent.back().body;
    }

    ConfigScope config;
    ScriptedRestClient substitute;
    std::optional<Api> api;
};

TEST_F(DiscPostedBodies, RequestInWhichNothingWasSetIsPostedWithItsPlainMembersOnly) {
    EXPECT_EQ(post(api->discCalc(DiscCalcRequest())),
              R"({"calcDateTime":"","cardList":[],"chequeId":"","lines":[],"publicities":[],)"
              R"("salesChannel":0,"storeId":""})");
    EXPECT_EQ(post(api->discCalcPay(DiscCalcPayRequest())),
              R"({"calcDateTime":"","cardList":[],"chequeId":"","lines":[],"payments":[],)"
              R"("publicities":[],"salesChannel":0,"storeId":""})");
    EXPECT_EQ(post(api->getPublicityList(GetPublicityListRequest())),
              R"({"cardList":[],"dataId":"","dateTime":"","extraData":[],"lines":[],)"
              R"("orderDateTime":"","salesChannel":0,"shopNum":0,"token":""})");
    ASSERT_EQ(substitute.sent.size(), 3u);
    EXPECT_EQ(substitute.sent[0].url.toString(),
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc"));
    EXPECT_EQ(substitute.sent[0].method, QByteArray("POST"));
}

TEST_F(DiscPostedBodies, EntriesInWhichNothingWasSetArePostedWithoutTheirOptionalMembers) {
    DiscCalcPayRequest request;
    request.cardList = {CardListEntry()};
    LinesEntryRequest line;
    line.discounts = {DiscountsEntryRequest()};
    line.extraDataLine = {ExtraDataLineEntry()};
    request.lines = {line};
    request.payments = {PaymentsEntryRequest()};
    EXPECT_EQ(post(api->discCalcPay(request)),
              R"({"calcDateTime":"","cardList":[{}],"chequeId":"","lines":[{"barcode":"",)"
              R"("discounts":[{}],"extraDataLine":[{}],"lineNum":0,"locationId":"","qty":0,)"
              R"("retailPrice":0}],"payments":[{"amount":0,"code":0,"payLineNum":0}],)"
              R"("publicities":[],"salesChannel":0,"storeId":""})");
}

TEST_F(DiscPostedBodies, ReplyIsReadIntoTheResponseRecord) {
    substitute.answer(200, R"({"chequeId": "CH-42", "calcDateTime": "2024-05-01T12:30:05",)"
                           R"( "lines": [{"lineNum": 3, "discounts": [{"discId": "D-1",)"
                           R"( "discUnit": 10.5, "discQty": 2}]}]})");
    auto prepared = api->discCalc(DiscCalcRequest());
    const DiscCalcResponse& reply = prepared.response();
    EXPECT_EQ(reply.chequeId, QStringLiteral("CH-42"));
    EXPECT_EQ(reply.calcDateTime, QStringLiteral("2024-05-01T12:30:05"));
    ASSERT_EQ(reply.lines.size(), 1);
    EXPECT_EQ(reply.lines[0].lineNum, 3);
    ASSERT_EQ(reply.lines[0].discounts.size(), 1);
    EXPECT_EQ(reply.lines[0].discounts[0].discId, QStringLiteral("D-1"));
    EXPECT_EQ(reply.lines[0].discounts[0].discUnit, 10.5);
    EXPECT_EQ(reply.lines[0].discounts[0].discQty, 2.0);
    EXPECT_FALSE(reply.lines[0].discounts[0].payLineNum.has_value());
}

TEST_F(DiscPostedBodies, PreparingSendsNothing) {
    api->discCalc(DiscCalcRequest());
    api->discCalcPay(DiscCalcPayRequest());
    api->getPublicityList(GetPublicityListRequest());
    EXPECT_TRUE(substitute.sent.empty());
}

// A host's client that sends the promotion query elsewhere and leaves the
// calculations as they are.
class HostDiscApi : public Api {
public:
    PreparedRequest<GetPublicityListResponse>
    getPublicityList(const GetPublicityListRequest& request) override {
        ++publicityQueries;
        return prepare<GetPublicityListResponse>("./promotions", request);
    }

    int publicityQueries = 0;
};

TEST(DiscClient, HostOverridingOneOperationChangesOnlyThatOne) {
    ConfigScope config;
    HostDiscApi host;
    Api& api = host;
    GetPublicityListRequest query;
    query.token = QStringLiteral("tok-abc");

    const auto publicities = api.getPublicityList(query);
    EXPECT_EQ(host.publicityQueries, 1);
    EXPECT_EQ(publicities.url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/promotions"));
    EXPECT_EQ(publicities.body, serder::serialize(query));

    EXPECT_EQ(api.discCalc(DiscCalcRequest()).url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc"));
    EXPECT_EQ(api.discCalcPay(DiscCalcPayRequest()).url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalcPay"));
    EXPECT_EQ(host.publicityQueries, 1);
}

} // namespace
} // namespace vesk::test
