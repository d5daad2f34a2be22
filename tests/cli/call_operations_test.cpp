// Each of the sixteen operations through `vesk call`, against an emulator
// with the shipped seed, checked by the values that the seed gives.

#include "EmulatorFixture.h"

#include <QJsonArray>

namespace vesk::cli::test {
namespace {

const QString disc = QStringLiteral("disc");
const QString loyalty = QStringLiteral("loyalty");
const QString sales = QStringLiteral("sales");

// A coffee at 1200.00 and a mug at 450.00, each once: a complete set of the
// seed's coffee-and-mug promotion.
const QString coffeeAndMug =
    QStringLiteral(R"([{"barcode": "4601234000017", "lineNum": 1, "retailPrice": 1200, "qty": 1},)"
                   R"( {"barcode": "4601234000024", "lineNum": 2, "retailPrice": 450, "qty": 1}])");

// One coffee at 1200.00 as a loyalty cheque line.
const QString loyaltyCoffee = QStringLiteral(
    R"([{"barCode": "4601234000017", "lineNum": 1, "price": 1200, "basePrice": 1200,)"
    R"( "salesPrice": 1200, "qty": 1}])");

QJsonObject at(const QJsonValue& list, qsizetype index) {
    EXPECT_GT(list.toArray().size(), index);
    return list.toArray().at(index).toObject();
}

using CallOperation = EmulatorTest;

TEST_F(CallOperation, ItemInfoPrintsTheCatalogueDataOfTheBarcode) {
    const QJsonObject item =
        respond(sales, QStringLiteral("itemInfo"),
                QStringLiteral(R"({"sectionId": "HALL", "barcode": "%1"})").arg(mug));
    EXPECT_EQ(item[u"barcode"], mug);
    EXPECT_EQ(item[u"name"], QStringLiteral("Ceramic mug, 300 ml"));
    EXPECT_EQ(item[u"price"], 450.0);
    EXPECT_EQ(item[u"skuId"], QStringLiteral("SKU-MUG-300W"));
    EXPECT_EQ(item[u"colorId"], QStringLiteral("WHITE"));
    EXPECT_EQ(item[u"barcodeType"], 1);
}

TEST_F(CallOperation, ReserveChequeReservesWhatTheSectionHolds) {
    const QJsonObject reply = respond(
        sales, QStringLiteral("reserveCheque"),
        QStringLiteral(R"({"chequeId": "C-1", "storeId": "S01", "lines": [)"
                       R"({"barcode": "%1", "sectionId": "HALL", "lineNum": 1, "qty": 2}]})")
            .arg(teapot));
    EXPECT_EQ(reply[u"chequeId"], QStringLiteral("C-1"));
    const QJsonObject line = at(reply[u"lines"], 0);
    EXPECT_EQ(line[u"skuId"], QStringLiteral("SKU-POT-08"));
    EXPECT_EQ(line[u"price"], 1500.0);
    EXPECT_EQ(line[u"qty"], 1.0);
    EXPECT_EQ(line[u"taxCode"], QStringLiteral("VAT20"));
    EXPECT_EQ(line[u"existWithoutReservation"], true);
    EXPECT_EQ(line[u"qtyWithoutReservation"], 1.0);
    EXPECT_EQ(line[u"withoutReservationMessage"],
              QStringLiteral("Only 1 of 2 of \"Teapot, 0.8 l\" in stock in section HALL: 1 not "
                             "reserved"));
}

TEST_F(CallOperation, UnreserveChequeReleasesTheReservation) {
    respond(sales, QStringLiteral("reserveCheque"),
            QStringLiteral(R"({"chequeId": "C-2", "storeId": "S01", "lines": [)"
                           R"({"barcode": "%1", "sectionId": "HALL", "lineNum": 1, "qty": 1}]})")
                .arg(coffee));
    const QJsonObject reply =
        respond(sales, QStringLiteral("unreserveCheque"), QStringLiteral(R"({"chequeId": "C-2"})"));
    EXPECT_EQ(reply, QJsonObject({{QStringLiteral("chequeId"), QStringLiteral("C-2")}}));

    const VeskRun again =
        call(sales, QStringLiteral("unreserveCheque"), QStringLiteral(R"({"chequeId": "C-2"})"));
    EXPECT_EQ(again.exitCode, 2) << testing::PrintToString(again);
    EXPECT_TRUE(again.err.startsWith(QStringLiteral(
        "vesk: error: service: HTTP 404, code 1002: No reservation for cheque \"C-2\"\n  body: ")))
        << again.err.toStdString();
}

TEST_F(CallOperation, DiscCalcGivesTheCardAndSetDiscountsOfEachLine) {
    const QJsonObject reply =
        respond(disc, QStringLiteral("discCalc"),
                QStringLiteral(R"({"chequeId": "D-1", "calcDateTime": "2026-11-20T12:00:00",)"
                               R"( "cardList": [{"card": "%1"}], "lines": %2})")
                    .arg(goldCard, coffeeAndMug));
    EXPECT_EQ(reply[u"chequeId"], QStringLiteral("D-1"));
    EXPECT_EQ(reply[u"calcDateTime"], QStringLiteral("2026-11-20T12:00:00"));
    const QJsonObject first = at(reply[u"lines"], 0);
    EXPECT_EQ(first[u"lineNum"], 1);
    const QJsonObject card = at(first[u"discounts"], 0);
    EXPECT_EQ(card[u"discId"], QStringLiteral("CARD-GOLD-5"));
    EXPECT_EQ(card[u"card"], goldCard);
    EXPECT_EQ(card[u"discUnit"], 60.0);
    EXPECT_EQ(card[u"discQty"], 1.0);
    const QJsonObject set = at(first[u"discounts"], 1);
    EXPECT_EQ(set[u"discId"], QStringLiteral("SET-COFFEE-MUG"));
    EXPECT_EQ(set[u"complectId"], 7);
    EXPECT_EQ(set[u"discUnit"], 120.0);
    EXPECT_EQ(at(at(reply[u"lines"], 1)[u"discounts"], 0)[u"discUnit"], 22.5);
}

TEST_F(CallOperation, DiscCalcPayAddsTheBankCardDiscountOfThePayment) {
    const QJsonObject reply =
        respond(disc, QStringLiteral("discCalcPay"),
                QStringLiteral(R"({"chequeId": "D-2", "cardList": [{"card": "%1"}], "lines": %2,)"
                               R"( "payments": [{"payLineNum": 1, "code": 2, "amount": 1000}]})")
                    .arg(goldCard, coffeeAndMug));
    const QJsonObject payment = at(reply[u"payments"], 0);
    EXPECT_EQ(payment[u"payLineNum"], 1);
    EXPECT_EQ(payment[u"amount"], 1000.0);
    EXPECT_EQ(payment[u"discAmount"], 30.0);
    EXPECT_EQ(payment[u"payAmount"], 970.0);
    const QJsonObject share = at(at(reply[u"lines"], 0)[u"discounts"], 2);
    EXPECT_EQ(share[u"discId"], QStringLiteral("PAY-BANKCARD-3"));
    EXPECT_EQ(share[u"discUnit"], 21.82);
    EXPECT_EQ(share[u"payLineNum"], 1);
    EXPECT_EQ(share[u"payCode"], 2);
    EXPECT_EQ(at(at(reply[u"lines"], 1)[u"discounts"], 2)[u"discUnit"], 8.18);
}

TEST_F(CallOperation, GetPublicityListOffersThePromotionsOfTheChequeInTwoVariants) {
    const QJsonObject reply =
        respond(disc, QStringLiteral("getPublicityList"),
                QStringLiteral(R"({"cardList": [{"card": "%1"}], "lines": %2})")
                    .arg(goldCard, coffeeAndMug));
    const QJsonArray variants = reply[u"variants"].toArray();
    ASSERT_EQ(variants.size(), 2);
    const QJsonObject automatic = variants[0].toObject();
    EXPECT_EQ(automatic[u"variantNum"], 1);
    const QJsonObject gold = at(automatic[u"publicities"], 0);
    EXPECT_EQ(gold[u"publicityId"], QStringLiteral("CARD-GOLD-5"));
    EXPECT_EQ(gold[u"publicityName"], QStringLiteral("5% for GOLD card holders"));
    EXPECT_EQ(gold[u"publicityType"], 1);
    EXPECT_EQ(gold[u"publicityAmount"], 5);
    EXPECT_EQ(at(automatic[u"publicities"], 1)[u"publicityId"], QStringLiteral("SET-COFFEE-MUG"));
    const QJsonObject withPayment = variants[1].toObject();
    EXPECT_EQ(withPayment[u"variantNum"], 2);
    EXPECT_EQ(withPayment[u"publicities"].toArray().size(), 3);
    EXPECT_EQ(at(withPayment[u"publicities"], 2)[u"publicityId"], QStringLiteral("PAY-BANKCARD-3"));
}

TEST_F(CallOperation, ProcessIdIdentifiesTheCardAndIssuesAToken) {
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("processId"),
                QStringLiteral(R"({"discCardId": "%1", "chequeId": "L-1"})").arg(goldCard));
    EXPECT_EQ(reply[u"clientFIO"], QStringLiteral("Anna Petrova"));
    EXPECT_EQ(reply[u"discCardId"], goldCard);
    EXPECT_EQ(reply[u"discCardTypeId"], QStringLiteral("GOLD"));
    EXPECT_EQ(reply[u"identityIsRequired"], 1);
    EXPECT_EQ(reply[u"isLoyaltyCard"], 1);
    EXPECT_EQ(reply[u"retMessage"], QStringLiteral("Card identified"));
    EXPECT_EQ(reply[u"token"], QStringLiteral("T000001"));
}

TEST_F(CallOperation, ProcessPinSendsThePinToTheMaskedPhone) {
    const QString token = identify(goldCard);
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("processPin"),
                QStringLiteral(R"({"discCardId": "%1", "token": "%2"})").arg(goldCard, token));
    EXPECT_EQ(reply[u"phone"], QStringLiteral("+7 900 ***-**-67"));
    EXPECT_EQ(reply[u"pinCodeSended"], 1);
    EXPECT_EQ(reply[u"showPinField"], 1);
    EXPECT_EQ(reply[u"retMessage"], QStringLiteral("PIN sent to +7 900 ***-**-67"));
    EXPECT_EQ(reply[u"token"], token);
}

