// The loyalty client: its ten operations, their endpoints and bodies, the
// additional-information pair, and a host's override of one operation.

#include "FullObjects.h"

#include "support/ConfigScope.h"
#include "support/Json.h"
#include "support/OperationTable.h"

#include <vesk/loyalty/loyalty.h>

#include <morva/Serder.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>
#include <type_traits>

namespace vesk::loyalty {
namespace {

using vesk::test::ConfigScope;
using vesk::test::operationRow;
using vesk::test::OperationTableTest;

// Each operation takes its request by constant reference and returns the
// typed prepared request of its response record.
static_assert(std::is_same_v<decltype(&Api::processId),
                             PreparedRequest<ProcessIdResponse> (Api::*)(const ProcessIdRequest&)>);
static_assert(std::is_same_v<decltype(&Api::processPin), PreparedRequest<ProcessPinResponse> (
                                                             Api::*)(const ProcessPinRequest&)>);
static_assert(
    std::is_same_v<decltype(&Api::getCardBalance),
                   PreparedRequest<CardBalanceResponse> (Api::*)(const CardBalanceRequest&)>);
static_assert(
    std::is_same_v<decltype(&Api::calcBonusAmount), PreparedRequest<CalcBonusAmountResponse> (
                                                        Api::*)(const CalcBonusAmountRequest&)>);
static_assert(std::is_same_v<decltype(&Api::calcAndReserveBonusPay),
                             PreparedRequest<CalcAndReserveBonusPayResponse> (Api::*)(
                                 const CalcAndReserveBonusPayRequest&)>);
static_assert(std::is_same_v<decltype(&Api::checkPin),
                             PreparedRequest<CheckPinResponse> (Api::*)(const CheckPinRequest&)>);
static_assert(
    std::is_same_v<decltype(&Api::commitCheque),
                   PreparedRequest<CommitChequeResponse> (Api::*)(const CommitChequeRequest&)>);
static_assert(
    std::is_same_v<decltype(&Api::getParkingInfo),
                   PreparedRequest<ParkingInfoResponse> (Api::*)(const ParkingInfoRequest&)>);
static_assert(
    std::is_same_v<decltype(&Api::cashierAdditionalInfo),
                   PreparedRequest<AdditionalInfoResponse> (Api::*)(const AdditionalInfoRequest&)>);
static_assert(
    std::is_same_v<decltype(&Api::chequeAdditionalInfo),
                   PreparedRequest<AdditionalInfoResponse> (Api::*)(const AdditionalInfoRequest&)>);

// Both additional-information operations make prepared requests of one type.
static_assert(
    std::is_same_v<decltype(std::declval<Api&>().cashierAdditionalInfo(AdditionalInfoRequest())),
                   decltype(std::declval<Api&>().chequeAdditionalInfo(AdditionalInfoRequest()))>);

// The client is polymorphic and a process-wide singleton of its own.
static_assert(std::is_polymorphic_v<Api>);
static_assert(std::is_base_of_v<ServiceClient, Api>);
static_assert(std::is_base_of_v<Singleton<Api>, Api>);

#define LOYALTY_URL "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/"

INSTANTIATE_TEST_SUITE_P(
    Loyalty, OperationTableTest,
    testing::Values(
        operationRow(&Api::processId, "Vesk.loyalty:url", LOYALTY_URL "processId",
                     test::processIdRequestJson(), test::processIdResponseJson()),
        operationRow(&Api::processPin, "Vesk.loyalty:url", LOYALTY_URL "processPin",
                     test::processPinRequestJson(), test::processPinResponseJson()),
        operationRow(&Api::getCardBalance, "Vesk.loyalty:url", LOYALTY_URL "getCardBalance",
                     test::cardBalanceRequestJson(), test::cardBalanceResponseJson()),
        operationRow(&Api::calcBonusAmount, "Vesk.loyalty:url", LOYALTY_URL "calcBonusAmount",
                     test::calcBonusAmountRequestJson(), test::calcBonusAmountResponseJson()),
        operationRow(&Api::calcAndReserveBonusPay, "Vesk.loyalty:url",
                     LOYALTY_URL "calcAndReserveBonusPay",
                     test::calcAndReserveBonusPayRequestJson(),
                     test::calcAndReserveBonusPayResponseJson()),
        operationRow(&Api::checkPin, "Vesk.loyalty:url", LOYALTY_URL "checkPin",
                     test::checkPinRequestJson(), test::checkPinResponseJson()),
        operationRow(&Api::commitCheque, "Vesk.loyalty:url", LOYALTY_URL "commitCheque",
                     test::commitChequeRequestJson(), test::commitChequeResponseJson()),
        operationRow(&Api::getParkingInfo, "Vesk.loyalty:url", LOYALTY_URL "getParkingInfo",
                     test::parkingInfoRequestJson(), test::parkingInfoResponseJson()),
        operationRow(&Api::cashierAdditionalInfo, "Vesk.loyalty:url",
                     LOYALTY_URL "cashierAdditionalInfo", test::additionalInfoRequestJson(),
                     test::additionalInfoResponseJson()),
        operationRow(&Api::chequeAdditionalInfo, "Vesk.loyalty:url",
                     LOYALTY_URL "chequeAdditionalInfo", test::additionalInfoRequestJson(),
                     test::additionalInfoResponseJson())),
    OperationTableTest::rowName);

template <class R>
R fromJson(const QByteArray& json) {
    return serder::deserialize<R>(QJsonDocument::fromJson(json).object().toVariantMap());
}

TEST(LoyaltyApi, SameAdditionalInfoRequestGivesEqualBodiesAndUrlsDifferingInTheLastSegment) {
    ConfigScope config;
    Api api;
    const AdditionalInfoRequest request =
        fromJson<AdditionalInfoRequest>(test::additionalInfoRequestJson());

    const PreparedRequest<AdditionalInfoResponse> cashier = api.cashierAdditionalInfo(request);
    const PreparedRequest<AdditionalInfoResponse> cheque = api.chequeAdditionalInfo(request);

    EXPECT_EQ(cashier.body, cheque.body);
    EXPECT_EQ(cashier.body, serder::serialize(request));
    EXPECT_EQ(cashier.client, cheque.client);

    const QUrl cashierUrl(cashier.url);
    const QUrl chequeUrl(cheque.url);
    EXPECT_EQ(cashierUrl.adjusted(QUrl::RemoveFilename), chequeUrl.adjusted(QUrl::RemoveFilename));
    EXPECT_EQ(cashierUrl.fileName(), QStringLiteral("cashierAdditionalInfo"));
    EXPECT_EQ(chequeUrl.fileName(), QStringLiteral("chequeAdditionalInfo"));
    EXPECT_EQ(cashier.url, QStringLiteral(LOYALTY_URL "cashierAdditionalInfo"));
    EXPECT_EQ(cheque.url, QStringLiteral(LOYALTY_URL "chequeAdditionalInfo"));
}

TEST(LoyaltyApi, AdditionalInfoOperationsFollowAConfiguredBase) {
    ConfigScope config({{QStringLiteral("Vesk.loyalty:url"),
                         QStringLiteral("https://backoffice.example:8443/loyalty")}});
    Api api;
    EXPECT_EQ(api.cashierAdditionalInfo(AdditionalInfoRequest()).url,
              QStringLiteral("https://backoffice.example:8443/loyalty/cashierAdditionalInfo"));
    EXPECT_EQ(api.chequeAdditionalInfo(AdditionalInfoRequest()).url,
              QStringLiteral("https://backoffice.example:8443/loyalty/chequeAdditionalInfo"));
}

TEST(LoyaltyApi, DefaultConfigurationPreparesCommitChequeOnTheLoopbackAddress) {
    ConfigScope config;
    Api api;
    const PreparedRequest<CommitChequeResponse> prepared = api.commitCheque(CommitChequeRequest());
    const QUrl url(prepared.url);
    EXPECT_EQ(url.scheme(), QStringLiteral("http"));
    EXPECT_EQ(url.host(), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(url.port(), 55555);
    EXPECT_EQ(url.path(), QStringLiteral("/api/axapta/ExchangeData_Loyalty/commitCheque"));
    EXPECT_EQ(
        prepared.url,
        QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/commitCheque"));
    EXPECT_FALSE(prepared.keptResponse().has_value());
}

TEST(LoyaltyApi, OperationOnlyPreparesTheCallAndSharesTheClient) {
    ConfigScope config;
    Api api;
    const PreparedRequest<CheckPinResponse> prepared = api.checkPin(CheckPinRequest());
    EXPECT_EQ(prepared.client, api.restClient());
    EXPECT_EQ(prepared.body, serder::serialize(CheckPinRequest()));
    EXPECT_FALSE(prepared.keptResponse().has_value());
}

// A host's client that posts PIN checks elsewhere and marks their bodies.
class HostApi : public Api {
public:
    PreparedRequest<CheckPinResponse> checkPin(const CheckPinRequest& request) override {
        PreparedRequest<CheckPinResponse> prepared = Api::checkPin(request);
        prepared.url = QStringLiteral("http://127.0.0.1:55555/host/checkPin");
        QVariantMap body = prepared.body.toMap();
        body.insert(QStringLiteral("hostMark"), 1);
        prepared.body = body;
        return prepared;
    }
};

struct Slot {
    const char* name;
    std::function<PreparedRequestBase(Api&)> call;
};

std::vector<Slot> everySlot() {
    return {
        {"processId",
         [](Api& api) {
             return api.processId(fromJson<ProcessIdRequest>(test::processIdRequestJson()));
         }},
        {"processPin",
         [](Api& api) {
             return api.processPin(fromJson<ProcessPinRequest>(test::processPinRequestJson()));
         }},
        {"getCardBalance",
         [](Api& api) {
             return api.getCardBalance(
                 fromJson<CardBalanceRequest>(test::cardBalanceRequestJson()));
         }},
        {"calcBonusAmount",
         [](Api& api) {
             return api.calcBonusAmount(
                 fromJson<CalcBonusAmountRequest>(test::calcBonusAmountRequestJson()));
         }},
        {"calcAndReserveBonusPay",
         [](Api& api) {
             return api.calcAndReserveBonusPay(fromJson<CalcAndReserveBonusPayRequest>(
                 test::calcAndReserveBonusPayRequestJson()));
         }},
        {"checkPin",
         [](Api& api) {
             return api.checkPin(fromJson<CheckPinRequest>(test::checkPinRequestJson()));
         }},
        {"commitCheque",
         [](Api& api) {
             return api.commitCheque(
                 fromJson<CommitChequeRequest>(test::commitChequeRequestJson()));
         }},
        {"getParkingInfo",
         [](Api& api) {
             return api.getParkingInfo(
                 fromJson<ParkingInfoRequest>(test::parkingInfoRequestJson()));
         }},
        {"cashierAdditionalInfo",
         [](Api& api) {
             return api.cashierAdditionalInfo(
                 fromJson<AdditionalInfoRequest>(test::additionalInfoRequestJson()));
         }},
        {"chequeAdditionalInfo",
         [](Api& api) {
             return api.chequeAdditionalInfo(
                 fromJson<AdditionalInfoRequest>(test::additionalInfoRequestJson()));
         }},
    };
}

TEST(LoyaltyApi, HostOverridingOneOperationChangesOnlyThatSlot) {
    ConfigScope config;
    Api plain;
    HostApi host;
    Api& viaBase = host;

    const std::vector<Slot> operations = everySlot();
    ASSERT_EQ(operations.size(), 10u);
    for (const Slot& slot : operations) {
        SCOPED_TRACE(slot.name);
        const PreparedRequestBase expected = slot.call(plain);
        const PreparedRequestBase actual = slot.call(viaBase);
        EXPECT_EQ(expected.url, QStringLiteral(LOYALTY_URL) + QString::fromLatin1(slot.name));
        EXPECT_EQ(actual.client, host.restClient());
        if (QByteArray(slot.name) == "checkPin") {
            EXPECT_EQ(actual.url, QStringLiteral("http://127.0.0.1:55555/host/checkPin"));
            QVariantMap marked = expected.body.toMap();
            marked.insert(QStringLiteral("hostMark"), 1);
            EXPECT_EQ(actual.body.toMap(), marked);
        } else {
            EXPECT_EQ(actual.url, expected.url);
            EXPECT_EQ(actual.body, expected.body);
        }
    }
}

TEST(LoyaltyApi, HostOverrideIsReachedThroughTheClientsOwnType) {
    ConfigScope config;
    HostApi host;
    Api& api = host;
    EXPECT_EQ(api.checkPin(CheckPinRequest()).url,
              QStringLiteral("http://127.0.0.1:55555/host/checkPin"));
    EXPECT_EQ(api.processPin(ProcessPinRequest()).url, QStringLiteral(LOYALTY_URL "processPin"));
}

} // namespace
} // namespace vesk::loyalty
