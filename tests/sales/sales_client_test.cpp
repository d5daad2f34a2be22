// The sales client: its three operations, their URLs and bodies, and calls
// through the real transport.

#include "SalesObjects.h"

#include "support/ConfigScope.h"
#include "support/Json.h"
#include "support/OperationTable.h"
#include "support/ScriptedRestClient.h"

#include <vesk/sales/sales.h>

#include <gtest/gtest.h>

#include <optional>
#include <type_traits>

namespace vesk::test {
namespace {

using namespace sales;

static_assert(std::is_same_v<decltype(&Api::itemInfo),
                             PreparedRequest<ItemInfoResponse> (Api::*)(const ItemInfoRequest&)>,
              "itemInfo prepares the call of an ItemInfoResponse");
static_assert(
    std::is_same_v<decltype(&Api::reserveCheque),
                   PreparedRequest<ReserveChequeResponse> (Api::*)(const ReserveChequeRequest&)>,
    "reserveCheque prepares the call of a ReserveChequeResponse");
static_assert(
    std::is_same_v<decltype(&Api::unreserveCheque), PreparedRequest<UnreserveChequeResponse> (
                                                        Api::*)(const UnreserveChequeRequest&)>,
    "unreserveCheque prepares the call of an UnreserveChequeResponse");
static_assert(std::is_polymorphic_v<Api>, "the operations are virtual");
static_assert(std::is_copy_constructible_v<PreparedRequest<ItemInfoResponse>> &&
                  std::is_copy_constructible_v<PreparedRequest<ReserveChequeResponse>> &&
                  std::is_copy_constructible_v<PreparedRequest<UnreserveChequeResponse>>,
              "prepared requests are values");

INSTANTIATE_TEST_SUITE_P(
    Sales, OperationTableTest,
    testing::Values(
        operationRow(&Api::itemInfo, "Vesk.sales:url",
                     "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/itemInfo",
                     salesObjects::itemInfoRequest(), salesObjects::itemInfoResponse()),
        operationRow(&Api::reserveCheque, "Vesk.sales:url",
                     "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/reserveCheque",
                     salesObjects::reserveChequeRequest(), salesObjects::reserveChequeResponse()),
        operationRow(&Api::unreserveCheque, "Vesk.sales:url",
                     "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/unreserveCheque",
                     salesObjects::unreserveChequeRequest(),
                     salesObjects::unreserveChequeResponse())),
    OperationTableTest::rowName);

TEST(SalesClient, DefaultConfigurationPreparesItemInfoOnTheLoopbackServicePath) {
    ConfigScope config;
    Api api;
    const auto prepared = api.itemInfo(ItemInfoRequest());
    EXPECT_EQ(prepared.url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/itemInfo"));
    const QUrl url(prepared.url);
    EXPECT_EQ(url.scheme(), QStringLiteral("http"));
    EXPECT_EQ(url.host(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(url.port(), 55555);
    EXPECT_EQ(url.path(), QStringLiteral("/api/axapta/ExchangeData_Sales/itemInfo"));
    EXPECT_EQ(compactJson(prepared.body), R"({"barcode":"","sectionId":""})");
}

// Calls go through a substitute client, which records what is posted.
class SalesCalls : public testing::Test {
protected:
    SalesCalls() {
        MockFactory<RestClient>::mocked = &substitute;
        api.emplace();
        MockFactory<RestClient>::mocked = nullptr;
    }

    ConfigScope config;
    ScriptedRestClient substitute;
    std::optional<Api> api;
};

TEST_F(SalesCalls, ReleaseIsPreparedAndPerformedWithoutAPriorReservation) {
    UnreserveChequeRequest release;
    release.chequeId = QStringLiteral("CH-42");
    auto prepared = api->unreserveCheque(release);
    EXPECT_EQ(
        prepared.url,
        QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/unreserveCheque"));
    EXPECT_EQ(compactJson(prepared.body), R"({"chequeId":"CH-42"})");
    EXPECT_TRUE(substitute.sent.empty());

    substitute.answer(200, R"({"chequeId": "CH-42"})");
    EXPECT_EQ(prepared.response().chequeId, QStringLiteral("CH-42"));
    ASSERT_EQ(substitute.sent.size(), 1u);
    EXPECT_EQ(substitute.sent[0].body, QByteArray(R"({"chequeId":"CH-42"})"));
    EXPECT_EQ(substitute.sent[0].url.path(),
              QStringLiteral("/api/axapta/ExchangeData_Sales/unreserveCheque"));
}

TEST_F(SalesCalls, ReservationAndReleaseAreIndependentCalls) {
    UnreserveChequeRequest release;
    release.chequeId = QStringLiteral("CH-1");
    auto released = api->unreserveCheque(release);
    ReserveChequeRequest reservation;
    reservation.chequeId = QStringLiteral("CH-2");
    auto reserved = api->reserveCheque(reservation);
    released.getResponseVariant();
    reserved.getResponseVariant();
    ASSERT_EQ(substitute.sent.size(), 2u);
    EXPECT_EQ(substitute.sent[0].body, QByteArray(R"({"chequeId":"CH-1"})"));
    EXPECT_EQ(substitute.sent[1].body,
              QByteArray(R"({"chequeId":"CH-2","lines":[],"storeId":""})"));
}

TEST_F(SalesCalls, RequestInWhichNothingWasSetIsPostedWithItsPlainMembersOnly) {
    api->itemInfo(ItemInfoRequest()).getResponseVariant();
    ReserveChequeRequest reservation;
    reservation.lines = {ReserveLinesEntryRequest()};
    api->reserveCheque(reservation).getResponseVariant();
    api->unreserveCheque(UnreserveChequeRequest()).getResponseVariant();
    ASSERT_EQ(substitute.sent.size(), 3u);
    EXPECT_EQ(substitute.sent[0].body, QByteArray(R"({"barcode":"","sectionId":""})"));
    EXPECT_EQ(substitute.sent[1].body,
              QByteArray(R"({"chequeId":"","lines":[{"barcode":"","lineNum":0,"qty":0,)"
                         R"("sectionId":"","skuId":""}],"storeId":""})"));
    EXPECT_EQ(substitute.sent[2].body, QByteArray(R"({"chequeId":""})"));
}

TEST_F(SalesCalls, ReservationReplyIsReadIntoTheResponseRecord) {
    substitute.answer(200, R"({"chequeId": "CH-42", "lines": [{"lineNum": 2, "qty": 1.5,)"
                           R"( "price": 1200, "existWithoutReservation": true}]})");
    auto prepared = api->reserveCheque(ReserveChequeRequest());
    const ReserveChequeResponse& reply = prepared.response();
    EXPECT_EQ(reply.chequeId, QStringLiteral("CH-42"));
    EXPECT_FALSE(reply.basketId.has_value());
    ASSERT_EQ(reply.lines.size(), 1);
    EXPECT_EQ(reply.lines[0].lineNum, 2);
    EXPECT_EQ(reply.lines[0].qty, 1.5);
    ASSERT_TRUE(reply.lines[0].price.has_value());
    EXPECT_EQ(*reply.lines[0].price, 1200.0);
    EXPECT_TRUE(reply.lines[0].existWithoutReservation);
    EXPECT_FALSE(reply.lines[0].qtyWithoutReservation.has_value());
}

TEST_F(SalesCalls, PreparingSendsNothing) {
    api->itemInfo(ItemInfoRequest());
    api->reserveCheque(ReserveChequeRequest());
    api->unreserveCheque(UnreserveChequeRequest());
    EXPECT_TRUE(substitute.sent.empty());
}

// A host's client that looks items up elsewhere and leaves the reservation
// calls as they are.
class HostSalesApi : public Api {
public:
    PreparedRequest<ItemInfoResponse> itemInfo(const ItemInfoRequest& request) override {
        ++lookups;
        return prepare<ItemInfoResponse>("./itemLookup", request);
    }

    int lookups = 0;
};

TEST(SalesClient, HostOverridingOneOperationChangesOnlyThatOne) {
    ConfigScope config;
    HostSalesApi host;
    Api& api = host;
    ItemInfoRequest lookup;
    lookup.barcode = QStringLiteral("4601234567890");

    const auto item = api.itemInfo(lookup);
    EXPECT_EQ(host.lookups, 1);
    EXPECT_EQ(item.url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/itemLookup"));
    EXPECT_EQ(item.body, serder::serialize(lookup));

    EXPECT_EQ(api.reserveCheque(ReserveChequeRequest()).url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/reserveCheque"));
    EXPECT_EQ(
        api.unreserveCheque(UnreserveChequeRequest()).url,
        QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/unreserveCheque"));
    EXPECT_EQ(host.lookups, 1);
}

} // namespace
} // namespace vesk::test