TEST_F(CallOperation, CheckPinConfirmsThePinOfTheCard) {
    const QString token = identify(goldCard);
    respond(loyalty, QStringLiteral("processPin"),
            QStringLiteral(R"({"discCardId": "%1", "token": "%2"})").arg(goldCard, token));
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("checkPin"),
                QStringLiteral(R"({"discCardId": "%1", "token": "%2", "pinCode": "4321"})")
                    .arg(goldCard, token));
    EXPECT_EQ(reply[u"correctPin"], 1);
    EXPECT_EQ(reply[u"discCardId"], goldCard);
    EXPECT_EQ(reply[u"retCode"], 0);
    EXPECT_EQ(reply[u"retMessage"], QStringLiteral("PIN confirmed"));
}

TEST_F(CallOperation, GetCardBalanceGivesTheSeedBalance) {
    const QString token = identify(goldCard);
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("getCardBalance"),
                QStringLiteral(R"({"discCardId": "%1", "token": "%2"})").arg(goldCard, token));
    EXPECT_EQ(reply[u"balance"], 500.0);
    EXPECT_EQ(reply[u"showBalance"], 1);
    EXPECT_EQ(reply[u"retCode"], 0);
}

TEST_F(CallOperation, CalcBonusAmountGivesTheAccrualAndTheBonusAccount) {
    const QString token = identify(goldCard);
    const QJsonObject reply = respond(
        loyalty, QStringLiteral("calcBonusAmount"),
        QStringLiteral(R"({"token": "%1", "dataId": "B-1", "cardList": [{"card": "%2",)"
                       R"( "accounts": [{"codeAccount": 1, "requestAmount": 100}]}], "lines": %3})")
            .arg(token, goldCard, loyaltyCoffee));
    EXPECT_EQ(reply[u"dataIdReturn"], QStringLiteral("B-1"));
    EXPECT_EQ(reply[u"tokenCorrectness"], 1);
    EXPECT_EQ(reply[u"token"], token);
    EXPECT_EQ(at(reply[u"lines"], 0)[u"bonusUnit"], 22.0);
    const QJsonObject account = at(at(reply[u"cardList"], 0)[u"accounts"], 0);
    EXPECT_EQ(account[u"codeAccount"], 1);
    EXPECT_EQ(account[u"balance"], 500.0);
    EXPECT_EQ(account[u"maxPay"], 500.0);
    EXPECT_EQ(account[u"requestAmount"], 100.0);
    EXPECT_EQ(account[u"cardPan"], QStringLiteral("****0011"));
    EXPECT_EQ(account[u"fio"], QStringLiteral("Anna Petrova"));
}

