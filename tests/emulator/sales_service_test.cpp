// The sales service's rules against an in-memory store with the shipped seed.

#include "StoreFixture.h"

#include <emulator/SalesService.h>

#include <limits>

namespace vesk::emulator::test {
namespace {

class SalesServiceTest : public StoreFixture {
protected:
    sales::ReserveChequeResponse reserve(const QString& cheque,
                                         const QList<std::pair<QString, double>>& lines,
                                         const QString& section = QStringLiteral("HALL")) {
        sales::ReserveChequeRequest request;
        request.chequeId = cheque;
        request.storeId = QStringLiteral("S01");
        int lineNum = 0;
        for (const auto& [barcode, qty] : lines) {
            sales::ReserveLinesEntryRequest line;
            line.barcode = barcode;
            line.sectionId = section;
            line.lineNum = ++lineNum;
            line.qty = qty;
            request.lines.append(line);
        }
        return service.reserveCheque(request);
    }

    void unreserve(const QString& cheque) {
        sales::UnreserveChequeRequest request;
        request.chequeId = cheque;
        EXPECT_EQ(service.unreserveCheque(request).chequeId, cheque);
    }

    SalesService service{store, seed};
};

TEST_F(SalesServiceTest, ItemInfoGivesTheCatalogueDataOfTheBarcode) {
    sales::ItemInfoRequest request;
    request.sectionId = QStringLiteral("HALL");
    request.barcode = mug;
    const sales::ItemInfoResponse item = service.itemInfo(request);
    EXPECT_EQ(item.barcode, mug);
    EXPECT_EQ(item.barcodeType, 1);
    EXPECT_EQ(item.price, 450.0);
    EXPECT_EQ(item.priceGroupId, "REGULAR");
    EXPECT_EQ(item.skuId, "SKU-MUG-300W");
    EXPECT_EQ(item.name, "Ceramic mug, 300 ml");
    EXPECT_EQ(item.article, "MUG-300");
    EXPECT_EQ(item.itemId, "IT-1002");
    EXPECT_EQ(item.colorId, "WHITE");
    EXPECT_EQ(item.sizeId, "300ML");
    EXPECT_EQ(item.unitId, "pcs");
    EXPECT_EQ(item.groupId, "TABLEWARE");
    EXPECT_EQ(item.countryCode, "PT");
    EXPECT_EQ(item.vendorId, "V-CERAMICS");
    EXPECT_EQ(item.properties, 0);
}

TEST_F(SalesServiceTest, ItemInfoRefusesAnUnknownBarcode) {
    sales::ItemInfoRequest request;
    request.barcode = QStringLiteral("0000000000000");
    const ServiceError e = refusal([&] { service.itemInfo(request); });
    EXPECT_EQ(e.status(), 404);
    EXPECT_EQ(e.code(), 1001);
    EXPECT_EQ(e.userMsg(), "No item with barcode \"0000000000000\"");
}

TEST_F(SalesServiceTest, ReservationTakesEachLineFromTheStockOfItsSection) {
    const sales::ReserveChequeResponse reply =
        reserve(QStringLiteral("A"), {{coffee, 2}, {mug, 1}});
    EXPECT_EQ(reply.chequeId, "A");
    ASSERT_EQ(reply.lines.size(), 2);
    const sales::ReserveLinesEntryResponse& line = reply.lines[0];
    EXPECT_EQ(line.barcode, coffee);
    EXPECT_EQ(line.sectionId, "HALL");
    EXPECT_EQ(line.skuId, "SKU-COF-1KG");
    EXPECT_EQ(line.lineNum, 1);
    EXPECT_EQ(line.price, 1200.0);
    EXPECT_EQ(line.qty, 2.0);
    EXPECT_EQ(line.taxCode, "VAT20");
    EXPECT_EQ(line.vendorId, "V-ROASTERS");
    EXPECT_FALSE(line.existWithoutReservation);
    EXPECT_FALSE(line.qtyWithoutReservation);
    EXPECT_FALSE(line.withoutReservationMessage);
    EXPECT_EQ(stock("HALL", coffee), 18000);
    EXPECT_EQ(stock("HALL", mug), 11000);
    EXPECT_EQ(stock("WAREHOUSE", coffee), 100000);
}

TEST_F(SalesServiceTest, LineShortOfStockReservesWhatThereIsAndSaysSo) {
    const sales::ReserveChequeResponse reply = reserve(QStringLiteral("A"), {{teapot, 3}});
    ASSERT_EQ(reply.lines.size(), 1);
    const sales::ReserveLinesEntryResponse& line = reply.lines[0];
    EXPECT_EQ(line.qty, 1.0);
    EXPECT_TRUE(line.existWithoutReservation);
    EXPECT_EQ(line.qtyWithoutReservation, 2.0);
    EXPECT_EQ(line.withoutReservationMessage,
              "Only 1 of 3 of \"Teapot, 0.8 l\" in stock in section HALL: 2 not reserved");
    EXPECT_EQ(stock("HALL", teapot), 0);
}

TEST_F(SalesServiceTest, LineOfASectionWithoutStockReservesNothing) {
    const sales::ReserveChequeResponse reply =
        reserve(QStringLiteral("A"), {{tea, 1}}, QStringLiteral("WAREHOUSE"));
    ASSERT_EQ(reply.lines.size(), 1);
    EXPECT_EQ(reply.lines[0].qty, 0.0);
    EXPECT_TRUE(reply.lines[0].existWithoutReservation);
    EXPECT_EQ(reply.lines[0].qtyWithoutReservation, 1.0);
}

TEST_F(SalesServiceTest, LineWithoutSectionTakesFromTheDefaultSection) {
    const sales::ReserveChequeResponse reply =
        reserve(QStringLiteral("A"), {{coffee, 1}}, QString());
    EXPECT_EQ(reply.lines[0].sectionId, "HALL");
    EXPECT_EQ(stock("HALL", coffee), 19000);
}

TEST_F(SalesServiceTest, FractionalQuantityIsReservedExactly) {
    const sales::ReserveChequeResponse reply = reserve(QStringLiteral("A"), {{sugar, 0.25}});
    EXPECT_EQ(reply.lines[0].qty, 0.25);
    EXPECT_FALSE(reply.lines[0].existWithoutReservation);
    EXPECT_EQ(stock("HALL", sugar), 25250);
}

TEST_F(SalesServiceTest, ReservingTheSameChequeAgainReplacesItsReservation) {
    reserve(QStringLiteral("A"), {{coffee, 2}});
    reserve(QStringLiteral("A"), {{coffee, 5}});
    EXPECT_EQ(stock("HALL", coffee), 15000);
    reserve(QStringLiteral("A"), {{mug, 1}});
    EXPECT_EQ(stock("HALL", coffee), 20000);
    EXPECT_EQ(stock("HALL", mug), 11000);
}

TEST_F(SalesServiceTest, ReservingAgainCanUseWhatTheChequeHeld) {
    reserve(QStringLiteral("A"), {{teapot, 1}});
    const sales::ReserveChequeResponse reply = reserve(QStringLiteral("A"), {{teapot, 1}});
    EXPECT_EQ(reply.lines[0].qty, 1.0);
    EXPECT_FALSE(reply.lines[0].existWithoutReservation);
}

TEST_F(SalesServiceTest, UnknownBarcodeRefusesTheWholeChequeAndTakesNothing) {
    const ServiceError e = refusal([&] {
        reserve(QStringLiteral("A"), {{coffee, 2}, {QStringLiteral("42"), 1}});
    });
    EXPECT_EQ(e.status(), 404);
    EXPECT_EQ(e.code(), 1001);
    EXPECT_EQ(e.userMsg(), "No item with barcode \"42\"");
    EXPECT_EQ(stock("HALL", coffee), 20000);
    const ServiceError none = refusal([&] { unreserve(QStringLiteral("A")); });
    EXPECT_EQ(none.code(), 1002);
}

TEST_F(SalesServiceTest, UnreservingGivesTheStockBack) {
    reserve(QStringLiteral("A"), {{coffee, 2}, {teapot, 2}});
    unreserve(QStringLiteral("A"));
    EXPECT_EQ(stock("HALL", coffee), 20000);
    EXPECT_EQ(stock("HALL", teapot), 1000);
}

TEST_F(SalesServiceTest, UnreservingAnUnknownChequeIsRefused) {
    sales::UnreserveChequeRequest request;
    request.chequeId = QStringLiteral("NOPE");
    const ServiceError e = refusal([&] { service.unreserveCheque(request); });
    EXPECT_EQ(e.status(), 404);
    EXPECT_EQ(e.code(), 1002);
    EXPECT_EQ(e.userMsg(), "No reservation for cheque \"NOPE\"");
}

TEST_F(SalesServiceTest, UnreservingTwiceIsRefusedTheSecondTime) {
    reserve(QStringLiteral("A"), {{coffee, 1}});
    unreserve(QStringLiteral("A"));
    EXPECT_EQ(refusal([&] { unreserve(QStringLiteral("A")); }).code(), 1002);
    EXPECT_EQ(stock("HALL", coffee), 20000);
}

struct BadReservation {
    const char* name;
    double qty;
    const char* message;
};

void PrintTo(const BadReservation& row, std::ostream* out) {
    *out << row.name;
}

class SalesBadReservationTest : public SalesServiceTest,
                                public ::testing::WithParamInterface<BadReservation> {};

TEST_P(SalesBadReservationTest, IsRefusedAsInvalid) {
    const ServiceError e = refusal([&] {
        reserve(QStringLiteral("A"), {{coffee, GetParam().qty}});
    });
    EXPECT_EQ(e.status(), 400);
    EXPECT_EQ(e.code(), 1000);
    EXPECT_EQ(e.userMsg(), GetParam().message);
    EXPECT_EQ(stock("HALL", coffee), 20000);
}

INSTANTIATE_TEST_SUITE_P(
    Quantities, SalesBadReservationTest,
    ::testing::Values(
        BadReservation{"zero", 0, "Line 1: the quantity must be more than 0 and at most 1000000"},
        BadReservation{"negative", -2,
                       "Line 1: the quantity must be more than 0 and at most 1000000"},
        BadReservation{"huge", 1e300,
                       "Line 1: the quantity must be more than 0 and at most 1000000"},
        BadReservation{"infinite", std::numeric_limits<double>::infinity(),
                       "Line 1: the quantity must be more than 0 and at most 1000000"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(SalesServiceTest, ChequeWithoutIdIsRefused) {
    const ServiceError e = refusal([&] { reserve(QString(), {{coffee, 1}}); });
    EXPECT_EQ(e.status(), 400);
    EXPECT_EQ(e.code(), 1000);
    EXPECT_EQ(e.userMsg(), "chequeId is empty");
}

TEST_F(SalesServiceTest, LineNumberGivenTwiceIsRefused) {
    sales::ReserveChequeRequest request;
    request.chequeId = QStringLiteral("A");
    sales::ReserveLinesEntryRequest line;
    line.barcode = coffee;
    line.lineNum = 3;
    line.qty = 1;
    request.lines = {line, line};
    const ServiceError e = refusal([&] { service.reserveCheque(request); });
    EXPECT_EQ(e.code(), 1000);
    EXPECT_EQ(e.userMsg(), "Line number 3 appears twice");
}

} // namespace
} // namespace vesk::emulator::test
