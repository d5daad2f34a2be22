// The discount service's promotions against an in-memory store with the shipped seed.

#include "StoreFixture.h"

#include <emulator/DiscountService.h>

namespace vesk::emulator::test {
namespace {

struct Line {
    QString barcode;
    double price;
    double qty;
};

// One discount as "ID unit x qty", payments' entries with "@payLineNum".
QString describe(const disc::DiscountsEntryResponse& d) {
    QString text =
        QStringLiteral("%1 %2 x %3").arg(d.discId).arg(d.discUnit, 0, 'f', 2).arg(d.discQty);
    if (d.payLineNum)
        text += QStringLiteral(" @%1").arg(*d.payLineNum);
    return text;
}

QStringList describe(const disc::LinesEntryResponse& line) {
    QStringList all;
    for (const disc::DiscountsEntryResponse& d : line.discounts)
        all.append(describe(d));
    return all;
}

Cents discountOf(const disc::LinesEntryResponse& line) {
    Cents sum = 0;
    for (const disc::DiscountsEntryResponse& d : line.discounts)
        sum += lineAmount(toCents(d.discUnit), d.discQty);
    return sum;
}

class DiscountServiceTest : public StoreFixture {
protected:
    static QList<disc::LinesEntryRequest> lines(const QList<Line>& given) {
        QList<disc::LinesEntryRequest> result;
        int lineNum = 0;
        for (const Line& l : given) {
            disc::LinesEntryRequest line;
            line.barcode = l.barcode;
            line.lineNum = ++lineNum;
            line.locationId = QStringLiteral("HALL");
            line.retailPrice = l.price;
            line.qty = l.qty;
            result.append(line);
        }
        return result;
    }
    static QList<disc::CardListEntry> cards(const QStringList& numbers) {
        QList<disc::CardListEntry> result;
        for (const QString& number : numbers) {
            disc::CardListEntry card;
            card.card = number;
            result.append(card);
        }
        return result;
    }
    disc::DiscCalcResponse calc(const QList<Line>& given, const QStringList& cardNumbers,
                                const QStringList& publicities = {}) {
        disc::DiscCalcRequest request;
        request.cardList = cards(cardNumbers);
        request.chequeId = QStringLiteral("A");
        request.calcDateTime = QStringLiteral("2026-11-20T10:00:00");
        request.lines = lines(given);
        request.publicities = publicities;
        request.storeId = QStringLiteral("S01");
        return service.discCalc(request);
    }
    disc::DiscCalcPayResponse calcPay(const QList<Line>& given, const QStringList& cardNumbers,
                                      const QList<std::pair<int, double>>& payments) {
        disc::DiscCalcPayRequest request;
        request.cardList = cards(cardNumbers);
        request.chequeId = QStringLiteral("A");
        request.lines = lines(given);
        int payLineNum = 0;
        for (const auto& [code, amount] : payments) {
            disc::PaymentsEntryRequest payment;
            payment.payLineNum = ++payLineNum;
            payment.code = code;
            payment.amount = amount;
            request.payments.append(payment);
        }
        return service.discCalcPay(request);
    }
    QStringList variants(const QList<Line>& given, const QStringList& cardNumbers) {
        disc::GetPublicityListRequest request;
        request.cardList = cards(cardNumbers);
        request.lines = lines(given);
        QStringList result;
        for (const disc::VariantsEntry& variant : service.getPublicityList(request).variants) {
            QStringList ids;
            for (const disc::PublicitiesEntry& p : variant.publicities)
                ids.append(p.publicityId);
            result.append(
                QStringLiteral("%1: %2").arg(variant.variantNum).arg(ids.join(QLatin1Char(','))));
        }
        return result;
    }