TEST_F(CallOperation, CalcAndReserveBonusPayReservesTheWriteOffAsALineDiscount) {
    const QString token = identify(silverCard);
    const QJsonObject reply = respond(
        loyalty, QStringLiteral("calcAndReserveBonusPay"),
        QStringLiteral(R"({"token": "%1", "dataId": "R-1", "cardList": [{"card": "%2",)"
                       R"( "accounts": [{"codeAccount": 1, "requestAmount": 50}]}], "lines": %3})")
            .arg(token, silverCard, loyaltyCoffee));
    EXPECT_EQ(reply[u"dataIdReturn"], QStringLiteral("R-1"));
    EXPECT_EQ(reply[u"dataIdReturned"], QString());
    EXPECT_EQ(reply[u"tokenCorrectness"], 1);
    const QJsonObject line = at(reply[u"lines"], 0);
    EXPECT_EQ(line[u"bonusUnit"], 11.5);
    const QJsonObject discount = at(line[u"discounts"], 0);
    EXPECT_EQ(discount[u"card"], silverCard);
    EXPECT_EQ(discount[u"codeAccount"], 1);
    EXPECT_EQ(discount[u"discAmount"], 50.0);
    EXPECT_EQ(at(at(reply[u"cardList"], 0)[u"accounts"], 0)[u"confirmedAmount"], 50.0);
}

