// The records of the sales service: their members, defaults, mapping to and
// from JSON, equality and registration.

#include "SalesObjects.h"

#include "support/Json.h"
#include "support/RecordTable.h"

#include <vesk/sales/sales.h>

#include <morva/Serder.h>

#include <QMetaProperty>

#include <gtest/gtest.h>

#include <type_traits>

namespace vesk::test {
namespace {

using namespace sales;

static_assert(areValues<ItemInfoRequest, ItemInfoResponse, ReserveLinesEntryRequest,
                        ReserveLinesEntryResponse, ReserveChequeRequest, ReserveChequeResponse,
                        UnreserveChequeRequest, UnreserveChequeResponse>,
              "sales records are copyable values");

static_assert(
    std::is_same_v<decltype(ItemInfoResponse::properties), int> &&
        std::is_same_v<decltype(ItemInfoResponse::price), double> &&
        std::is_same_v<decltype(ReserveLinesEntryResponse::price), std::optional<double>> &&
        std::is_same_v<decltype(ReserveLinesEntryResponse::existWithoutReservation), bool> &&
        std::is_same_v<decltype(ReserveChequeRequest::includeFirstRetailPrice),
                       std::optional<bool>> &&
        std::is_same_v<decltype(ReserveChequeRequest::lines), QList<ReserveLinesEntryRequest>>,
    "members hold the types of their kinds");

INSTANTIATE_TEST_SUITE_P(
    Sales, RecordTableTest,
    testing::Values(
        recordRow<ItemInfoRequest>({"sectionId", "barcode"}, {"sectionId", "barcode"},
                                   salesObjects::itemInfoRequest()),
        recordRow<ItemInfoResponse>({"barcode", "barcodeType", "price", "priceGroupId", "skuId",
                                     "name", "article", "itemId", "colorId", "sizeId", "unitId",
                                     "groupId", "countryCode", "vendorId", "properties"},
                                    {"barcode", "barcodeType", "price", "priceGroupId", "skuId",
                                     "name", "article", "itemId", "colorId", "sizeId", "unitId",
                                     "groupId", "countryCode", "vendorId", "properties"},
                                    salesObjects::itemInfoResponse()),
        recordRow<ReserveLinesEntryRequest>({"barcode", "sectionId", "skuId", "lineNum", "qty"},
                                            {"barcode", "sectionId", "skuId", "lineNum", "qty"},
                                            salesObjects::reserveLinesEntryRequest()),
        recordRow<ReserveLinesEntryResponse>(
            {"barcode", "sectionId", "skuId", "lineNum", "price", "qty", "taxCode", "vendorId",
             "existWithoutReservation", "qtyWithoutReservation", "withoutReservationMessage"},
            {"barcode", "sectionId", "skuId", "lineNum", "qty", "taxCode",
             "existWithoutReservation"},
            salesObjects::reserveLinesEntryResponse()),
        recordRow<ReserveChequeRequest>(
            {"chequeId", "storeId", "basketId", "includeFirstRetailPrice", "lines"},
            {"chequeId", "storeId", "lines"}, salesObjects::reserveChequeRequest()),
        recordRow<ReserveChequeResponse>({"chequeId", "basketId", "lines"}, {"chequeId", "lines"},
                                         salesObjects::reserveChequeResponse()),
        recordRow<UnreserveChequeRequest>({"chequeId"}, {"chequeId"},
                                          salesObjects::unreserveChequeRequest()),
        recordRow<UnreserveChequeResponse>({"chequeId"}, {"chequeId"},
                                           salesObjects::unreserveChequeResponse())),
    RecordTableTest::rowName);

template <class R>
QVariant read(const R& record, const char* key) {
    const QMetaObject& type = R::staticMetaObject;
    return type.property(type.indexOfProperty(key)).readOnGadget(&record);
}

ReserveLinesEntryRequest requestLine(int lineNum, const char* barcode, double qty) {
    ReserveLinesEntryRequest line;
    line.barcode = QString::fromLatin1(barcode);
    line.sectionId = QStringLiteral("SEC-3");
    line.skuId = QStringLiteral("SKU-77");
    line.lineNum = lineNum;
    line.qty = qty;
    return line;
}

ReserveLinesEntryResponse responseLine() {
    ReserveLinesEntryResponse line;
    line.barcode = QStringLiteral("4601234567890");
    line.lineNum = 1;
    line.price = 10.0;
    line.qty = 1.5;
    line.qtyWithoutReservation = 0.5;
    return line;
}

TEST(SalesRecords, DefaultReservationRequestWritesItsPlainMembersOnly) {
    EXPECT_EQ(compactJson(serder::serialize(ReserveChequeRequest())),
              R"({"chequeId":"","lines":[],"storeId":""})");
}

TEST(SalesRecords, IncludeFirstRetailPriceSetToFalseIsWrittenAsFalse) {
    ReserveChequeRequest request;
    request.includeFirstRetailPrice = false;
    EXPECT_EQ(compactJson(serder::serialize(request)),
              R"({"chequeId":"","includeFirstRetailPrice":false,"lines":[],"storeId":""})");
}

TEST(SalesRecords, BasketIdIsWrittenOnlyWhenSet) {
    ReserveChequeRequest request;
    request.basketId = QString();
    EXPECT_EQ(compactJson(serder::serialize(request)),
              R"({"basketId":"","chequeId":"","lines":[],"storeId":""})");
}

TEST(SalesRecords, ReplyLineWithoutOptionalKeysLeavesThemWithoutValueAndWritesThemBackOmitted) {
    const auto reply = serder::deserialize<ReserveChequeResponse>(
        replyMap(R"({"chequeId": "CH-42", "lines": [{"barcode": "4601234567890",)"
                 R"( "sectionId": "SEC-3", "skuId": "SKU-77", "lineNum": 1, "qty": 2,)"
                 R"( "taxCode": "VAT20"}]})"));
    ASSERT_EQ(reply.lines.size(), 1);
    const ReserveLinesEntryResponse& line = reply.lines[0];
    EXPECT_FALSE(line.price.has_value());
    EXPECT_FALSE(line.vendorId.has_value());
    EXPECT_FALSE(line.qtyWithoutReservation.has_value());
    EXPECT_FALSE(line.withoutReservationMessage.has_value());
    EXPECT_FALSE(reply.basketId.has_value());
    EXPECT_EQ(compactJson(serder::serialize(line)),
              R"({"barcode":"4601234567890","existWithoutReservation":false,"lineNum":1,)"
              R"("qty":2,"sectionId":"SEC-3","skuId":"SKU-77","taxCode":"VAT20"})");
}

TEST(SalesRecords, ReplyLineWithoutExistWithoutReservationHoldsFalse) {
    ReserveLinesEntryResponse line;
    line.existWithoutReservation = true;
    line = serder::deserialize<ReserveLinesEntryResponse>(replyMap(R"({"lineNum": 4})"));
    EXPECT_FALSE(line.existWithoutReservation);
    EXPECT_EQ(read(line, "existWithoutReservation"), QVariant(false));
}

TEST(SalesRecords, ItemPricesDifferingByLessThanFiveThousandthsAreEqual) {
    ItemInfoResponse a;
    a.barcode = QStringLiteral("4601234567890");
    a.price = 1299.5;
    ItemInfoResponse b = a;
    b.price = 1299.504;
    EXPECT_EQ(a, b);
    b.price = 1299.496;
    EXPECT_EQ(a, b);
    b.price = 1299.506;
    EXPECT_NE(a, b);
}

TEST(SalesRecords, LinePricesCompareWithinFiveThousandths) {
    const ReserveLinesEntryResponse a = responseLine();
    ReserveLinesEntryResponse b = a;
    b.price = 10.004;
    EXPECT_EQ(a, b);
    b.price = 10.006;
    EXPECT_NE(a, b);
    b.price.reset();
    EXPECT_NE(a, b) << "an absent price differs from a present one";
}

TEST(SalesRecords, LineQuantitiesCompareWithinHalfAThousandth) {
    const ReserveLinesEntryResponse a = responseLine();
    ReserveLinesEntryResponse b = a;
    b.qty = 1.5004;
    b.qtyWithoutReservation = 0.5004;
    EXPECT_EQ(a, b);
    b.qty = 1.501;
    EXPECT_NE(a, b);
    b.qty = 1.5;
    b.qtyWithoutReservation = 0.501;
    EXPECT_NE(a, b);

    const ReserveLinesEntryRequest c = requestLine(1, "4601234567890", 2.0);
    EXPECT_EQ(c, requestLine(1, "4601234567890", 2.0004));
    EXPECT_NE(c, requestLine(1, "4601234567890", 2.001));
}

TEST(SalesRecords, RequestLinesAreWrittenInTheirOrderWithTheirOwnLineNumbers) {
    ReserveChequeRequest request;
    request.chequeId = QStringLiteral("CH-42");
    request.lines = {requestLine(3, "300", 1.0), requestLine(1, "100", 2.0),
                     requestLine(2, "200", 0.5)};
    const QVariantList lines = serder::serialize(request).toMap().value("lines").toList();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(compactJson(lines[0]), R"({"barcode":"300","lineNum":3,"qty":1,)"
                                     R"("sectionId":"SEC-3","skuId":"SKU-77"})");
    EXPECT_EQ(compactJson(lines[1]), R"({"barcode":"100","lineNum":1,"qty":2,)"
                                     R"("sectionId":"SEC-3","skuId":"SKU-77"})");
    EXPECT_EQ(compactJson(lines[2]), R"({"barcode":"200","lineNum":2,"qty":0.5,)"
                                     R"("sectionId":"SEC-3","skuId":"SKU-77"})");
}

TEST(SalesRecords, ReplyLinesAreReadInTheirOrderWithTheirOwnLineNumbers) {
    const auto reply = serder::deserialize<ReserveChequeResponse>(
        replyMap(R"({"chequeId": "CH-42", "lines": [{"lineNum": 5, "barcode": "500"},)"
                 R"( {"lineNum": 2, "barcode": "200"}, {"lineNum": 9, "barcode": "900"}]})"));
    ASSERT_EQ(reply.lines.size(), 3);
    EXPECT_EQ(reply.lines[0].lineNum, 5);
    EXPECT_EQ(reply.lines[0].barcode, QStringLiteral("500"));
    EXPECT_EQ(reply.lines[1].lineNum, 2);
    EXPECT_EQ(reply.lines[1].barcode, QStringLiteral("200"));
    EXPECT_EQ(reply.lines[2].lineNum, 9);
    EXPECT_EQ(reply.lines[2].barcode, QStringLiteral("900"));
}

TEST(SalesRecords, ReplyPropertiesIsReadAsAnInteger) {
    const auto item = serder::deserialize<ItemInfoResponse>(replyMap(R"({"properties": 5})"));
    EXPECT_EQ(item.properties, 5);
    const QVariant property = read(item, "properties");
    EXPECT_EQ(property.metaType(), QMetaType::fromType<int>());
    EXPECT_EQ(property.toInt(), 5);
}

TEST(SalesRecords, ReplyPriceGivenAsAnIntegerIsHeldAsThatNumber) {
    const auto item = serder::deserialize<ItemInfoResponse>(replyMap(R"({"price": 1200})"));
    EXPECT_EQ(item.price, 1200.0);
    const QVariant property = read(item, "price");
    EXPECT_EQ(property.metaType(), QMetaType::fromType<double>());
    EXPECT_EQ(property.toDouble(), 1200.0);
    EXPECT_EQ(compactJson(serder::serialize(item)),
              R"({"article":"","barcode":"","barcodeType":0,"colorId":"","countryCode":"",)"
              R"("groupId":"","itemId":"","name":"","price":1200,"priceGroupId":"",)"
              R"("properties":0,"sizeId":"","skuId":"","unitId":"","vendorId":""})");
}

TEST(SalesRecords, EmptyReplyLeavesEveryResponseAtItsDefaults) {
    EXPECT_EQ(serder::deserialize<ItemInfoResponse>(replyMap("{}")), ItemInfoResponse());
    EXPECT_EQ(serder::deserialize<ReserveChequeResponse>(replyMap("{}")), ReserveChequeResponse());
    EXPECT_EQ(serder::deserialize<UnreserveChequeResponse>(replyMap("{}")),
              UnreserveChequeResponse());
}

TEST(SalesRecords, EveryEntryAndRequestHasTheStrategyOfItsOwnType) {
    expectOwnStrategies<ReserveLinesEntryRequest, ReserveLinesEntryResponse, ItemInfoRequest,
                        ReserveChequeRequest, UnreserveChequeRequest>();
}

} // namespace
} // namespace vesk::test