    const QList<Line> sale{{coffee, 1200, 2}, {mug, 450, 1}, {tea, 300, 1}};
    DiscountService service{store, seed};
};

TEST_F(DiscountServiceTest, GoldCardGetsFivePercentOnEveryLineAndTheSetItsTenPercent) {
    const disc::DiscCalcResponse reply = calc(sale, {goldCard});
    EXPECT_EQ(reply.chequeId, "A");
    EXPECT_EQ(reply.calcDateTime, "2026-11-20T10:00:00");
    ASSERT_EQ(reply.lines.size(), 3);
    EXPECT_EQ(reply.lines[0].lineNum, 1);
    EXPECT_EQ(describe(reply.lines[0]),
              QStringList({"CARD-GOLD-5 60.00 x 2", "SET-COFFEE-MUG 120.00 x 1"}));
    EXPECT_EQ(describe(reply.lines[1]),
              QStringList({"CARD-GOLD-5 22.50 x 1", "SET-COFFEE-MUG 45.00 x 1"}));
    EXPECT_EQ(describe(reply.lines[2]), QStringList({"CARD-GOLD-5 15.00 x 1"}));
    const disc::DiscountsEntryResponse& set = reply.lines[0].discounts[1];
    EXPECT_EQ(set.complectId, 7);
    EXPECT_EQ(set.card, "");
    EXPECT_EQ(set.description, "Coffee and mug: 10% off the set");
    EXPECT_FALSE(set.payLineNum);
    EXPECT_FALSE(set.payCode);
    const disc::DiscountsEntryResponse& card = reply.lines[0].discounts[0];
    EXPECT_EQ(card.card, goldCard);
    EXPECT_EQ(card.complectId, 0);
}

TEST_F(DiscountServiceTest, LineDiscountsAddUpToTheSubtotalLessTheTotal) {
    const disc::DiscCalcResponse reply = calc(sale, {goldCard});
    EXPECT_EQ(discountOf(reply.lines[0]), 24000);
    EXPECT_EQ(discountOf(reply.lines[1]), 6750);
    EXPECT_EQ(discountOf(reply.lines[2]), 1500);
    EXPECT_EQ(315000 - discountOf(reply.lines[0]) - discountOf(reply.lines[1]) -
                  discountOf(reply.lines[2]),
              282750);
}

TEST_F(DiscountServiceTest, SilverCardGetsThreePercent) {
    const disc::DiscCalcResponse reply = calc({{tea, 300, 1}}, {silverCard});
    EXPECT_EQ(describe(reply.lines[0]), QStringList({"CARD-SILVER-3 9.00 x 1"}));
}

TEST_F(DiscountServiceTest, NoCardOrAnUnknownCardGetsNoCardDiscount) {
    EXPECT_EQ(describe(calc({{tea, 300, 1}}, {}).lines[0]), QStringList());
    EXPECT_EQ(describe(calc({{tea, 300, 1}}, {QStringLiteral("999")}).lines[0]), QStringList());
}

TEST_F(DiscountServiceTest, SetDiscountCountsOnlyCompleteSets) {
    EXPECT_EQ(describe(calc({{coffee, 1200, 2}}, {}).lines[0]), QStringList());
    const disc::DiscCalcResponse two = calc({{coffee, 1200, 2}, {mug, 450, 3}}, {});
    EXPECT_EQ(describe(two.lines[0]), QStringList({"SET-COFFEE-MUG 120.00 x 2"}));
    EXPECT_EQ(describe(two.lines[1]), QStringList({"SET-COFFEE-MUG 45.00 x 2"}));
}

TEST_F(DiscountServiceTest, SetDiscountSpreadsOverLinesOfOneBarcodeInLineOrder) {
    const disc::DiscCalcResponse reply =
        calc({{coffee, 1200, 1}, {mug, 450, 2}, {coffee, 1200, 3}}, {});
    EXPECT_EQ(describe(reply.lines[0]), QStringList({"SET-COFFEE-MUG 120.00 x 1"}));
    EXPECT_EQ(describe(reply.lines[1]), QStringList({"SET-COFFEE-MUG 45.00 x 2"}));
    EXPECT_EQ(describe(reply.lines[2]), QStringList({"SET-COFFEE-MUG 120.00 x 1"}));
}

TEST_F(DiscountServiceTest, DiscountsFollowTheTillsPrice) {
    const disc::DiscCalcResponse reply = calc({{coffee, 1000, 1}, {mug, 400, 1}}, {});
    EXPECT_EQ(describe(reply.lines[0]), QStringList({"SET-COFFEE-MUG 100.00 x 1"}));
    EXPECT_EQ(describe(reply.lines[1]), QStringList({"SET-COFFEE-MUG 40.00 x 1"}));
}

TEST_F(DiscountServiceTest, PublicitiesLimitThePromotionsApplied) {
    const disc::DiscCalcResponse reply = calc(sale, {goldCard}, {"SET-COFFEE-MUG"});
    EXPECT_EQ(describe(reply.lines[0]), QStringList({"SET-COFFEE-MUG 120.00 x 1"}));
    EXPECT_EQ(describe(reply.lines[2]), QStringList());
}

TEST_F(DiscountServiceTest, BankCardPaymentDiscountIsSpreadOverTheLines) {
    const disc::DiscCalcPayResponse reply = calcPay(sale, {goldCard}, {{2, 2500}, {5, 327.5}});
    ASSERT_EQ(reply.payments.size(), 2);
    EXPECT_EQ(reply.payments[0].payLineNum, 1);
    EXPECT_EQ(reply.payments[0].code, 2);
    EXPECT_EQ(reply.payments[0].amount, 2500.0);
    EXPECT_EQ(reply.payments[0].discAmount, 75.0);
    EXPECT_EQ(reply.payments[0].payAmount, 2425.0);
    EXPECT_EQ(reply.payments[1].discAmount, 0.0);
    EXPECT_EQ(reply.payments[1].payAmount, 327.5);
    EXPECT_EQ(describe(reply.lines[0]),
              QStringList({"CARD-GOLD-5 60.00 x 2", "SET-COFFEE-MUG 120.00 x 1",
                           "PAY-BANKCARD-3 57.29 x 1 @1"}));
    EXPECT_EQ(describe(reply.lines[1]),
              QStringList({"CARD-GOLD-5 22.50 x 1", "SET-COFFEE-MUG 45.00 x 1",
                           "PAY-BANKCARD-3 10.15 x 1 @1"}));
    EXPECT_EQ(describe(reply.lines[2]),
              QStringList({"CARD-GOLD-5 15.00 x 1", "PAY-BANKCARD-3 7.56 x 1 @1"}));
    EXPECT_EQ(reply.lines[2].discounts[1].payCode, 2);
}

TEST_F(DiscountServiceTest, PaymentSharesAddUpToThePaymentsDiscount) {
    const disc::DiscCalcPayResponse reply =
        calcPay({{chocolate, 120, 7}, {sugar, 180, 0.333}, {tea, 300, 3}}, {}, {{2, 2000}});
    Cents shares = 0;
    for (const disc::LinesEntryResponse& line : reply.lines)
        for (const disc::DiscountsEntryResponse& d : line.discounts)
            if (d.payLineNum == 1)
                shares += lineAmount(toCents(d.discUnit), d.discQty);
    // The cheque: 840.00 + 59.94 + 900.00 = 1799.94; 3% of it is 54.00 (53.9982).
    EXPECT_EQ(reply.payments[0].discAmount, 54.0);
    EXPECT_EQ(shares, 5400);
    EXPECT_EQ(reply.payments[0].payAmount, 1946.0);
}

TEST_F(DiscountServiceTest, CashGetsNoPaymentDiscount) {
    const disc::DiscCalcPayResponse reply = calcPay(sale, {}, {{1, 3000}});
    EXPECT_EQ(reply.payments[0].discAmount, 0.0);
    EXPECT_EQ(reply.payments[0].payAmount, 3000.0);
    EXPECT_EQ(describe(reply.lines[2]), QStringList());
}

TEST_F(DiscountServiceTest, PaymentDiscountNeedsTheMinimumTotal) {
    const disc::DiscCalcPayResponse reply = calcPay({{teapot, 999.99, 1}}, {}, {{2, 999.99}});
    EXPECT_EQ(reply.payments[0].discAmount, 0.0);
    const disc::DiscCalcPayResponse enough = calcPay({{teapot, 1000, 1}}, {}, {{2, 1000}});
    EXPECT_EQ(enough.payments[0].discAmount, 30.0);
}

TEST_F(DiscountServiceTest, PromotionListOffersTheQualifyingVariants) {
    EXPECT_EQ(variants(sale, {goldCard}),
              QStringList({"1: CARD-GOLD-5,SET-COFFEE-MUG",
                           "2: CARD-GOLD-5,SET-COFFEE-MUG,PAY-BANKCARD-3"}));
    EXPECT_EQ(variants({{teapot, 1500, 1}}, {}), QStringList({"1: PAY-BANKCARD-3"}));
    EXPECT_EQ(variants({{tea, 300, 1}}, {silverCard}), QStringList({"1: CARD-SILVER-3"}));
    EXPECT_EQ(variants({{tea, 300, 1}}, {}), QStringList());
}

TEST_F(DiscountServiceTest, PromotionListEntriesCarryTheSeedsTexts) {
    disc::GetPublicityListRequest request;
    request.cardList = cards({goldCard});
    request.lines = lines({{tea, 300, 1}});
    const disc::GetPublicityListResponse reply = service.getPublicityList(request);
    ASSERT_EQ(reply.variants.size(), 1);
    ASSERT_EQ(reply.variants[0].publicities.size(), 1);
    const disc::PublicitiesEntry& p = reply.variants[0].publicities[0];
    EXPECT_EQ(p.publicityId, "CARD-GOLD-5");
    EXPECT_EQ(p.publicityName, "5% for GOLD card holders");
    EXPECT_EQ(p.publicityDescription,
              "5% of the retail price of every line for a GOLD loyalty card");
    EXPECT_EQ(p.publicityType, 1);
    EXPECT_EQ(p.publicityAmount, 5);
}

TEST_F(DiscountServiceTest, BadValuesAreRefused) {
    const ServiceError qty = refusal([&] { calc({{tea, 300, 0}}, {}); });
    EXPECT_EQ(qty.status(), 400);
    EXPECT_EQ(qty.code(), 2000);
    EXPECT_EQ(qty.userMsg(), "Line 1: the quantity must be more than 0 and at most 1000000");
    const ServiceError price = refusal([&] { calc({{tea, -1, 1}}, {}); });
    EXPECT_EQ(price.code(), 2000);
    EXPECT_EQ(price.userMsg(), "Line 1: the retail price must be from 0 to 1000000000");
    const ServiceError payment = refusal([&] { calcPay({{tea, 300, 1}}, {}, {{2, 1e12}}); });
    EXPECT_EQ(payment.code(), 2000);
    EXPECT_EQ(payment.userMsg(), "Payment 1: the amount must be from 0 to 1000000000");
}

} // namespace
} // namespace vesk::emulator::test
