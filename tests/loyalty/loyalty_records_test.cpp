// The records of the loyalty service: their members, kinds and keys, what a
// default-made record sends, and how replies are read.

#include "FullObjects.h"

#include "support/Json.h"
#include "support/RecordTable.h"

#include <vesk/disc/CardListEntry.h>
#include <vesk/loyalty/loyalty.h>

#include <morva/Serder.h>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaProperty>

#include <gtest/gtest.h>

#include <type_traits>

namespace vesk::loyalty {
namespace {

using vesk::test::compactJson;
using vesk::test::recordRow;
using vesk::test::RecordTableTest;
using vesk::test::sameJson;

// Records are values.
static_assert(
    vesk::test::areValues<
        CardListEntry, AccountsEntry, LinesEntry, DiscountsEntry, PresentPaidEntry, ExtraDataEntry,
        StaffEntry, PaymentsEntry, SlipsEntry, CommitChequeRequest, CommitChequeResponse,
        ProcessIdRequest, ProcessIdResponse, ProcessPinRequest, ProcessPinResponse, CheckPinRequest,
        CheckPinResponse, CardBalanceRequest, CardBalanceResponse, CalcBonusAmountRequest,
        CalcBonusAmountResponse, CalcAndReserveBonusPayRequest, CalcAndReserveBonusPayResponse,
        ParkingInfoRequest, ParkingInfoResponse, AdditionalInfoRequest, AdditionalInfoResponse>);

// A response is its request echoed back with the service's additions; the
// reservation request is a record of its own.
static_assert(std::is_base_of_v<CalcBonusAmountRequest, CalcBonusAmountResponse>);
static_assert(std::is_base_of_v<CalcBonusAmountResponse, CalcAndReserveBonusPayResponse>);
static_assert(std::is_convertible_v<CalcAndReserveBonusPayResponse*, CalcBonusAmountResponse*>);
static_assert(std::is_convertible_v<CalcBonusAmountResponse*, CalcBonusAmountRequest*>);
static_assert(!std::is_base_of_v<CalcBonusAmountRequest, CalcAndReserveBonusPayRequest>);
static_assert(!std::is_base_of_v<CalcAndReserveBonusPayRequest, CalcBonusAmountRequest>);
static_assert(!std::is_convertible_v<CalcAndReserveBonusPayRequest, CalcBonusAmountRequest>);
static_assert(!std::is_convertible_v<CalcBonusAmountRequest, CalcAndReserveBonusPayRequest>);

// The discount service's card entry shares the short name only.
static_assert(!std::is_same_v<CardListEntry, disc::CardListEntry>);
static_assert(!std::is_convertible_v<CardListEntry, disc::CardListEntry>);
static_assert(!std::is_convertible_v<disc::CardListEntry, CardListEntry>);

// The members' C++ types follow their kinds.
static_assert(std::is_same_v<decltype(AccountsEntry::balance), std::optional<double>>);
static_assert(std::is_same_v<decltype(AccountsEntry::partnerExternalId), int>);
static_assert(std::is_same_v<decltype(CardListEntry::partnerExternalId), std::optional<int>>);
static_assert(std::is_same_v<decltype(CardListEntry::accounts), QList<AccountsEntry>>);
static_assert(
    std::is_same_v<decltype(LinesEntry::extraDataLine), std::optional<QList<ExtraDataEntry>>>);
static_assert(std::is_same_v<decltype(LinesEntry::staff), std::optional<QList<StaffEntry>>>);
static_assert(std::is_same_v<decltype(LinesEntry::discounts), QList<DiscountsEntry>>);
static_assert(std::is_same_v<decltype(LinesEntry::itemId_Crystall), std::optional<int>>);
static_assert(std::is_same_v<decltype(LinesEntry::itemId_Mercury), std::optional<QString>>);
static_assert(std::is_same_v<decltype(StaffEntry::percent), double>);
static_assert(std::is_same_v<decltype(ParkingInfoResponse::parkingDateTimeEntry), QVariant>);
static_assert(std::is_same_v<decltype(ParkingInfoResponse::parkingDateTimePrivilegeEnd), QVariant>);
static_assert(std::is_same_v<decltype(CommitChequeResponse::parkingDateTimeEntry), QString>);

template <class R>
QByteArray jsonOf(const R& record) {
    return QByteArray::fromStdString(compactJson(serder::serialize(record)));
}

template <class R>
R fromJson(const QByteArray& json) {
    return serder::deserialize<R>(QJsonDocument::fromJson(json).object().toVariantMap());
}

template <class R>
QVariant readProperty(const R& record, const char* key) {
    const QMetaObject& type = R::staticMetaObject;
    const int index = type.indexOfProperty(key);
    EXPECT_GE(index, 0) << key;
    return type.property(index).readOnGadget(&record);
}

template <class R>
QStringList propertyNames() {
    QStringList names;
    for (int i = 0; i < R::staticMetaObject.propertyCount(); ++i)
        names << QString::fromLatin1(R::staticMetaObject.property(i).name());
    return names;
}

const QStringList bonusCalculationMembers = {"bonusCountCanceled",
                                             "calcOnlyKey",
                                             "cardList",
                                             "lines",
                                             "dataId",
                                             "dateTime",
                                             "eShopOrderId",
                                             "ksSource",
                                             "online",
                                             "orderDateTime",
                                             "placeId",
                                             "presentCountCanceled",
                                             "salesChannel",
                                             "shopNum",
                                             "token",
                                             "unitedLocationId"};

// Every member of the commit reply is plain, so a default-made one writes them all.
const QStringList commitChequeResponseMembers = {"bonusAmount",
                                                 "cardList",
                                                 "cashId",
                                                 "dataId",
                                                 "dataIdReturned",
                                                 "dateTime",
                                                 "discAmount",
                                                 "eShopOrderId",
                                                 "fd",
                                                 "fn",
                                                 "fpd",
                                                 "guid",
                                                 "ksSource",
                                                 "lines",
                                                 "mnogoInfo",
                                                 "online",
                                                 "orderDateTime",
                                                 "parkingDateTimeEntry",
                                                 "parkingDateTimePrivilegeEnd",
                                                 "parkingDiscAmount",
                                                 "parkingDiscHours",
                                                 "parkingId",
                                                 "parkingTotalAmount",
                                                 "parkingType",
                                                 "parkingValidateStatus",
                                                 "partnerChequeId",
                                                 "partnerId",
                                                 "payments",
                                                 "placeId",
                                                 "returnOrderId",
                                                 "shopNum",
                                                 "slips",
                                                 "token",
                                                 "tokenCorrectness",
                                                 "totalAmount",
                                                 "totalAmountAfterKs",
                                                 "tShopOrderId",
                                                 "unitedLocationId"};

// Every record: its properties in declared order, what a default-made one
// sends, and a full object read and written back.
INSTANTIATE_TEST_SUITE_P(
    Loyalty, RecordTableTest,
    testing::Values(
        recordRow<AccountsEntry>({"balance",
                                  "codeAccount",
                                  "confirmedAmount",
                                  "maxPay",
                                  "minPay",
                                  "presentAccountType",
                                  "presentCodeAccount",
                                  "requestAmount",
                                  "boutiqueCardId",
                                  "card",
                                  "cardNumber",
                                  "cardPan",
                                  "cardType",
                                  "fio",
                                  "hash",
                                  "identityCode",
                                  "identityMessage",
                                  "isVirtual",
                                  "opType",
                                  "partnerExternalId",
                                  "partnerGUID",
                                  "pinCode",
                                  "status",
                                  "statusPresentActivate",
                                  "statusTypeChange"},
                                 {"codeAccount", "requestAmount", "boutiqueCardId", "card",
                                  "cardNumber", "cardPan", "cardType", "fio", "hash",
                                  "identityCode", "identityMessage", "isVirtual", "opType",
                                  "partnerExternalId", "partnerGUID", "pinCode", "status",
                                  "statusPresentActivate", "statusTypeChange"},
                                 test::firstAccountJson()),
        recordRow<CardListEntry>({"accounts", "card", "hash", "isVirtual", "opType",
                                  "partnerExternalId", "partnerGUID"},
                                 {"accounts", "card", "isVirtual", "opType"}, test::cardJson()),
        recordRow<LinesEntry>(
            {"approvedCode",    "barCode",         "basePrice",     "bonusUnit", "connectChatId",
             "corner",          "dateTime",        "discountCard",  "discounts", "discUnitKs",
             "itemId_Crystall", "itemId_Mercury",  "kodCli",        "lineNum",   "presentCard",
             "presentPaid",     "presentPaidUnit", "price",         "qty",       "salerId",
             "salesPrice",      "tShopTicketId",   "extraDataLine", "staff"},
            {"barCode", "basePrice", "discounts", "lineNum", "presentPaid", "price", "qty",
             "salesPrice"},
            test::lineJson()),
        recordRow<DiscountsEntry>({"card", "codeAccount", "complectId", "discAmount", "discId",
                                   "discQty", "discType", "id_Rakt", "presentCard", "printComplect",
                                   "publicityId", "publicityIdExt", "publicityName"},
                                  {}, test::discountJson()),
        recordRow<PresentPaidEntry>({"card", "paidQty", "paidUnit"}, {}, test::presentPaidJson()),
        recordRow<ExtraDataEntry>({"key", "value"}, {"key", "value"}, test::extraDataJson()),
        recordRow<StaffEntry>({"staffId", "percent"}, {"staffId", "percent"}, test::staffJson()),
        recordRow<PaymentsEntry>({"acquirer", "amount", "authCode", "card", "docTypeEnum",
                                  "merchantId", "payDateTime", "payment", "paymentSystemType",
                                  "rrn", "sourceId", "terminalId", "type"},
                                 {"amount", "docTypeEnum", "type"}, test::paymentJson()),
        recordRow<SlipsEntry>({"chequeMessage", "codeAccount", "operatorMessage", "qty"},
                              {"chequeMessage", "codeAccount", "operatorMessage", "qty"},
                              test::slipJson()),
        recordRow<CommitChequeRequest>({"bonusCountCanceled",
                                        "cardList",
                                        "cashId",
                                        "dataId",
                                        "dataIdReturned",
                                        "dateTime",
                                        "eShopOrderId",
                                        "fd",
                                        "fn",
                                        "fpd",
                                        "guid",
                                        "ksSources",
                                        "lines",
                                        "mnogoInfo",
                                        "online",
                                        "orderDateTime",
                                        "parkingId",
                                        "parkingType",
                                        "partnerChequeId",
                                        "partnerId",
                                        "payments",
                                        "placeId",
                                        "presentCountCancel",
                                        "returnOrderId",
                                        "shopNum",
                                        "token",
                                        "tokenCorrectness",
                                        "totalAmount",
                                        "tShopOrderId",
                                        "unitedLocationId"},
                                       {"cardList", "dataId", "dateTime", "ksSources", "lines",
                                        "online", "orderDateTime", "payments", "placeId", "shopNum",
                                        "token", "totalAmount"},
                                       test::commitChequeRequestJson()),
        recordRow<CommitChequeResponse>(commitChequeResponseMembers, commitChequeResponseMembers,
                                        test::commitChequeResponseJson()),
        recordRow<ProcessIdRequest>({"chequeId", "chequeIdReturned", "discCardId", "isVirtual",
                                     "opType", "placeId", "shopId", "shopNum", "token",
                                     "unitedLocationId"},
                                    {"chequeId", "discCardId", "isVirtual", "opType", "shopNum"},
                                    test::processIdRequestJson()),
        recordRow<ProcessIdResponse>(
            {"clientFIO", "discCardId", "discCardTypeId", "identityIsRequired", "isLoyaltyCard",
             "retCode", "retMessage", "token"},
            {"clientFIO", "discCardId", "discCardTypeId", "identityIsRequired", "isLoyaltyCard",
             "retCode", "retMessage", "token"},
            test::processIdResponseJson()),
        recordRow<ProcessPinRequest>({"chequeIdReturned", "discCardId", "token", "uniteLocationId"},
                                     {"discCardId", "token"}, test::processPinRequestJson()),
        recordRow<ProcessPinResponse>(
            {"phone", "pinCodeSended", "retCode", "retMessage", "showPinField", "token"},
            {"phone", "pinCodeSended", "retCode", "retMessage", "showPinField", "token"},
            test::processPinResponseJson()),
        recordRow<CheckPinRequest>(
            {"chequeId", "chequeIdReturned", "discCardId", "isVirtual", "operationType", "pinCode",
             "placeId", "shopId", "shopNum", "token", "unitedLocationId"},
            {"chequeId", "discCardId", "isVirtual", "operationType", "shopNum", "token"},
            test::checkPinRequestJson()),
        recordRow<CheckPinResponse>({"correctPin", "discCardId", "retCode", "retMessage"},
                                    {"correctPin", "discCardId", "retCode", "retMessage"},
                                    test::checkPinResponseJson()),
        recordRow<CardBalanceRequest>({"discCardId", "token"}, {"discCardId", "token"},
                                      test::cardBalanceRequestJson()),
        recordRow<CardBalanceResponse>(
            {"askOperation", "balance", "retCode", "retMessage", "showBalance"},
            {"askOperation", "balance", "retCode", "retMessage", "showBalance"},
            test::cardBalanceResponseJson()),
        recordRow<CalcBonusAmountRequest>(bonusCalculationMembers,
                                          {"calcOnlyKey", "cardList", "lines", "dataId", "dateTime",
                                           "ksSource", "online", "orderDateTime", "salesChannel",
                                           "shopNum", "token", "unitedLocationId"},
                                          test::calcBonusAmountRequestJson()),
        recordRow<CalcBonusAmountResponse>(
            bonusCalculationMembers + QStringList{"tokenCorrectness", "dataIdReturn"},
            {"calcOnlyKey", "cardList", "lines", "dataId", "dateTime", "ksSource", "online",
             "orderDateTime", "salesChannel", "shopNum", "token", "unitedLocationId",
             "tokenCorrectness", "dataIdReturn"},
            test::calcBonusAmountResponseJson()),
        recordRow<CalcAndReserveBonusPayRequest>(
            bonusCalculationMembers + QStringList{"tokenCorrectness", "dataIdReturned"},
            {"calcOnlyKey", "cardList", "lines", "dataId", "dateTime", "ksSource", "online",
             "orderDateTime", "salesChannel", "shopNum", "token", "unitedLocationId",
             "tokenCorrectness", "dataIdReturned"},
            test::calcAndReserveBonusPayRequestJson()),
        recordRow<CalcAndReserveBonusPayResponse>(
            bonusCalculationMembers +
                QStringList{"tokenCorrectness", "dataIdReturn", "dataIdReturned"},
            {"calcOnlyKey", "cardList", "lines", "dataId", "dateTime", "ksSource", "online",
             "orderDateTime", "salesChannel", "shopNum", "token", "unitedLocationId",
             "tokenCorrectness", "dataIdReturn", "dataIdReturned"},
            test::calcAndReserveBonusPayResponseJson()),
        recordRow<ParkingInfoRequest>({"chequeId", "parkingId", "storeId"},
                                      {"chequeId", "parkingId", "storeId"},
                                      test::parkingInfoRequestJson()),
        recordRow<ParkingInfoResponse>({"parkingId", "parkingValidateStatus", "parkingTotalAmount",
                                        "parkingDiscAmount", "parkingPayAmount", "parkingDiscHours",
                                        "parkingDateTimeEntry", "parkingDateTimePrivilegeEnd"},
                                       {"parkingId", "parkingValidateStatus", "parkingTotalAmount",
                                        "parkingDiscAmount", "parkingPayAmount", "parkingDiscHours",
                                        "parkingDateTimeEntry", "parkingDateTimePrivilegeEnd"},
                                       test::parkingInfoResponseJson(),
                                       test::parkingInfoResponseWrittenBackJson()),
        recordRow<AdditionalInfoRequest>({"chequeId", "discCardId", "token"},
                                         {"chequeId", "discCardId", "token"},
                                         test::additionalInfoRequestJson()),
        recordRow<AdditionalInfoResponse>({"cashierText", "chequeText"},
                                          {"cashierText", "chequeText"},
                                          test::additionalInfoResponseJson())),
    RecordTableTest::rowName);

TEST(LoyaltyRecords, StrategiesOfEntriesAndRequestBodiesAreBuiltFromTheirMetaObjects) {
    vesk::test::expectOwnStrategies<
        CardListEntry, AccountsEntry, LinesEntry, DiscountsEntry, PresentPaidEntry, ExtraDataEntry,
        StaffEntry, PaymentsEntry, SlipsEntry, ProcessIdRequest, ProcessPinRequest,
        CardBalanceRequest, CalcBonusAmountRequest, CalcAndReserveBonusPayRequest, CheckPinRequest,
        CommitChequeRequest, ParkingInfoRequest, AdditionalInfoRequest>();
}

TEST(LoyaltyRecords, CardEntryIsDistinctFromTheDiscountServicesCardEntry) {
    EXPECT_NE(QMetaType::fromType<CardListEntry>(), QMetaType::fromType<disc::CardListEntry>());
    EXPECT_STREQ(CardListEntry::staticMetaObject.className(), "vesk::loyalty::CardListEntry");
    EXPECT_STREQ(disc::CardListEntry::staticMetaObject.className(), "vesk::disc::CardListEntry");
}

TEST(LoyaltyRecords, CardEntryIsReadFromAVariantByTheLibrarysDeserialiser) {
    const CardListEntry card = serder::deserialize<CardListEntry>(
        vesk::test::replyMap(R"({"card": "2775001", "opType": 4})"));
    EXPECT_EQ(card.card, QStringLiteral("2775001"));
    EXPECT_EQ(card.opType, 4);
    EXPECT_TRUE(card.accounts.isEmpty());
}

// Cards and accounts.

TEST(LoyaltyCardListEntry, WithNothingSetWritesOnlyAccountsCardIsVirtualAndOpType) {
    EXPECT_TRUE(sameJson(jsonOf(CardListEntry()), R"({"accounts": [], "card": "", "isVirtual": 0,)"
                                                  R"( "opType": 0})"));
}

TEST(LoyaltyAccountsEntry, WithNothingSetWritesItsNineteenPlainMembersAndNoOptionalOne) {
    const QVariantMap written = serder::serialize(AccountsEntry()).toMap();
    EXPECT_EQ(written.size(), 19);
    for (const char* optional : {"balance", "confirmedAmount", "maxPay", "minPay",
                                 "presentAccountType", "presentCodeAccount"})
        EXPECT_FALSE(written.contains(QString::fromLatin1(optional))) << optional;
    EXPECT_TRUE(
        sameJson(jsonOf(AccountsEntry()),
                 R"({"codeAccount": 0, "requestAmount": 0, "boutiqueCardId": "", "card": "",)"
                 R"( "cardNumber": "", "cardPan": "", "cardType": 0, "fio": "", "hash": "",)"
                 R"( "identityCode": 0, "identityMessage": "", "isVirtual": 0, "opType": 0,)"
                 R"( "partnerExternalId": 0, "partnerGUID": "", "pinCode": "", "status": 0,)"
                 R"( "statusPresentActivate": 0, "statusTypeChange": 0})"));
}

TEST(LoyaltyAccountsEntry, ObjectWithoutBalanceLeavesBalanceAbsentNotZero) {
    const AccountsEntry account = fromJson<AccountsEntry>(R"({"codeAccount": 3})");
    EXPECT_FALSE(account.balance.has_value());
    EXPECT_EQ(account.codeAccount, 3);
}

TEST(LoyaltyAccountsEntry, ObjectWithoutRequestAmountLeavesItZero) {
    const AccountsEntry account = fromJson<AccountsEntry>(R"({"balance": 150.5})");
    ASSERT_TRUE(account.balance.has_value());
    EXPECT_EQ(*account.balance, 150.5);
    EXPECT_EQ(account.requestAmount, 0.0);
}

TEST(LoyaltyCardListEntry,
     PartnerExternalIdGivenAsNumericTextIsReadAsAnIntegerAndWrittenAsANumber) {
    const CardListEntry card = fromJson<CardListEntry>(
        R"({"partnerExternalId": "8812", "accounts": [{"partnerExternalId": "9913"}]})");
    ASSERT_TRUE(card.partnerExternalId.has_value());
    EXPECT_EQ(*card.partnerExternalId, 8812);
    ASSERT_EQ(card.accounts.size(), 1);
    EXPECT_EQ(card.accounts[0].partnerExternalId, 9913);

    const QVariantMap written = serder::serialize(card).toMap();
    EXPECT_EQ(written.value("partnerExternalId").metaType(), QMetaType::fromType<int>());
    const QJsonObject json = QJsonDocument::fromJson(jsonOf(card)).object();
    EXPECT_TRUE(json.value("partnerExternalId").isDouble());
    EXPECT_EQ(json.value("partnerExternalId").toInt(), 8812);
    const QJsonObject account = json.value("accounts").toArray().at(0).toObject();
    EXPECT_TRUE(account.value("partnerExternalId").isDouble());
    EXPECT_EQ(account.value("partnerExternalId").toInt(), 9913);
}

TEST(LoyaltyCardListEntry, OrderOfAccountsInACardAndOfCardsInAListIsKept) {
    CommitChequeRequest request;
    for (int card = 1; card <= 3; ++card) {
        CardListEntry entry;
        entry.card = QStringLiteral("card-%1").arg(card);
        for (int account = 1; account <= 3; ++account) {
            AccountsEntry item;
            item.codeAccount = card * 10 + account;
            entry.accounts.append(item);
        }
        request.cardList.append(entry);
    }

    const QJsonObject json = QJsonDocument::fromJson(jsonOf(request)).object();
    const QJsonArray cards = json.value("cardList").toArray();
    ASSERT_EQ(cards.size(), 3);
    for (int card = 0; card < 3; ++card) {
        EXPECT_EQ(cards[card].toObject().value("card").toString(),
                  QStringLiteral("card-%1").arg(card + 1));
        const QJsonArray accounts = cards[card].toObject().value("accounts").toArray();
        ASSERT_EQ(accounts.size(), 3);
        for (int account = 0; account < 3; ++account)
            EXPECT_EQ(accounts[account].toObject().value("codeAccount").toInt(),
                      (card + 1) * 10 + account + 1);
    }

    const CommitChequeRequest back =
        serder::deserialize<CommitChequeRequest>(serder::serialize(request));
    EXPECT_EQ(back, request);
    ASSERT_EQ(back.cardList.size(), 3);
    EXPECT_EQ(back.cardList[2].card, QStringLiteral("card-3"));
    EXPECT_EQ(back.cardList[2].accounts[0].codeAccount, 31);
    EXPECT_EQ(back.cardList[0].accounts[2].codeAccount, 13);
}

// Cheque lines.

TEST(LoyaltyLinesEntry, WithNothingSetWritesExactlyItsPlainMembers) {
    EXPECT_TRUE(sameJson(jsonOf(LinesEntry()),
                         R"({"barCode": "", "basePrice": 0, "discounts": [], "lineNum": 0,)"
                         R"( "presentPaid": [], "price": 0, "qty": 0, "salesPrice": 0})"));
}

TEST(LoyaltyLinesEntry, ExtraDataLineSetToAnEmptyListIsWrittenAsAnEmptyArray) {
    LinesEntry line;
    line.extraDataLine = QList<ExtraDataEntry>();
    const QJsonObject json = QJsonDocument::fromJson(jsonOf(line)).object();
    ASSERT_TRUE(json.contains("extraDataLine"));
    EXPECT_TRUE(json.value("extraDataLine").isArray());
    EXPECT_TRUE(json.value("extraDataLine").toArray().isEmpty());
    EXPECT_FALSE(json.contains("staff"));
}

TEST(LoyaltyLinesEntry, ExtraDataLineUnsetIsOmitted) {
    const QVariantMap written = serder::serialize(LinesEntry()).toMap();
    EXPECT_FALSE(written.contains("extraDataLine"));
    EXPECT_FALSE(written.contains("staff"));
}

TEST(LoyaltyLinesEntry, AbsentAndEmptyOptionalListsAreDifferentRecords) {
    LinesEntry empty;
    empty.staff = QList<StaffEntry>();
    EXPECT_NE(empty, LinesEntry());
    const LinesEntry read = fromJson<LinesEntry>(R"({"staff": []})");
    ASSERT_TRUE(read.staff.has_value());
    EXPECT_TRUE(read.staff->isEmpty());
    EXPECT_FALSE(read.extraDataLine.has_value());
}

TEST(LoyaltyDiscountsEntry, WithNothingSetSerialisesToAnEmptyObject) {
    EXPECT_EQ(jsonOf(DiscountsEntry()), QByteArray("{}"));
}

TEST(LoyaltyPresentPaidEntry, WithNothingSetSerialisesToAnEmptyObject) {
    EXPECT_EQ(jsonOf(PresentPaidEntry()), QByteArray("{}"));
}

TEST(LoyaltyExtraDataEntry, WithNothingSetWritesBothKeysAsEmptyStrings) {
    EXPECT_EQ(jsonOf(ExtraDataEntry()), QByteArray(R"({"key":"","value":""})"));
}

TEST(LoyaltyStaffEntry, WithNothingSetWritesAnEmptyStaffIdAndAZeroPercent) {
    EXPECT_EQ(jsonOf(StaffEntry()), QByteArray(R"({"percent":0,"staffId":""})"));
}

TEST(LoyaltySlipsEntry, WithNothingSetWritesAllFourKeys) {
    EXPECT_EQ(jsonOf(SlipsEntry()),
              QByteArray(R"({"chequeMessage":"","codeAccount":0,"operatorMessage":"","qty":0})"));
}

TEST(LoyaltyPaymentsEntry, WithNothingSetWritesExactlyAmountDocTypeEnumAndType) {
    EXPECT_EQ(jsonOf(PaymentsEntry()), QByteArray(R"({"amount":0,"docTypeEnum":0,"type":0})"));
}

TEST(LoyaltyLinesEntry, FractionalQtySurvivesSerialisationAndDeserialisation) {
    LinesEntry line;
    line.qty = 0.25;
    const QVariant written = serder::serialize(line);
    EXPECT_EQ(written.toMap().value("qty").toDouble(), 0.25);
    EXPECT_EQ(QJsonDocument::fromJson(jsonOf(line)).object().value("qty").toDouble(), 0.25);
    EXPECT_EQ(serder::deserialize<LinesEntry>(written).qty, 0.25);
    EXPECT_EQ(fromJson<LinesEntry>(R"({"qty": 0.25})").qty, 0.25);
}

TEST(LoyaltySlipsEntry, FractionalQtySurvivesSerialisationAndDeserialisation) {
    SlipsEntry slip;
    slip.qty = 0.25;
    EXPECT_EQ(fromJson<SlipsEntry>(jsonOf(slip)).qty, 0.25);
}

TEST(LoyaltyLinesEntry, ObjectWithoutItemIdCrystallLeavesItAbsent) {
    const LinesEntry line = fromJson<LinesEntry>(R"({"lineNum": 4})");
    EXPECT_FALSE(line.itemId_Crystall.has_value());
    EXPECT_EQ(line.lineNum, 4);
}

TEST(LoyaltyLinesEntry, ObjectWithoutLineNumLeavesItZero) {
    const LinesEntry line = fromJson<LinesEntry>(R"({"itemId_Crystall": 123456})");
    ASSERT_TRUE(line.itemId_Crystall.has_value());
    EXPECT_EQ(*line.itemId_Crystall, 123456);
    EXPECT_EQ(line.lineNum, 0);
}

TEST(LoyaltyLinesEntry, QtyComparesWithinQuantityToleranceAndPriceWithinAmountTolerance) {
    LinesEntry a;
    a.qty = 10.0;
    a.price = 10.0;
    LinesEntry b = a;
    b.qty = 10.0004;
    EXPECT_EQ(a, b);
    b.qty = 10.004;
    EXPECT_NE(a, b);
    b = a;
    b.price = 10.004;
    EXPECT_EQ(a, b);
    b.price = 10.006;
    EXPECT_NE(a, b);
}

TEST(LoyaltySlipsEntry, QtyComparesWithinQuantityTolerance) {
    SlipsEntry a;
    a.qty = 3.0;
    SlipsEntry b = a;
    b.qty = 3.0004;
    EXPECT_EQ(a, b);
    b.qty = 3.004;
    EXPECT_NE(a, b);
}

TEST(LoyaltyStaffEntry, PercentComparesExactly) {
    StaffEntry a;
    a.staffId = QStringLiteral("S-42");
    a.percent = 10.0;
    StaffEntry b = a;
    EXPECT_EQ(a, b);
    b.percent = 10.0001;
    EXPECT_NE(a, b);
}

TEST(LoyaltyDiscountsEntry, DiscQtyComparesWithinQuantityTolerance) {
    DiscountsEntry a;
    a.discQty = 1.0;
    DiscountsEntry b;
    b.discQty = 1.0004;
    EXPECT_EQ(a, b);
    b.discQty = 1.004;
    EXPECT_NE(a, b);
    b.discQty.reset();
    EXPECT_NE(a, b);
}

TEST(LoyaltyPresentPaidEntry, PaidQtyComparesWithinQuantityTolerance) {
    PresentPaidEntry a;
    a.paidQty = 2.0;
    PresentPaidEntry b;
    b.paidQty = 2.0004;
    EXPECT_EQ(a, b);
    b.paidQty = 2.004;
    EXPECT_NE(a, b);
}

// Cheque commit.

TEST(LoyaltyCommitChequeRequest, DefaultMadeSerialisesToExactlyTwelveKeys) {
    const QVariantMap written = serder::serialize(CommitChequeRequest()).toMap();
    EXPECT_EQ(written.size(), 12);
    EXPECT_TRUE(sameJson(jsonOf(CommitChequeRequest()),
                         R"({"cardList": [], "lines": [], "payments": [], "dataId": "",)"
                         R"( "dateTime": "", "orderDateTime": "", "placeId": "", "token": "",)"
                         R"( "ksSources": 0, "online": 0, "shopNum": 0, "totalAmount": 0})"));
}

TEST(LoyaltyCommitChequeRequest, PresentCountCancelSetToZeroIsWrittenWithZero) {
    CommitChequeRequest request;
    request.presentCountCancel = 0;
    const QVariantMap written = serder::serialize(request).toMap();
    ASSERT_TRUE(written.contains("presentCountCancel"));
    EXPECT_EQ(written.value("presentCountCancel"), QVariant(0));
    EXPECT_EQ(written.size(), 13);
}

TEST(LoyaltyCommitChequeRequest, PresentCountCancelUnsetIsOmitted) {
    EXPECT_FALSE(serder::serialize(CommitChequeRequest()).toMap().contains("presentCountCancel"));
}

TEST(LoyaltyCommitChequeRequest, WritesKsSourcesAndNeverKsSource) {
    CommitChequeRequest request;
    request.ksSources = 3;
    const QVariantMap written = serder::serialize(request).toMap();
    EXPECT_EQ(written.value("ksSources"), QVariant(3));
    EXPECT_FALSE(written.contains("ksSource"));
}

TEST(LoyaltyCommitChequeResponse, ReadsKsSourceAndNeverKsSources) {
    EXPECT_EQ(fromJson<CommitChequeResponse>(R"({"ksSource": 3})").ksSource, 3);
    const CommitChequeResponse onlyPlural =
        fromJson<CommitChequeResponse>(R"({"ksSources": 3, "shopNum": 17})");
    EXPECT_EQ(onlyPlural.ksSource, 0);
    EXPECT_EQ(onlyPlural.shopNum, 17);
    EXPECT_FALSE(serder::serialize(onlyPlural).toMap().contains("ksSources"));
}

TEST(LoyaltyCommitChequeResponse, ReplyWithoutSlipsYieldsAnEmptySlipsList) {
    const CommitChequeResponse response = fromJson<CommitChequeResponse>(R"({"bonusAmount": 5})");
    EXPECT_TRUE(response.slips.isEmpty());
    EXPECT_EQ(response.bonusAmount, 5.0);
}

TEST(LoyaltyCommitChequeResponse, ReplyWithThreeSlipsYieldsThemInTheOrderReceived) {
    const CommitChequeResponse response = fromJson<CommitChequeResponse>(
        R"({"slips": [{"chequeMessage": "first", "codeAccount": 1, "qty": 1},)"
        R"( {"chequeMessage": "second", "codeAccount": 2, "operatorMessage": "two"},)"
        R"( {"chequeMessage": "third", "codeAccount": 3, "qty": 0.5}]})");
    ASSERT_EQ(response.slips.size(), 3);
    EXPECT_EQ(response.slips[0].chequeMessage, QStringLiteral("first"));
    EXPECT_EQ(response.slips[0].codeAccount, 1);
    EXPECT_EQ(response.slips[0].qty, 1.0);
    EXPECT_EQ(response.slips[1].chequeMessage, QStringLiteral("second"));
    EXPECT_EQ(response.slips[1].operatorMessage, QStringLiteral("two"));
    EXPECT_EQ(response.slips[1].qty, 0.0);
    EXPECT_EQ(response.slips[2].chequeMessage, QStringLiteral("third"));
    EXPECT_EQ(response.slips[2].codeAccount, 3);
    EXPECT_EQ(response.slips[2].qty, 0.5);
}

TEST(LoyaltyCommitChequeResponse, NestedCardsAccountsLinesDiscountsAndPaymentsAreReadAtEveryDepth) {
    const CommitChequeResponse response =
        fromJson<CommitChequeResponse>(test::commitChequeResponseJson());

    ASSERT_EQ(response.cardList.size(), 1);
    const CardListEntry& card = response.cardList[0];
    EXPECT_EQ(card.card, QStringLiteral("2775001"));
    EXPECT_EQ(card.hash, QStringLiteral("h-card"));
    EXPECT_EQ(card.partnerExternalId, 8812);
    ASSERT_EQ(card.accounts.size(), 2);
    EXPECT_EQ(card.accounts[0].balance, 150.5);
    EXPECT_EQ(card.accounts[0].partnerGUID, QStringLiteral("6F9619FF-8B86-D011-B42D-00CF4FC964FF"));
    EXPECT_EQ(card.accounts[0].statusTypeChange, 11);
    EXPECT_EQ(card.accounts[1].codeAccount, 12);
    EXPECT_EQ(card.accounts[1].pinCode, QStringLiteral("8765"));
    EXPECT_EQ(card.accounts[1].minPay, 0.25);

    ASSERT_EQ(response.lines.size(), 1);
    const LinesEntry& line = response.lines[0];
    EXPECT_EQ(line.barCode, QStringLiteral("4600000000017"));
    EXPECT_EQ(line.itemId_Crystall, 123456);
    EXPECT_EQ(line.tShopTicketId, QStringLiteral("T-9"));
    EXPECT_EQ(line.qty, 0.25);
    ASSERT_EQ(line.discounts.size(), 1);
    EXPECT_EQ(line.discounts[0].id_Rakt, 77);
    EXPECT_EQ(line.discounts[0].discQty, 0.125);
    EXPECT_EQ(line.discounts[0].publicityName, QStringLiteral("Spring sale"));
    ASSERT_EQ(line.presentPaid.size(), 1);
    EXPECT_EQ(line.presentPaid[0].paidQty, 0.375);
    ASSERT_TRUE(line.extraDataLine.has_value());
    ASSERT_EQ(line.extraDataLine->size(), 1);
    EXPECT_EQ(line.extraDataLine->at(0).key, QStringLiteral("colour"));
    EXPECT_EQ(line.extraDataLine->at(0).value, QStringLiteral("red"));
    ASSERT_TRUE(line.staff.has_value());
    ASSERT_EQ(line.staff->size(), 1);
    EXPECT_EQ(line.staff->at(0).staffId, QStringLiteral("S-42"));
    EXPECT_EQ(line.staff->at(0).percent, 12.5);

    ASSERT_EQ(response.payments.size(), 1);
    EXPECT_EQ(response.payments[0].amount, 350.75);
    EXPECT_EQ(response.payments[0].rrn, QStringLiteral("RRN-77"));
    EXPECT_EQ(response.payments[0].paymentSystemType, QStringLiteral("VISA"));
    ASSERT_EQ(response.slips.size(), 1);
    EXPECT_EQ(response.slips[0].operatorMessage, QStringLiteral("Tell the customer"));

    EXPECT_EQ(response.parkingDiscHours, 2);
    EXPECT_EQ(response.parkingDateTimeEntry, QStringLiteral("2024-03-01T08:00:00"));
    EXPECT_EQ(response.totalAmountAfterKs, 315.0);
}

TEST(LoyaltyCommitChequeResponse, DefaultMadeWritesAllThirtyEightKeys) {
    EXPECT_EQ(serder::serialize(CommitChequeResponse()).toMap().size(), 38);
}

// Card identification, PIN and balance.

TEST(LoyaltyProcessIdRequest, FreshlyMadeWritesExactlyItsPlainMembers) {
    EXPECT_TRUE(sameJson(jsonOf(ProcessIdRequest()),
                         R"({"chequeId": "", "discCardId": "", "isVirtual": 0, "opType": 0,)"
                         R"( "shopNum": 0})"));
}

TEST(LoyaltyProcessIdRequest, SettingTokenAddsTheTokenKey) {
    ProcessIdRequest request;
    request.token = QStringLiteral("tok-11");
    EXPECT_TRUE(sameJson(jsonOf(request),
                         R"({"chequeId": "", "discCardId": "", "isVirtual": 0, "opType": 0,)"
                         R"( "shopNum": 0, "token": "tok-11"})"));
}

TEST(LoyaltyCheckPinRequest, AlwaysCarriesTokenWhileProcessIdRequestCarriesItOnlyWhenSet) {
    const QVariantMap checkPin = serder::serialize(CheckPinRequest()).toMap();
    ASSERT_TRUE(checkPin.contains("token"));
    EXPECT_EQ(checkPin.value("token"), QVariant(QString()));
    EXPECT_FALSE(serder::serialize(ProcessIdRequest()).toMap().contains("token"));

    ProcessIdRequest withEmptyToken;
    withEmptyToken.token = QString();
    EXPECT_EQ(serder::serialize(withEmptyToken).toMap().value("token"), QVariant(QString()));
}

TEST(LoyaltyProcessPinRequest, WritesUniteLocationIdAndNeverUnitedLocationId) {
    ProcessPinRequest request;
    request.uniteLocationId = QStringLiteral("UL-13");
    const QVariantMap written = serder::serialize(request).toMap();
    EXPECT_EQ(written.value("uniteLocationId"), QVariant(QStringLiteral("UL-13")));
    EXPECT_FALSE(written.contains("unitedLocationId"));
    EXPECT_FALSE(fromJson<ProcessPinRequest>(R"({"unitedLocationId": "UL-13"})")
                     .uniteLocationId.has_value());
}

TEST(LoyaltyCheckPinRequest, WritesOperationTypeAndNeverOpType) {
    CheckPinRequest request;
    request.operationType = 2;
    const QVariantMap written = serder::serialize(request).toMap();
    EXPECT_EQ(written.value("operationType"), QVariant(2));
    EXPECT_FALSE(written.contains("opType"));
}

TEST(LoyaltyProcessIdResponse, ReplyWithoutRetMessageLeavesItEmpty) {
    const ProcessIdResponse response =
        fromJson<ProcessIdResponse>(R"({"retCode": 5, "token": "tok-11"})");
    EXPECT_TRUE(response.retMessage.isEmpty());
    EXPECT_EQ(response.retCode, 5);
    EXPECT_EQ(response.token, QStringLiteral("tok-11"));
}

TEST(LoyaltyCardBalanceResponse, BalanceArrivingAsAnIntegerNumberIsHeldAsADouble) {
    const CardBalanceResponse response = fromJson<CardBalanceResponse>(R"({"balance": 150})");
    static_assert(std::is_same_v<decltype(CardBalanceResponse::balance), double>);
    EXPECT_EQ(response.balance, 150.0);
    EXPECT_EQ(readProperty(response, "balance").metaType(), QMetaType::fromType<double>());
}

TEST(LoyaltyCardBalanceResponse, BalancesDifferingByLessThanHalfACentCompareEqual) {
    CardBalanceResponse a;
    a.balance = 100.0;
    a.retMessage = QStringLiteral("ok");
    CardBalanceResponse b = a;
    b.balance = 100.004;
    EXPECT_EQ(a, b);
    b.balance = 99.996;
    EXPECT_EQ(a, b);
}

TEST(LoyaltyCardBalanceResponse, BalancesDifferingByHalfACentOrMoreCompareUnequal) {
    // A difference of exactly 0.005 (0 against 0.005, both exact as doubles)
    // is not strictly below the tolerance.
    CardBalanceResponse zero;
    CardBalanceResponse halfCent;
    halfCent.balance = 0.005;
    EXPECT_NE(zero, halfCent);

    CardBalanceResponse a;
    a.balance = 100.0;
    CardBalanceResponse b = a;
    b.balance = 100.006;
    EXPECT_NE(a, b);
    b.balance = 99.99;
    EXPECT_NE(a, b);
}

// Bonus calculation.

TEST(LoyaltyCalcBonusAmountRequest, DefaultMadeLeavesOutOnlyItsFourOptionalMembers) {
    EXPECT_TRUE(sameJson(
        jsonOf(CalcBonusAmountRequest()),
        R"({"calcOnlyKey": "", "cardList": [], "lines": [], "dataId": "", "dateTime": "",)"
        R"( "ksSource": 0, "online": 0, "orderDateTime": "", "salesChannel": 0, "shopNum": 0,)"
        R"( "token": "", "unitedLocationId": ""})"));
    const QVariantMap written = serder::serialize(CalcBonusAmountRequest()).toMap();
    for (const char* optional :
         {"bonusCountCanceled", "eShopOrderId", "placeId", "presentCountCanceled"})
        EXPECT_FALSE(written.contains(QString::fromLatin1(optional))) << optional;
}

TEST(LoyaltyCalcBonusAmountResponse, ReplyFillsTheEchoedRequestMembersAndItsOwn) {
    const CalcBonusAmountResponse response =
        fromJson<CalcBonusAmountResponse>(test::calcBonusAmountResponseJson());
    EXPECT_EQ(response.bonusCountCanceled, 2);
    EXPECT_EQ(response.calcOnlyKey, QStringLiteral("KEY-1"));
    ASSERT_EQ(response.cardList.size(), 1);
    EXPECT_EQ(response.cardList[0].accounts.size(), 2);
    ASSERT_EQ(response.lines.size(), 1);
    EXPECT_EQ(response.lines[0].lineNum, 1);
    EXPECT_EQ(response.dataId, QStringLiteral("DATA-1"));
    EXPECT_EQ(response.ksSource, 3);
    EXPECT_EQ(response.presentCountCanceled, 1);
    EXPECT_EQ(response.salesChannel, 4);
    EXPECT_EQ(response.unitedLocationId, QStringLiteral("UL-13"));
    EXPECT_EQ(response.tokenCorrectness, 1);
    EXPECT_EQ(response.dataIdReturn, QStringLiteral("RET-1"));

    const CalcBonusAmountRequest& echoed = response;
    EXPECT_EQ(echoed, fromJson<CalcBonusAmountRequest>(test::calcBonusAmountRequestJson()));
}

TEST(LoyaltyCalcBonusAmountResponse,
     WritesTheRequestMembersFirstThenTokenCorrectnessThenDataIdReturn) {
    const QStringList names = propertyNames<CalcBonusAmountResponse>();
    EXPECT_EQ(names, (bonusCalculationMembers + QStringList{"tokenCorrectness", "dataIdReturn"}));
    EXPECT_EQ(CalcBonusAmountResponse::staticMetaObject.superClass(),
              &CalcBonusAmountRequest::staticMetaObject);
    EXPECT_EQ(CalcBonusAmountResponse::staticMetaObject.propertyOffset(), 16);

    const CalcBonusAmountResponse response =
        fromJson<CalcBonusAmountResponse>(test::calcBonusAmountResponseJson());
    EXPECT_TRUE(sameJson(jsonOf(response), test::calcBonusAmountResponseJson()));
}

TEST(LoyaltyCalcAndReserveBonusPayResponse, ReplyWithOnlyDataIdReturnedLeavesDataIdReturnEmpty) {
    const CalcAndReserveBonusPayResponse response =
        fromJson<CalcAndReserveBonusPayResponse>(R"({"dataIdReturned": "RET-2"})");
    EXPECT_EQ(response.dataIdReturned, QStringLiteral("RET-2"));
    EXPECT_TRUE(response.dataIdReturn.isEmpty());
}

TEST(LoyaltyCalcAndReserveBonusPayResponse, ReplyWithOnlyDataIdReturnLeavesDataIdReturnedEmpty) {
    const CalcAndReserveBonusPayResponse response =
        fromJson<CalcAndReserveBonusPayResponse>(R"({"dataIdReturn": "RET-1"})");
    EXPECT_EQ(response.dataIdReturn, QStringLiteral("RET-1"));
    EXPECT_TRUE(response.dataIdReturned.isEmpty());
}

TEST(LoyaltyCalcAndReserveBonusPayResponse, WritesBothDataIdReturnAndDataIdReturned) {
    CalcAndReserveBonusPayResponse response;
    response.dataIdReturn = QStringLiteral("RET-1");
    response.dataIdReturned = QStringLiteral("RET-2");
    const QVariantMap written = serder::serialize(response).toMap();
    EXPECT_EQ(written.value("dataIdReturn"), QVariant(QStringLiteral("RET-1")));
    EXPECT_EQ(written.value("dataIdReturned"), QVariant(QStringLiteral("RET-2")));
    EXPECT_EQ(CalcAndReserveBonusPayResponse::staticMetaObject.superClass(),
              &CalcBonusAmountResponse::staticMetaObject);
}

TEST(LoyaltyCalcAndReserveBonusPayRequest,
     IsUnrelatedToCalcBonusAmountRequestButSharesItsLeadingMembers) {
    EXPECT_EQ(CalcAndReserveBonusPayRequest::staticMetaObject.superClass(), nullptr);
    EXPECT_EQ(propertyNames<CalcAndReserveBonusPayRequest>().mid(0, 16),
              propertyNames<CalcBonusAmountRequest>());
    EXPECT_FALSE(QMetaType::canConvert(QMetaType::fromType<CalcAndReserveBonusPayRequest>(),
                                       QMetaType::fromType<CalcBonusAmountRequest>()));
    EXPECT_FALSE(QMetaType::canConvert(QMetaType::fromType<CalcBonusAmountRequest>(),
                                       QMetaType::fromType<CalcAndReserveBonusPayRequest>()));

    // The shared members are sent alike.
    const QVariantMap reserve = serder::serialize(fromJson<CalcAndReserveBonusPayRequest>(
                                                      test::calcAndReserveBonusPayRequestJson()))
                                    .toMap();
    const QVariantMap calc =
        serder::serialize(fromJson<CalcBonusAmountRequest>(test::calcBonusAmountRequestJson()))
            .toMap();
    for (const QString& key : bonusCalculationMembers)
        EXPECT_EQ(reserve.value(key), calc.value(key)) << key.toStdString();
}

TEST(LoyaltyCalcBonusAmountRequest, DateTimeIsSentExactlyAsTheHostSetIt) {
    CalcBonusAmountRequest request;
    request.dateTime = QStringLiteral("2024-03-01T10:15:00+03:00");
    request.orderDateTime = QStringLiteral("01.03.2024 10:15");
    const QVariantMap written = serder::serialize(request).toMap();
    EXPECT_EQ(written.value("dateTime").metaType(), QMetaType::fromType<QString>());
    EXPECT_EQ(written.value("dateTime"), QVariant(QStringLiteral("2024-03-01T10:15:00+03:00")));
    EXPECT_EQ(written.value("orderDateTime"), QVariant(QStringLiteral("01.03.2024 10:15")));
    EXPECT_EQ(QJsonDocument::fromJson(jsonOf(request)).object().value("dateTime").toString(),
              QStringLiteral("2024-03-01T10:15:00+03:00"));
}

TEST(LoyaltyCalcAndReserveBonusPayRequest, DateTimeIsSentExactlyAsTheHostSetIt) {
    CalcAndReserveBonusPayRequest request;
    request.dateTime = QStringLiteral("2024-03-01 10:15:00.123Z");
    EXPECT_EQ(serder::serialize(request).toMap().value("dateTime"),
              QVariant(QStringLiteral("2024-03-01 10:15:00.123Z")));
}

// Parking and additional information.

TEST(LoyaltyParkingInfoResponse, IsoTextOfEntryTimeYieldsThatDateTime) {
    const ParkingInfoResponse response =
        fromJson<ParkingInfoResponse>(R"({"parkingDateTimeEntry": "2024-03-01T10:15:00"})");
    const QDateTime expected(QDate(2024, 3, 1), QTime(10, 15, 0));
    EXPECT_EQ(response.parkingDateTimeEntry.metaType(), QMetaType::fromType<QDateTime>());
    EXPECT_EQ(response.parkingDateTimeEntry.toDateTime(), expected);

    const QVariant read = readProperty(response, "parkingDateTimeEntry");
    EXPECT_EQ(read.metaType(), QMetaType::fromType<QDateTime>());
    EXPECT_EQ(read.toDateTime(), expected);
}

TEST(LoyaltyParkingInfoResponse, EntryTimeThatIsNotIsoTextYieldsAnInvalidDateTime) {
    const ParkingInfoResponse response = fromJson<ParkingInfoResponse>(
        R"({"parkingId": "PK-1", "parkingDateTimeEntry": "01.03.2024 10:15"})");
    EXPECT_EQ(response.parkingId, QStringLiteral("PK-1"));
    EXPECT_EQ(response.parkingDateTimeEntry.metaType(), QMetaType::fromType<QDateTime>());
    EXPECT_FALSE(response.parkingDateTimeEntry.toDateTime().isValid());
}

TEST(LoyaltyParkingInfoResponse, ReplyWithoutPrivilegeEndReadsAsAnInvalidDateTimeVariant) {
    const ParkingInfoResponse response =
        fromJson<ParkingInfoResponse>(R"({"parkingDateTimeEntry": "2024-03-01T10:15:00"})");
    EXPECT_FALSE(response.parkingDateTimePrivilegeEnd.toDateTime().isValid());
    const QVariant read = readProperty(response, "parkingDateTimePrivilegeEnd");
    EXPECT_TRUE(read.isValid());
    EXPECT_EQ(read.metaType(), QMetaType::fromType<QDateTime>());
    EXPECT_FALSE(read.toDateTime().isValid());
}

TEST(LoyaltyParkingInfoResponse, IntegerDiscHoursAreHeldAsADouble) {
    const ParkingInfoResponse response =
        fromJson<ParkingInfoResponse>(R"({"parkingDiscHours": 2})");
    static_assert(std::is_same_v<decltype(ParkingInfoResponse::parkingDiscHours), double>);
    EXPECT_EQ(response.parkingDiscHours, 2.0);
}

TEST(LoyaltyParkingInfoResponse, RecordsWithEqualTextsCloseNumbersAndEqualDateTimesCompareEqual) {
    const ParkingInfoResponse a = fromJson<ParkingInfoResponse>(test::parkingInfoResponseJson());
    ParkingInfoResponse b = a;
    b.parkingTotalAmount += 0.004;
    b.parkingDiscAmount -= 0.004;
    b.parkingPayAmount += 0.0049;
    b.parkingDiscHours -= 0.001;
    b.parkingDateTimeEntry = QDateTime(QDate(2024, 3, 1), QTime(10, 15, 0));
    EXPECT_EQ(a, b);
}

TEST(LoyaltyParkingInfoResponse, RecordsDifferingInANumberTextOrDateTimeCompareUnequal) {
    const ParkingInfoResponse a = fromJson<ParkingInfoResponse>(test::parkingInfoResponseJson());
    ParkingInfoResponse b = a;
    b.parkingDiscHours += 0.006;
    EXPECT_NE(a, b);
    b = a;
    b.parkingValidateStatus = QStringLiteral("valid");
    EXPECT_NE(a, b);
    b = a;
    b.parkingDateTimePrivilegeEnd = QDateTime(QDate(2024, 3, 1), QTime(12, 45, 1));
    EXPECT_NE(a, b);
}

TEST(LoyaltyParkingInfoRequest, DefaultMadeWritesAllThreeKeysAsEmptyStrings) {
    EXPECT_EQ(jsonOf(ParkingInfoRequest()),
              QByteArray(R"({"chequeId":"","parkingId":"","storeId":""})"));
}

TEST(LoyaltyAdditionalInfoResponse, AlwaysHasBothTexts) {
    const AdditionalInfoResponse response =
        fromJson<AdditionalInfoResponse>(R"({"chequeText": "Thank you"})");
    EXPECT_TRUE(response.cashierText.isEmpty());
    EXPECT_EQ(response.chequeText, QStringLiteral("Thank you"));
    EXPECT_EQ(jsonOf(AdditionalInfoResponse()),
              QByteArray(R"({"cashierText":"","chequeText":""})"));
}

} // namespace
} // namespace vesk::loyalty