TEST_F(CallOperation, CommitChequeBooksTheBonusesAndValidatesTheParkingTicket) {
    const QString token = identify(silverCard);
    respond(loyalty, QStringLiteral("calcAndReserveBonusPay"),
            QStringLiteral(R"({"token": "%1", "dataId": "R-2", "cardList": [{"card": "%2",)"
                           R"( "accounts": [{"codeAccount": 1, "requestAmount": 50}]}],)"
                           R"( "lines": %3})")
                .arg(token, silverCard, loyaltyCoffee));
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("commitCheque"),
                QStringLiteral(R"({"token": "%1", "dataId": "R-2", "cardList": [{"card": "%2"}],)"
                               R"( "lines": %3, "totalAmount": 1200, "parkingId": "P-000123"})")
                    .arg(token, silverCard, loyaltyCoffee));
    EXPECT_EQ(reply[u"dataId"], QStringLiteral("R-2"));
    EXPECT_EQ(reply[u"discAmount"], 50.0);
    EXPECT_EQ(reply[u"bonusAmount"], 11.5);
    EXPECT_EQ(reply[u"totalAmountAfterKs"], 1150.0);
    EXPECT_EQ(at(reply[u"slips"], 0)[u"chequeMessage"],
              QStringLiteral("Loyalty card ****0028\nBonuses paid: 50.00\nBonuses accrued: "
                             "11.50\nBalance: 41.50"));
    EXPECT_EQ(reply[u"parkingValidateStatus"], QStringLiteral("VALIDATED"));
    EXPECT_EQ(reply[u"parkingDiscHours"], 1);
    EXPECT_EQ(reply[u"parkingTotalAmount"], 300.0);
    EXPECT_EQ(reply[u"parkingDiscAmount"], 100.0);
    EXPECT_EQ(reply[u"parkingDateTimeEntry"], QStringLiteral("2026-11-20T09:30:00"));
    EXPECT_EQ(reply[u"parkingDateTimePrivilegeEnd"], QStringLiteral("2026-11-20T10:30:00"));
}

TEST_F(CallOperation, GetParkingInfoPrintsItsDateTimesInIsoForm) {
    respond(loyalty, QStringLiteral("commitCheque"),
            QStringLiteral(R"({"dataId": "P-1", "totalAmount": 2500})"));
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("getParkingInfo"),
                QStringLiteral(R"({"chequeId": "P-1", "parkingId": "P-000123"})"));
    EXPECT_EQ(reply[u"parkingId"], QStringLiteral("P-000123"));
    EXPECT_EQ(reply[u"parkingValidateStatus"], QStringLiteral("VALIDATED"));
    EXPECT_EQ(reply[u"parkingTotalAmount"], 300.0);
    EXPECT_EQ(reply[u"parkingDiscAmount"], 200.0);
    EXPECT_EQ(reply[u"parkingPayAmount"], 100.0);
    EXPECT_EQ(reply[u"parkingDiscHours"], 2.0);
    EXPECT_EQ(reply[u"parkingDateTimeEntry"], QStringLiteral("2026-11-20T09:30:00.000"));
    EXPECT_EQ(reply[u"parkingDateTimePrivilegeEnd"], QStringLiteral("2026-11-20T11:30:00.000"));
}

TEST_F(CallOperation, CashierAdditionalInfoFillsTheCashierText) {
    const QString token = identify(goldCard);
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("cashierAdditionalInfo"),
                QStringLiteral(R"({"discCardId": "%1", "token": "%2", "chequeId": "L-1"})")
                    .arg(goldCard, token));
    EXPECT_EQ(reply[u"cashierText"],
              QStringLiteral("Anna Petrova, GOLD card ****0011: 500.00 bonuses available."));
    EXPECT_EQ(reply[u"chequeText"], QString());
}

TEST_F(CallOperation, ChequeAdditionalInfoFillsTheChequeText) {
    const QString token = identify(goldCard);
    const QJsonObject reply =
        respond(loyalty, QStringLiteral("chequeAdditionalInfo"),
                QStringLiteral(R"({"discCardId": "%1", "token": "%2", "chequeId": "L-1"})")
                    .arg(goldCard, token));
    EXPECT_EQ(reply[u"chequeText"],
              QStringLiteral("Thank you, Anna Petrova! Bonuses paid: 0.00, accrued: 0.00. "
                             "Balance: 500.00."));
    EXPECT_EQ(reply[u"cashierText"], QString());
}

} // namespace
} // namespace vesk::cli::test
