// The records of the discount service: their members, defaults, mapping to
// and from JSON, equality and registration.

#include "DiscObjects.h"

#include "support/Json.h"
#include "support/RecordTable.h"

#include <vesk/disc/disc.h>

#include <morva/Serder.h>

#include <QMetaProperty>

#include <gtest/gtest.h>

#include <type_traits>

namespace vesk::test {
namespace {

using namespace disc;

static_assert(
    areValues<CardListEntry, DiscountsEntryRequest, ExtraDataLineEntry, LinesEntryRequest,
              PaymentsEntryRequest, DiscCalcRequest, DiscCalcPayRequest, DiscountsEntryResponse,
              LinesEntryResponse, PaymentsEntryResponse, DiscCalcResponse, DiscCalcPayResponse,
              GetPublicityListRequest, PublicitiesEntry, VariantsEntry, GetPublicityListResponse>,
    "discount records are copyable values");

static_assert(std::is_same_v<decltype(LinesEntryRequest::qty), double> &&
                  std::is_same_v<decltype(DiscountsEntryRequest::discQty), std::optional<double>> &&
                  std::is_same_v<decltype(PublicitiesEntry::publicityAmount), int> &&
                  std::is_same_v<decltype(GetPublicityListRequest::shopNum), int> &&
                  std::is_same_v<decltype(DiscCalcRequest::publicities), QStringList> &&
                  std::is_same_v<decltype(VariantsEntry::publicities), QList<PublicitiesEntry>>,
              "members hold the types of their kinds");

// The records in the order of their description, with their members in
// declared order, the keys that a default-made record writes, and an object
// that sets every member at every depth.
INSTANTIATE_TEST_SUITE_P(
    Disc, RecordTableTest,
    testing::Values(
        recordRow<CardListEntry>({"card", "partnerId"}, {}, discObjects::cardListEntry()),
        recordRow<DiscountsEntryRequest>({"discId", "card", "complectId", "discUnit", "discQty"},
                                         {}, discObjects::discountsEntryRequest()),
        recordRow<ExtraDataLineEntry>({"key", "value"}, {}, discObjects::extraDataLineEntry()),
        recordRow<LinesEntryRequest>({"barcode", "colorId", "itemId", "sizeId", "skuId",
                                      "discounts", "lineNum", "locationId", "retailPrice", "qty",
                                      "extraDataLine"},
                                     {"barcode", "discounts", "lineNum", "locationId",
                                      "retailPrice", "qty", "extraDataLine"},
                                     discObjects::linesEntryRequest()),
        recordRow<PaymentsEntryRequest>({"payLineNum", "code", "card", "amount"},
                                        {"payLineNum", "code", "amount"},
                                        discObjects::paymentsEntryRequest()),
        recordRow<DiscCalcRequest>({"cardList", "chequeId", "calcDateTime", "lines", "publicities",
                                    "salesChannel", "storeId"},
                                   {"cardList", "chequeId", "calcDateTime", "lines", "publicities",
                                    "salesChannel", "storeId"},
                                   discObjects::discCalcRequest()),
        recordRow<DiscCalcPayRequest>({"cardList", "chequeId", "calcDateTime", "lines", "payments",
                                       "publicities", "salesChannel", "storeId"},
                                      {"cardList", "chequeId", "calcDateTime", "lines", "payments",
                                       "publicities", "salesChannel", "storeId"},
                                      discObjects::discCalcPayRequest()),
        recordRow<DiscountsEntryResponse>({"discId", "card", "complectId", "payLineNum", "payCode",
                                           "discUnit", "discQty", "description"},
                                          {"discId", "card", "complectId", "discUnit", "discQty",
                                           "description"},
                                          discObjects::discountsEntryResponse()),
        recordRow<LinesEntryResponse>({"discounts", "lineNum"}, {"discounts", "lineNum"},
                                      discObjects::linesEntryResponse()),
        recordRow<PaymentsEntryResponse>(
            {"payLineNum", "code", "card", "amount", "discAmount", "payAmount"},
            {"payLineNum", "code", "amount", "discAmount", "payAmount"},
            discObjects::paymentsEntryResponse()),
        recordRow<DiscCalcResponse>({"chequeId", "calcDateTime", "lines"},
                                    {"chequeId", "calcDateTime", "lines"},
                                    discObjects::discCalcResponse()),
        recordRow<DiscCalcPayResponse>({"chequeId", "calcDateTime", "lines", "payments"},
                                       {"chequeId", "calcDateTime", "lines", "payments"},
                                       discObjects::discCalcPayResponse()),
        recordRow<GetPublicityListRequest>({"cardList", "dataId", "dateTime", "extraData", "lines",
                                            "orderDateTime", "salesChannel", "shopNum", "token"},
                                           {"cardList", "dataId", "dateTime", "extraData", "lines",
                                            "orderDateTime", "salesChannel", "shopNum", "token"},
                                           discObjects::getPublicityListRequest()),
        recordRow<PublicitiesEntry>({"publicityId", "publicityName", "publicityDescription",
                                     "publicityType", "publicityAmount"},
                                    {"publicityId", "publicityName", "publicityDescription",
                                     "publicityType", "publicityAmount"},
                                    discObjects::publicitiesEntry()),
        recordRow<VariantsEntry>({"publicities", "variantNum"}, {"publicities", "variantNum"},
                                 discObjects::variantsEntry()),
        recordRow<GetPublicityListResponse>({"variants"}, {"variants"},
                                            discObjects::getPublicityListResponse())),
    RecordTableTest::rowName);

template <class R>
void write(R& record, const char* key, const QVariant& value) {
    const QMetaObject& type = R::staticMetaObject;
    ASSERT_TRUE(type.property(type.indexOfProperty(key)).writeOnGadget(&record, value));
}

LinesEntryRequest sampleLine() {
    LinesEntryRequest line;
    line.barcode = QStringLiteral("4601234567890");
    line.lineNum = 1;
    line.locationId = QStringLiteral("LOC-2");
    line.retailPrice = 199.99;
    line.qty = 2.5;
    return line;
}

TEST(DiscRecords, LineWithoutItemDetailsSerialisesExactlyItsSevenPlainKeys) {
    const QVariantMap body = serder::serialize(sampleLine()).toMap();
    QStringList keys = body.keys();
    keys.sort();
    EXPECT_EQ(keys, QStringList({"barcode", "discounts", "extraDataLine", "lineNum", "locationId",
                                 "qty", "retailPrice"}));
    EXPECT_EQ(compactJson(body),
              R"({"barcode":"4601234567890","discounts":[],"extraDataLine":[],)"
              R"("lineNum":1,"locationId":"LOC-2","qty":2.5,"retailPrice":199.99})");
}

TEST(DiscRecords, DefaultLineSerialisesItsPlainMembersAsZeroEmptyOrEmptyArray) {
    EXPECT_EQ(compactJson(serder::serialize(LinesEntryRequest())),
              R"({"barcode":"","discounts":[],"extraDataLine":[],"lineNum":0,"locationId":"",)"
              R"("qty":0,"retailPrice":0})");
}

TEST(DiscRecords, ReplyDiscountWithoutPaymentKeysLeavesThemAbsentAndPlainMembersAtDefaults) {
    const auto reply = serder::deserialize<DiscCalcResponse>(
        replyMap(R"({"chequeId": "CH-42", "lines": [{"lineNum": 1, "discounts": [)"
                 R"({"card": "4000", "discUnit": 5, "discQty": 1, "description": "Sale"}]}]})"));
    ASSERT_EQ(reply.lines.size(), 1);
    ASSERT_EQ(reply.lines[0].discounts.size(), 1);
    const DiscountsEntryResponse& discount = reply.lines[0].discounts[0];
    EXPECT_FALSE(discount.payLineNum.has_value());
    EXPECT_FALSE(discount.payCode.has_value());
    EXPECT_EQ(discount.discId, QString());
    EXPECT_TRUE(discount.discId.isEmpty());
    EXPECT_EQ(discount.complectId, 0);
    EXPECT_EQ(discount.card, QStringLiteral("4000"));
    EXPECT_EQ(discount.discUnit, 5.0);
    EXPECT_EQ(discount.discQty, 1.0);
    EXPECT_EQ(discount.description, QStringLiteral("Sale"));
}

TEST(DiscRecords, ReplyDiscountWithPaymentKeysHoldsThem) {
    const auto discount =
        serder::deserialize<DiscountsEntryResponse>(replyMap(R"({"payLineNum": 2, "payCode": 0})"));
    ASSERT_TRUE(discount.payLineNum.has_value());
    EXPECT_EQ(*discount.payLineNum, 2);
    ASSERT_TRUE(discount.payCode.has_value());
    EXPECT_EQ(*discount.payCode, 0);
}

TEST(DiscRecords, LinesWhoseQtyDifferByAThousandthAreUnequal) {
    const LinesEntryRequest a = sampleLine();
    LinesEntryRequest b = sampleLine();
    b.qty = 2.501;
    EXPECT_NE(a, b);
    EXPECT_FALSE(a == b);
}

TEST(DiscRecords, LinesWhoseRetailPriceDifferByAThousandthAreEqual) {
    const LinesEntryRequest a = sampleLine();
    LinesEntryRequest b = sampleLine();
    b.retailPrice = 199.991;
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a != b);
}

TEST(DiscRecords, LinesWhoseRetailPriceDifferBySixThousandthsAreUnequal) {
    const LinesEntryRequest a = sampleLine();
    LinesEntryRequest b = sampleLine();
    b.retailPrice = 199.996;
    EXPECT_NE(a, b);
}

TEST(DiscRecords, DiscountQuantitiesCompareWithinHalfAThousandthAndUnitsWithinFiveThousandths) {
    DiscountsEntryResponse a;
    a.discQty = 1.5;
    a.discUnit = 20.0;
    DiscountsEntryResponse b = a;
    b.discQty = 1.5004;
    b.discUnit = 20.004;
    EXPECT_EQ(a, b);
    b.discQty = 1.501;
    EXPECT_NE(a, b);

    DiscountsEntryRequest c;
    c.discQty = 1.5;
    DiscountsEntryRequest d;
    d.discQty = 1.501;
    EXPECT_NE(c, d);
    d.discQty = 1.5004;
    EXPECT_EQ(c, d);
    d.discUnit = 0.0;
    EXPECT_NE(c, d) << "an absent member differs from a present 0";
}

TEST(DiscRecords, ReplyPublicityAmountGivenAsDigitsIsReadAsThatInteger) {
    const auto reply = serder::deserialize<GetPublicityListResponse>(
        replyMap(R"({"variants": [{"variantNum": 1, "publicities": [)"
                 R"({"publicityId": "PUB-1", "publicityAmount": "150"}]}]})"));
    ASSERT_EQ(reply.variants.size(), 1);
    ASSERT_EQ(reply.variants[0].publicities.size(), 1);
    EXPECT_EQ(reply.variants[0].publicities[0].publicityAmount, 150);
}

TEST(DiscRecords, ReplyPublicityAmountThatCannotBeConvertedIsZero) {
    const auto reply = serder::deserialize<GetPublicityListResponse>(
        replyMap(R"({"variants": [{"variantNum": 1, "publicities": [)"
                 R"({"publicityId": "PUB-1", "publicityAmount": "lots"}]}]})"));
    ASSERT_EQ(reply.variants.size(), 1);
    ASSERT_EQ(reply.variants[0].publicities.size(), 1);
    EXPECT_EQ(reply.variants[0].publicities[0].publicityAmount, 0);
    EXPECT_EQ(reply.variants[0].publicities[0].publicityId, QStringLiteral("PUB-1"));
}

TEST(DiscRecords, PublicityListReplyWithoutVariantsHasAnEmptyList) {
    const auto reply = serder::deserialize<GetPublicityListResponse>(replyMap(R"({"other": 1})"));
    EXPECT_TRUE(reply.variants.isEmpty());
    EXPECT_EQ(reply, GetPublicityListResponse());
}

TEST(DiscRecords, EmptyReplyLeavesEveryResponseAtItsDefaults) {
    EXPECT_EQ(serder::deserialize<DiscCalcResponse>(replyMap("{}")), DiscCalcResponse());
    EXPECT_EQ(serder::deserialize<DiscCalcPayResponse>(replyMap("{}")), DiscCalcPayResponse());
    EXPECT_EQ(serder::deserialize<GetPublicityListResponse>(replyMap("{}")),
              GetPublicityListResponse());
}

TEST(DiscRecords, CalculationRequestAlwaysWritesAllSevenKeys) {
    EXPECT_EQ(compactJson(serder::serialize(DiscCalcRequest())),
              R"({"calcDateTime":"","cardList":[],"chequeId":"","lines":[],"publicities":[],)"
              R"("salesChannel":0,"storeId":""})");
}

TEST(DiscRecords, EmptyCardIsSentAsAnEmptyObject) {
    EXPECT_EQ(compactJson(serder::serialize(CardListEntry())), "{}");
    DiscCalcRequest request;
    request.cardList = {CardListEntry()};
    EXPECT_EQ(compactJson(serder::serialize(request).toMap().value("cardList").toList().value(0)),
              "{}");
}

TEST(DiscRecords, PublicitiesAreAStringListInRequestsAndAListOfRecordsInVariants) {
    DiscCalcRequest request;
    request.publicities = {QStringLiteral("P-1"), QStringLiteral("P-2")};
    EXPECT_EQ(serder::serialize(request).toMap().value("publicities"),
              QVariant(QStringList({"P-1", "P-2"})));

    VariantsEntry variant;
    write(variant, "publicities",
          replyMap(R"({"l": [{"publicityId": "A"}, {"publicityId": "B"}]})").toMap().value("l"));
    ASSERT_EQ(variant.publicities.size(), 2);
    EXPECT_EQ(variant.publicities[0].publicityId, QStringLiteral("A"));
    EXPECT_EQ(variant.publicities[1].publicityId, QStringLiteral("B"));
}

TEST(DiscRecords, PublicityRequestKeepsItsOwnKeysForTimeAndShop) {
    GetPublicityListRequest request;
    request.dateTime = QStringLiteral("2024-05-01T12:31:00");
    request.orderDateTime = QStringLiteral("2024-04-30T18:00:00");
    request.shopNum = 117;
    const QVariantMap body = serder::serialize(request).toMap();
    EXPECT_EQ(body.value("shopNum"), QVariant(117));
    EXPECT_EQ(body.value("dateTime"), QVariant(QStringLiteral("2024-05-01T12:31:00")));
    EXPECT_FALSE(body.contains("storeId"));
    EXPECT_FALSE(body.contains("calcDateTime"));
}

TEST(DiscRecords, EveryEntryAndRequestHasTheStrategyOfItsOwnType) {
    expectOwnStrategies<CardListEntry, DiscountsEntryRequest, ExtraDataLineEntry, LinesEntryRequest,
                        PaymentsEntryRequest, DiscountsEntryResponse, LinesEntryResponse,
                        PaymentsEntryResponse, PublicitiesEntry, VariantsEntry, DiscCalcRequest,
                        DiscCalcPayRequest, GetPublicityListRequest>();
}

} // namespace
} // namespace vesk::test
