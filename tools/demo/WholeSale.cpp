#include "WholeSale.h"

#include "Bench.h"
#include "SeedSale.h"

#include <emulator/AdminClient.h>
#include <emulator/Emulator.h>
#include <emulator/Money.h>

#include <vesk/vesk.h>

#include <QDateTime>
#include <QUrl>

#include <cmath>
#include <memory>

namespace vesk::demo {

namespace {

using emulator::Cents;
using emulator::formatCents;

// The sale, in terms of the shipped seed (tools/emulator/seed.json).
using seed::bankCardCode;
using seed::bonusAccount;
using seed::bonusCode;
using seed::goldCard;
using seed::parkingTicket;
using seed::saleTime;
using seed::shopNum;
using seed::storeId;
const char* const section = "HALL";
const char* const placeId = "S01-POS1";

struct Good {
    const char* barcode;
    const char* name;
    const char* skuId;
    Cents price;
    double qty;
};
const Good goods[] = {
    {"4601234000017", "Coffee beans, 1 kg", "SKU-COF-1KG", 120000, 2},
    {"4601234000024", "Ceramic mug, 300 ml", "SKU-MUG-300W", 45000, 1},
    {"4601234000031", "Green tea, 100 g", "SKU-TEA-100G", 30000, 1},
};
constexpr int lineCount = 3;
const char* const teapot = "4601234000048"; // one left in the hall: the second cheque asks two

const char* const holder = "Anna Petrova";
const char* const rightPin = seed::goldPin;
const char* const maskedPhone = "+7 900 ***-**-67";
constexpr Cents bonusesToPay = 32750;     // the customer pays this much with bonuses
constexpr Cents bankCardPayment = 250000; // and this much by bank card, before its discount

// What the seed implies for this sale, worked out by hand.
namespace expected {
constexpr Cents subtotal = 315000;
// discCalc: 5% for the GOLD card on every line, 10% on one coffee and one mug as a set.
constexpr Cents cardUnit[lineCount] = {6000, 2250, 1500};
constexpr Cents setUnit[lineCount] = {12000, 4500, 0};
constexpr Cents lineDiscounts[lineCount] = {24000, 6750, 1500};
constexpr Cents discounts = 32250;
constexpr Cents net[lineCount] = {216000, 38250, 28500};
constexpr Cents netTotal = 282750;
// Bonuses: 2% accrual for GOLD, at most 50% of the cheque and the balance.
constexpr Cents startBalance = 50000;
constexpr Cents calcAccrual = 5655;     // 2% of 2827.50
constexpr Cents reservedAccrual = 5000; // 2% of 2827.50 - 327.50
constexpr Cents bonusShares[lineCount] = {25019, 4430, 3301};
// discCalcPay: 3% of the bank card payment, spread over the lines.
constexpr Cents paymentDiscount = 7500;
constexpr Cents paymentShares[lineCount] = {5729, 1015, 756};
constexpr Cents total = 275250;         // 2827.50 - 75.00
constexpr Cents bankCardToPay = 242500; // 2500.00 - 75.00
constexpr Cents accrual = 4850;         // 2% of 2752.50 - 327.50, line by line
// Parking: a 3-hour stay at 100.00 an hour, 2 free hours for a cheque of 2000.00 or more.
constexpr Cents parkingTotal = 30000;
constexpr Cents parkingDiscount = 20000;
constexpr Cents parkingToPay = 10000;
constexpr int parkingHours = 2;
} // namespace expected

struct Failure {
    QString message;
};

QString amount(double value) {
    return std::isfinite(value) && std::fabs(value) < 1e12 ? formatCents(emulator::toCents(value))
                                                           : QString::number(value);
}

Cents discountOf(const disc::DiscountsEntryResponse& entry) {
    return emulator::lineAmount(emulator::toCents(entry.discUnit), entry.discQty);
}

QString pad(const QString& left, const QString& right, int width = 44) {
    QString text = left.left(width - right.size() - 1);
    return text + QString(width - text.size() - right.size(), QLatin1Char(' ')) + right;
}

// The words of `text` in lines of at most `width` characters.
QStringList wrap(const QString& text, int width = 44) {
    QStringList lines;
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && line.size() + 1 + word.size() > width) {
            lines.append(line);
            line.clear();
        }
        line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    if (!line.isEmpty())
        lines.append(line);
    return lines;
}

// One sale, step by step. A step that does not behave throws Failure.
class Sale {
public:
    // `external`: an emulator that may remember earlier sales, whose numbers
    // are checked loosely.
    Sale(QTextStream& out, bool external)
        : out_(out)
        , external_(external) {
        // A kept emulator remembers earlier sales: each run gets cheques of its own.
        const QString suffix =
            external ? QDateTime::currentDateTime().toString(QStringLiteral("-yyMMddHHmmsszzz"))
                     : QString();
        cheque_ = QStringLiteral("CHQ-1001") + suffix;
        secondCheque_ = QStringLiteral("CHQ-1002") + suffix;
    }

    void run() {
        scan();
        reserve();
        identify();
        confirmPin();
        balance();
        discounts();
        promotions();
        calculateBonuses();
        reserveBonuses();
        discountsWithPayments();
        commit();
        parking();
        texts();
        releaseSecondCheque();
        receipt();
    }

    int step() const { return step_; }
    const QString& title() const { return title_; }

private:
    void begin(const QString& title) {
        ++step_;
        title_ = title;
        out_ << "\n" << step_ << ". " << title << "\n";
    }
    void say(const QString& text) { out_ << "   " << text << "\n"; }

    static void check(bool ok, const QString& what) {
        if (!ok)
            throw Failure{what};
    }
    static void checkText(const QString& what, const QString& actual, const QString& wanted) {
        check(actual == wanted,
              QStringLiteral("%1: expected \"%2\", got \"%3\"").arg(what, wanted, actual));
    }
    static void checkNumber(const QString& what, double actual, double wanted) {
        check(actual == wanted, QStringLiteral("%1: expected %2, got %3")
                                    .arg(what, QString::number(wanted), QString::number(actual)));
    }
    static void checkAmount(const QString& what, double actual, Cents wanted) {
        check(std::isfinite(actual) && std::fabs(actual) < 1e12 &&
                  emulator::toCents(actual) == wanted,
              QStringLiteral("%1: expected %2, got %3")
                  .arg(what, formatCents(wanted), amount(actual)));
    }

    // Calls an operation that must be refused with `code`.
    template <class Call>
    void checkRefused(const QString& what, int code, Call call) {
        try {
            call();
        } catch (const NetworkException&) {
            throw;
        } catch (const Exception& e) {
            check(e.code() == code, QStringLiteral("%1: expected a refusal with code %2, got "
                                                   "code %3 (%4)")
                                        .arg(what)
                                        .arg(code)
                                        .arg(e.code())
                                        .arg(QString::fromUtf8(e.what())));
            say(QStringLiteral("%1: refused as it must be, code %2: %3")
                    .arg(what)
                    .arg(e.code())
                    .arg(QString::fromUtf8(e.what())));
            return;
        }
        throw Failure{QStringLiteral("%1: expected a refusal with code %2, but it was accepted")
                          .arg(what)
                          .arg(code)};
    }

    QList<disc::LinesEntryRequest> discountLines() const {
        QList<disc::LinesEntryRequest> lines;
        for (int i = 0; i < lineCount; ++i) {
            disc::LinesEntryRequest line;
            line.barcode = QLatin1String(goods[i].barcode);
            line.skuId = QLatin1String(goods[i].skuId);
            line.lineNum = i + 1;
            line.locationId = QLatin1String(section);
            line.retailPrice = emulator::fromCents(goods[i].price);
            line.qty = goods[i].qty;
            lines.append(line);
        }
        return lines;
    }

    static QList<disc::CardListEntry> discountCards() { return seed::discountCards(); }

    // The cheque's lines for the loyalty service at these line amounts.
    QList<loyalty::LinesEntry>
    loyaltyLines(const Cents (&amounts)[lineCount],
                 const QList<disc::LinesEntryResponse>& discounts) const {
        QList<loyalty::LinesEntry> lines;
        for (int i = 0; i < lineCount; ++i) {
            loyalty::LinesEntry line;
            line.barCode = QLatin1String(goods[i].barcode);
            line.lineNum = i + 1;
            line.basePrice = emulator::fromCents(goods[i].price);
            line.price = emulator::fromCents(goods[i].price);
            line.qty = goods[i].qty;
            line.salesPrice = emulator::fromCents(amounts[i]) / goods[i].qty;
            for (const disc::DiscountsEntryResponse& given : discounts.value(i).discounts) {
                loyalty::DiscountsEntry discount;
                discount.discId = given.discId;
                discount.complectId = given.complectId;
                discount.discAmount = emulator::fromCents(discountOf(given));
                discount.discQty = given.discQty;
                discount.publicityName = given.description;
                line.discounts.append(discount);
            }
            lines.append(line);
        }
        return lines;
    }

    static QList<loyalty::CardListEntry> loyaltyCards(Cents requested) {
        return seed::loyaltyCards(emulator::fromCents(requested));
    }

    const loyalty::AccountsEntry& bonusAccountIn(const QList<loyalty::CardListEntry>& cards) {
        for (const loyalty::CardListEntry& card : cards)
            if (card.card == QLatin1String(goldCard))
                for (const loyalty::AccountsEntry& account : card.accounts)
                    if (account.codeAccount == bonusAccount)
                        return account;
        throw Failure{QStringLiteral("the reply has no bonus account for the card")};
    }

    static Cents accrualOf(const QList<loyalty::LinesEntry>& lines) {
        Cents sum = 0;
        for (const loyalty::LinesEntry& line : lines)
            sum += std::llround(line.bonusUnit.value_or(0) * line.qty * 100.0);
        return sum;
    }

    void scan() {
        begin(QStringLiteral("Scan the goods (sales: itemInfo)"));
        for (const Good& good : goods) {
            sales::ItemInfoRequest request;
            request.sectionId = QLatin1String(section);
            request.barcode = QLatin1String(good.barcode);
            auto call = sales::Api::getInstance()->itemInfo(request);
            const sales::ItemInfoResponse& item = call.response();
            say(QStringLiteral("%1  %2  %3  %4")
                    .arg(item.barcode, item.name.leftJustified(22),
                         formatCents(emulator::toCents(item.price)).rightJustified(8), item.skuId));
            checkText(QStringLiteral("name of %1").arg(good.barcode), item.name,
                      QLatin1String(good.name));
            checkAmount(QStringLiteral("price of %1").arg(good.barcode), item.price, good.price);
            checkText(QStringLiteral("skuId of %1").arg(good.barcode), item.skuId,
                      QLatin1String(good.skuId));
        }
    }

    void reserve() {
        begin(QStringLiteral("Reserve the goods of cheque %1 (sales: reserveCheque)").arg(cheque_));
        sales::ReserveChequeRequest request;
        request.chequeId = cheque_;
        request.storeId = QLatin1String(storeId);
        for (int i = 0; i < lineCount; ++i) {
            sales::ReserveLinesEntryRequest line;
            line.barcode = QLatin1String(goods[i].barcode);
            line.sectionId = QLatin1String(section);
            line.skuId = QLatin1String(goods[i].skuId);
            line.lineNum = i + 1;
            line.qty = goods[i].qty;
            request.lines.append(line);
        }
        auto call = sales::Api::getInstance()->reserveCheque(request);
        const sales::ReserveChequeResponse& reply = call.response();
        checkText(QStringLiteral("chequeId"), reply.chequeId, cheque_);
        checkNumber(QStringLiteral("number of lines"), reply.lines.size(), lineCount);
        for (int i = 0; i < lineCount; ++i) {
            const sales::ReserveLinesEntryResponse& line = reply.lines[i];
            say(QStringLiteral("line %1: %2 x %3 reserved in %4%5")
                    .arg(line.lineNum)
                    .arg(line.qty)
                    .arg(line.barcode, line.sectionId,
                         line.existWithoutReservation
                             ? QStringLiteral(" (") +
                                   line.withoutReservationMessage.value_or(QString()) +
                                   QLatin1Char(')')
                             : QString()));
            check(!line.existWithoutReservation,
                  QStringLiteral("line %1 is short of stock: %2 (an emulator whose stock earlier "
                                 "runs used up? restart it)")
                      .arg(line.lineNum)
                      .arg(line.withoutReservationMessage.value_or(QString())));
            checkNumber(QStringLiteral("line %1 reserved").arg(i + 1), line.qty, goods[i].qty);
        }
    }

    void identify() {
        begin(QStringLiteral("Identify the loyalty card (loyalty: processId)"));
        loyalty::ProcessIdRequest request;
        request.chequeId = cheque_;
        request.discCardId = QLatin1String(goldCard);
        request.shopNum = shopNum;
        request.placeId = QLatin1String(placeId);
        auto call = loyalty::Api::getInstance()->processId(request);
        const loyalty::ProcessIdResponse& reply = call.response();
        say(QStringLiteral("card %1: %2, %3 card, PIN %4, token %5")
                .arg(reply.discCardId, reply.clientFIO, reply.discCardTypeId,
                     reply.identityIsRequired ? QStringLiteral("required")
                                              : QStringLiteral("not required"),
                     reply.token));
        checkText(QStringLiteral("clientFIO"), reply.clientFIO, QLatin1String(holder));
        checkText(QStringLiteral("discCardTypeId"), reply.discCardTypeId, QStringLiteral("GOLD"));
        checkNumber(QStringLiteral("identityIsRequired"), reply.identityIsRequired, 1);
        check(!reply.token.isEmpty(), QStringLiteral("no token was issued"));
        token_ = reply.token;
    }

    void confirmPin() {
        begin(QStringLiteral("Confirm the holder's PIN (loyalty: processPin, checkPin)"));
        loyalty::ProcessPinRequest pin;
        pin.discCardId = QLatin1String(goldCard);
        pin.token = token_;
        auto sent = loyalty::Api::getInstance()->processPin(pin);
        const loyalty::ProcessPinResponse& reply = sent.response();
        say(QStringLiteral("PIN sent: %1 (%2)").arg(reply.pinCodeSended).arg(reply.retMessage));
        checkNumber(QStringLiteral("pinCodeSended"), reply.pinCodeSended, 1);
        checkNumber(QStringLiteral("showPinField"), reply.showPinField, 1);
        checkText(QStringLiteral("phone"), reply.phone, QLatin1String(maskedPhone));

        loyalty::CheckPinRequest check;
        check.chequeId = cheque_;
        check.discCardId = QLatin1String(goldCard);
        check.shopNum = shopNum;
        check.token = token_;
        check.pinCode = QStringLiteral("0000");
        checkRefused(QStringLiteral("PIN 0000"), 3003,
                     [&] { loyalty::Api::getInstance()->checkPin(check).response(); });
        check.pinCode = QLatin1String(rightPin);
        auto confirmed = loyalty::Api::getInstance()->checkPin(check);
        say(QStringLiteral("PIN %1: correctPin %2 (%3)")
                .arg(QLatin1String(rightPin))
                .arg(confirmed.response().correctPin)
                .arg(confirmed.response().retMessage));
        checkNumber(QStringLiteral("correctPin"), confirmed.response().correctPin, 1);
    }

    void balance() {
        begin(QStringLiteral("Card balance (loyalty: getCardBalance)"));
        loyalty::CardBalanceRequest request;
        request.discCardId = QLatin1String(goldCard);
        request.token = token_;
        auto call = loyalty::Api::getInstance()->getCardBalance(request);
        say(QStringLiteral("balance %1").arg(amount(call.response().balance)));
        startBalance_ = emulator::toCents(call.response().balance);
        if (!external_)
            checkAmount(QStringLiteral("balance"), call.response().balance, expected::startBalance);
    }

    void discounts() {
        begin(QStringLiteral("Discounts (disc: discCalc)"));
        disc::DiscCalcRequest request;
        request.cardList = discountCards();
        request.chequeId = cheque_;
        request.calcDateTime = QLatin1String(saleTime);
        request.lines = discountLines();
        request.salesChannel = 1;
        request.storeId = QLatin1String(storeId);
        auto call = disc::Api::getInstance()->discCalc(request);
        calc_ = call.response();
        checkNumber(QStringLiteral("number of lines"), calc_.lines.size(), lineCount);
        Cents all = 0;
        for (int i = 0; i < lineCount; ++i) {
            Cents line = 0;
            for (const disc::DiscountsEntryResponse& d : calc_.lines[i].discounts) {
                say(QStringLiteral("line %1: %2 %3 x %4 = %5")
                        .arg(calc_.lines[i].lineNum)
                        .arg(d.discId, amount(d.discUnit))
                        .arg(d.discQty)
                        .arg(formatCents(discountOf(d))));
                const Cents unit = emulator::toCents(d.discUnit);
                if (d.discId == QLatin1String("CARD-GOLD-5")) {
                    checkAmount(QStringLiteral("line %1 card discount").arg(i + 1), d.discUnit,
                                expected::cardUnit[i]);
                    checkNumber(QStringLiteral("line %1 card discount qty").arg(i + 1), d.discQty,
                                goods[i].qty);
                } else if (d.discId == QLatin1String("SET-COFFEE-MUG")) {
                    checkAmount(QStringLiteral("line %1 set discount").arg(i + 1), d.discUnit,
                                expected::setUnit[i]);
                    checkNumber(QStringLiteral("line %1 set discount qty").arg(i + 1), d.discQty,
                                1);
                    checkNumber(QStringLiteral("line %1 complectId").arg(i + 1), d.complectId, 7);
                } else {
                    check(false, QStringLiteral("line %1: unexpected discount %2 of %3")
                                     .arg(i + 1)
                                     .arg(d.discId, formatCents(unit)));
                }
                line += discountOf(d);
            }
            checkAmount(QStringLiteral("line %1 discounts").arg(i + 1), emulator::fromCents(line),
                        expected::lineDiscounts[i]);
            all += line;
        }
        checkAmount(QStringLiteral("all discounts"), emulator::fromCents(all), expected::discounts);
        say(QStringLiteral("subtotal %1, discounts %2, to pay %3")
                .arg(formatCents(expected::subtotal), formatCents(all),
                     formatCents(expected::subtotal - all)));
    }

    void promotions() {
        begin(QStringLiteral("Promotions on offer (disc: getPublicityList)"));
        disc::GetPublicityListRequest request;
        request.cardList = discountCards();
        request.dataId = cheque_;
        request.dateTime = QLatin1String(saleTime);
        request.lines = discountLines();
        request.salesChannel = 1;
        request.shopNum = shopNum;
        request.token = token_;
        auto call = disc::Api::getInstance()->getPublicityList(request);
        const disc::GetPublicityListResponse& reply = call.response();
        QStringList variants;
        for (const disc::VariantsEntry& variant : reply.variants) {
            QStringList ids;
            for (const disc::PublicitiesEntry& p : variant.publicities) {
                ids.append(p.publicityId);
                say(QStringLiteral("variant %1: %2 (%3%)")
                        .arg(variant.variantNum)
                        .arg(p.publicityName)
                        .arg(p.publicityAmount));
            }
            variants.append(ids.join(QLatin1Char('+')));
        }
        checkText(QStringLiteral("variants"), variants.join(QStringLiteral(" | ")),
                  QStringLiteral("CARD-GOLD-5+SET-COFFEE-MUG | "
                                 "CARD-GOLD-5+SET-COFFEE-MUG+PAY-BANKCARD-3"));
    }

    // The two bonus requests are records of their own that begin with the
    // same members: the cheque, its card with the bonuses to pay, its lines.
    template <class Request>
    Request bonusRequest(Cents bonusesToPay) const {
        Request request;
        request.cardList = loyaltyCards(bonusesToPay);
        request.lines = loyaltyLines(expected::net, calc_.lines);
        request.dataId = cheque_;
        request.dateTime = QLatin1String(saleTime);
        request.orderDateTime = QLatin1String(saleTime);
        request.placeId = QLatin1String(placeId);
        request.salesChannel = 1;
        request.shopNum = shopNum;
        request.token = token_;
        return request;
    }

    void calculateBonuses() {
        begin(QStringLiteral("Bonus calculation (loyalty: calcBonusAmount)"));
        const auto request = bonusRequest<loyalty::CalcBonusAmountRequest>(0);
        auto call = loyalty::Api::getInstance()->calcBonusAmount(request);
        const loyalty::CalcBonusAmountResponse& reply = call.response();
        const loyalty::AccountsEntry& account = bonusAccountIn(reply.cardList);
        const Cents accrual = accrualOf(reply.lines);
        say(QStringLiteral("balance %1, bonuses may pay up to %2, the cheque accrues %3")
                .arg(amount(account.balance.value_or(-1)), amount(account.maxPay.value_or(-1)),
                     formatCents(accrual)));
        checkAmount(QStringLiteral("maxPay"), account.maxPay.value_or(-1),
                    std::min(startBalance_, expected::netTotal / 2));
        checkAmount(QStringLiteral("accrual"), emulator::fromCents(accrual), expected::calcAccrual);
        checkNumber(QStringLiteral("tokenCorrectness"), reply.tokenCorrectness, 1);
    }

    void reserveBonuses() {
        begin(QStringLiteral("Reserve %1 bonuses (loyalty: calcAndReserveBonusPay)")
                  .arg(formatCents(bonusesToPay)));
        const auto request = bonusRequest<loyalty::CalcAndReserveBonusPayRequest>(bonusesToPay);
        auto call = loyalty::Api::getInstance()->calcAndReserveBonusPay(request);
        const loyalty::CalcAndReserveBonusPayResponse& reply = call.response();
        const loyalty::AccountsEntry& account = bonusAccountIn(reply.cardList);
        say(QStringLiteral("reserved %1; the cheque now accrues %2")
                .arg(amount(account.confirmedAmount.value_or(-1)),
                     formatCents(accrualOf(reply.lines))));
        checkAmount(QStringLiteral("confirmedAmount"), account.confirmedAmount.value_or(-1),
                    bonusesToPay);
        checkAmount(QStringLiteral("accrual"), emulator::fromCents(accrualOf(reply.lines)),
                    expected::reservedAccrual);
        checkNumber(QStringLiteral("number of lines"), reply.lines.size(), lineCount);
        for (int i = 0; i < lineCount; ++i) {
            double share = -1;
            for (const loyalty::DiscountsEntry& d : reply.lines[i].discounts)
                if (d.codeAccount == bonusAccount)
                    share = d.discAmount.value_or(-1);
            say(QStringLiteral("line %1: %2 paid with bonuses").arg(i + 1).arg(amount(share)));
            checkAmount(QStringLiteral("line %1 bonus share").arg(i + 1), share,
                        expected::bonusShares[i]);
        }
    }

    void discountsWithPayments() {
        begin(QStringLiteral("Discounts with the payments (disc: discCalcPay)"));
        disc::DiscCalcPayRequest request;
        request.cardList = discountCards();
        request.chequeId = cheque_;
        request.calcDateTime = QLatin1String(saleTime);
        request.lines = discountLines();
        disc::PaymentsEntryRequest card;
        card.payLineNum = 1;
        card.code = bankCardCode;
        card.amount = emulator::fromCents(bankCardPayment);
        disc::PaymentsEntryRequest bonuses;
        bonuses.payLineNum = 2;
        bonuses.code = bonusCode;
        bonuses.amount = emulator::fromCents(bonusesToPay);
        request.payments = {card, bonuses};
        request.salesChannel = 1;
        request.storeId = QLatin1String(storeId);
        auto call = disc::Api::getInstance()->discCalcPay(request);
        calcPay_ = call.response();
        checkNumber(QStringLiteral("number of payments"), calcPay_.payments.size(), 2);
        for (const disc::PaymentsEntryResponse& p : calcPay_.payments)
            say(QStringLiteral("payment %1 (code %2): %3, discount %4, to pay %5")
                    .arg(p.payLineNum)
                    .arg(p.code)
                    .arg(amount(p.amount), amount(p.discAmount), amount(p.payAmount)));
        checkAmount(QStringLiteral("bank card discount"), calcPay_.payments[0].discAmount,
                    expected::paymentDiscount);
        checkAmount(QStringLiteral("bank card to pay"), calcPay_.payments[0].payAmount,
                    expected::bankCardToPay);
        checkAmount(QStringLiteral("bonuses discount"), calcPay_.payments[1].discAmount, 0);
        checkAmount(QStringLiteral("bonuses to pay"), calcPay_.payments[1].payAmount, bonusesToPay);
        checkNumber(QStringLiteral("number of lines"), calcPay_.lines.size(), lineCount);
        Cents all = 0;
        for (int i = 0; i < lineCount; ++i) {
            Cents line = 0;
            Cents payment = 0;
            for (const disc::DiscountsEntryResponse& d : calcPay_.lines[i].discounts) {
                line += discountOf(d);
                if (d.payLineNum.value_or(0) == 1)
                    payment += discountOf(d);
            }
            say(QStringLiteral("line %1: %2 of the payment discount")
                    .arg(i + 1)
                    .arg(formatCents(payment)));
            checkAmount(QStringLiteral("line %1 payment discount").arg(i + 1),
                        emulator::fromCents(payment), expected::paymentShares[i]);
            finalAmounts_[i] = emulator::lineAmount(goods[i].price, goods[i].qty) - line;
            all += line;
        }
        checkAmount(QStringLiteral("cheque total"), emulator::fromCents(expected::subtotal - all),
                    expected::total);
        say(QStringLiteral("cheque total %1").arg(formatCents(expected::subtotal - all)));
    }

    void commit() {
        begin(QStringLiteral("Commit the cheque (loyalty: commitCheque)"));
        loyalty::CommitChequeRequest request;
        request.cardList = loyaltyCards(bonusesToPay);
        request.dataId = cheque_;
        request.dateTime = QLatin1String(saleTime);
        request.lines = loyaltyLines(finalAmounts_, calcPay_.lines);
        request.online = 1;
        request.orderDateTime = QLatin1String(saleTime);
        loyalty::PaymentsEntry card;
        card.type = bankCardCode;
        card.amount = emulator::fromCents(expected::bankCardToPay);
        card.payment = QStringLiteral("bank card");
        loyalty::PaymentsEntry bonuses;
        bonuses.type = bonusCode;
        bonuses.amount = emulator::fromCents(bonusesToPay);
        bonuses.payment = QStringLiteral("bonuses");
        request.payments = {card, bonuses};
        request.placeId = QLatin1String(placeId);
        request.shopNum = shopNum;
        request.token = token_;
        request.totalAmount = emulator::fromCents(expected::total);
        auto call = loyalty::Api::getInstance()->commitCheque(request);
        commit_ = call.response();
        say(QStringLiteral("bonuses paid %1, accrued %2, total after bonuses %3")
                .arg(amount(commit_.discAmount), amount(commit_.bonusAmount),
                     amount(commit_.totalAmountAfterKs)));
        for (const loyalty::SlipsEntry& slip : commit_.slips)
            say(QStringLiteral("slip: %1")
                    .arg(QString(slip.chequeMessage)
                             .replace(QLatin1Char('\n'), QStringLiteral(" / "))));
        checkAmount(QStringLiteral("discAmount (bonuses paid)"), commit_.discAmount, bonusesToPay);
        checkAmount(QStringLiteral("bonusAmount (accrued)"), commit_.bonusAmount,
                    expected::accrual);
        checkAmount(QStringLiteral("totalAmountAfterKs"), commit_.totalAmountAfterKs,
                    expected::bankCardToPay);
        const Cents balanceAfter = startBalance_ - bonusesToPay + expected::accrual;
        checkAmount(QStringLiteral("balance after the commit"),
                    bonusAccountIn(commit_.cardList).balance.value_or(-1), balanceAfter);
        checkNumber(QStringLiteral("number of slips"), commit_.slips.size(), 1);
        checkText(QStringLiteral("slip"), commit_.slips[0].chequeMessage,
                  QStringLiteral("Loyalty card ****0011\nBonuses paid: 327.50\nBonuses accrued: "
                                 "48.50\nBalance: %1")
                      .arg(formatCents(balanceAfter)));

        loyalty::CardBalanceRequest balance;
        balance.discCardId = QLatin1String(goldCard);
        balance.token = token_;
        auto booked = loyalty::Api::getInstance()->getCardBalance(balance);
        say(QStringLiteral("balance now %1").arg(amount(booked.response().balance)));
        checkAmount(QStringLiteral("booked balance"), booked.response().balance, balanceAfter);
        balanceAfter_ = balanceAfter;

        // A till that cannot tell whether its commit got through sends it
        // again: it gets the first answer, and nothing is booked twice.
        auto again = loyalty::Api::getInstance()->commitCheque(request);
        checkAmount(QStringLiteral("the same cheque again: bonusAmount"),
                    again.response().bonusAmount, expected::accrual);
        auto rebooked = loyalty::Api::getInstance()->getCardBalance(balance);
        checkAmount(QStringLiteral("balance after the same cheque again"),
                    rebooked.response().balance, balanceAfter);
        say(QStringLiteral("the same cheque again: the first answer, balance still %1")
                .arg(amount(rebooked.response().balance)));
    }

    void parking() {
        begin(QStringLiteral("Parking ticket %1 (loyalty: getParkingInfo)")
                  .arg(QLatin1String(parkingTicket)));
        loyalty::ParkingInfoRequest request;
        request.chequeId = cheque_;
        request.parkingId = QLatin1String(parkingTicket);
        request.storeId = QLatin1String(storeId);
        auto call = loyalty::Api::getInstance()->getParkingInfo(request);
        parking_ = call.response();
        const QDateTime entry = parking_.parkingDateTimeEntry.toDateTime();
        const QDateTime end = parking_.parkingDateTimePrivilegeEnd.toDateTime();
        say(QStringLiteral("%1: entered %2, %3 free hours until %4; parking %5, off %6, to pay %7")
                .arg(parking_.parkingValidateStatus,
                     entry.toString(QStringLiteral("yyyy-MM-dd HH:mm")))
                .arg(parking_.parkingDiscHours)
                .arg(end.toString(QStringLiteral("HH:mm")), amount(parking_.parkingTotalAmount),
                     amount(parking_.parkingDiscAmount), amount(parking_.parkingPayAmount)));
        checkText(QStringLiteral("status"), parking_.parkingValidateStatus,
                  QStringLiteral("VALIDATED"));
        checkNumber(QStringLiteral("free hours"), parking_.parkingDiscHours,
                    expected::parkingHours);
        checkAmount(QStringLiteral("parking total"), parking_.parkingTotalAmount,
                    expected::parkingTotal);
        checkAmount(QStringLiteral("parking discount"), parking_.parkingDiscAmount,
                    expected::parkingDiscount);
        checkAmount(QStringLiteral("parking to pay"), parking_.parkingPayAmount,
                    expected::parkingToPay);
        checkText(QStringLiteral("entry"), entry.toString(Qt::ISODate),
                  QStringLiteral("2026-11-20T09:30:00"));
        checkText(QStringLiteral("free until"), end.toString(Qt::ISODate),
                  QStringLiteral("2026-11-20T11:30:00"));
    }

    void texts() {
        begin(
            QStringLiteral("Texts for the cashier and the cheque (loyalty: cashierAdditionalInfo, "
                           "chequeAdditionalInfo)"));
        loyalty::AdditionalInfoRequest request;
        request.chequeId = cheque_;
        request.discCardId = QLatin1String(goldCard);
        request.token = token_;
        auto cashier = loyalty::Api::getInstance()->cashierAdditionalInfo(request);
        auto cheque = loyalty::Api::getInstance()->chequeAdditionalInfo(request);
        cashierText_ = cashier.response().cashierText;
        chequeText_ = cheque.response().chequeText;
        say(QStringLiteral("cashier: %1").arg(cashierText_));
        say(QStringLiteral("cheque: %1").arg(chequeText_));
        checkText(QStringLiteral("cashier text"), cashierText_,
                  QStringLiteral("Anna Petrova, GOLD card ****0011: %1 bonuses available.")
                      .arg(formatCents(balanceAfter_)));
        checkText(QStringLiteral("cheque text"), chequeText_,
                  QStringLiteral("Thank you, Anna Petrova! Bonuses paid: 327.50, accrued: 48.50. "
                                 "Balance: %1.")
                      .arg(formatCents(balanceAfter_)));
    }

    void releaseSecondCheque() {
        begin(QStringLiteral("Second cheque %1: reserve two teapots, then release them (sales: "
                             "reserveCheque, unreserveCheque)")
                  .arg(secondCheque_));
        sales::ReserveChequeRequest request;
        request.chequeId = secondCheque_;
        request.storeId = QLatin1String(storeId);
        sales::ReserveLinesEntryRequest line;
        line.barcode = QLatin1String(teapot);
        line.sectionId = QLatin1String(section);
        line.lineNum = 1;
        line.qty = 2;
        request.lines = {line};
        auto call = sales::Api::getInstance()->reserveCheque(request);
        const sales::ReserveChequeResponse& reply = call.response();
        checkNumber(QStringLiteral("number of lines"), reply.lines.size(), 1);
        const sales::ReserveLinesEntryResponse& reserved = reply.lines[0];
        say(QStringLiteral("reserved %1 of 2; %2")
                .arg(reserved.qty)
                .arg(reserved.withoutReservationMessage.value_or(QStringLiteral("all in stock"))));
        checkNumber(QStringLiteral("existWithoutReservation"), reserved.existWithoutReservation, 1);
        checkNumber(QStringLiteral("reserved and not reserved"),
                    reserved.qty + reserved.qtyWithoutReservation.value_or(-1), 2);
        if (!external_) {
            checkNumber(QStringLiteral("reserved"), reserved.qty, 1);
            checkText(QStringLiteral("message"),
                      reserved.withoutReservationMessage.value_or(QString()),
                      QStringLiteral("Only 1 of 2 of \"Teapot, 0.8 l\" in stock in section HALL: 1 "
                                     "not reserved"));
        }

        sales::UnreserveChequeRequest release;
        release.chequeId = secondCheque_;
        auto released = sales::Api::getInstance()->unreserveCheque(release);
        say(QStringLiteral("released cheque %1").arg(released.response().chequeId));
        checkText(QStringLiteral("released chequeId"), released.response().chequeId, secondCheque_);
        checkRefused(QStringLiteral("releasing it again"), 1002,
                     [&] { sales::Api::getInstance()->unreserveCheque(release).response(); });
    }

    void receipt() {
        const QString rule(44, QLatin1Char('-'));
        out_ << "\n" << QString(44, QLatin1Char('=')) << "\n";
        out_ << pad(QStringLiteral("RECEIPT  store %1").arg(QLatin1String(storeId)), cheque_)
             << "\n";
        out_ << rule << "\n";
        Cents discountsTotal = 0;
        for (int i = 0; i < lineCount; ++i) {
            out_ << (i + 1) << " " << goods[i].name << "\n";
            out_ << pad(QStringLiteral("    %1 x %2")
                            .arg(goods[i].qty)
                            .arg(formatCents(goods[i].price)),
                        formatCents(emulator::lineAmount(goods[i].price, goods[i].qty)))
                 << "\n";
            for (const disc::DiscountsEntryResponse& d : calcPay_.lines[i].discounts) {
                out_ << pad(QStringLiteral("    ") + d.description, formatCents(-discountOf(d)))
                     << "\n";
                discountsTotal += discountOf(d);
            }
        }
        out_ << rule << "\n";
        out_ << pad(QStringLiteral("Subtotal"), formatCents(expected::subtotal)) << "\n";
        out_ << pad(QStringLiteral("Discounts"), formatCents(-discountsTotal)) << "\n";
        out_ << pad(QStringLiteral("TOTAL"), formatCents(expected::subtotal - discountsTotal))
             << "\n";
        out_ << pad(QStringLiteral("Paid by bank card"), amount(calcPay_.payments[0].payAmount))
             << "\n";
        out_ << pad(QStringLiteral("Paid with bonuses"), amount(calcPay_.payments[1].payAmount))
             << "\n";
        out_ << rule << "\n";
        out_ << pad(QStringLiteral("Loyalty card ****0011"), QLatin1String(holder)) << "\n";
        out_ << pad(QStringLiteral("Bonuses accrued"), amount(commit_.bonusAmount)) << "\n";
        out_ << pad(QStringLiteral("Bonus balance"), formatCents(balanceAfter_)) << "\n";
        out_ << QStringLiteral("Parking %1: %2 free hours")
                    .arg(parking_.parkingId)
                    .arg(parking_.parkingDiscHours)
             << "\n";
        out_ << pad(QStringLiteral("Parking to pay"), amount(parking_.parkingPayAmount)) << "\n";
        out_ << rule << "\n";
        for (const QString& line : wrap(chequeText_))
            out_ << line << "\n";
        out_ << QString(44, QLatin1Char('=')) << "\n";
    }

    QTextStream& out_;
    bool external_;
    QString cheque_;
    QString secondCheque_;
    int step_ = 0;
    QString title_;

    QString token_;
    Cents startBalance_ = 0;
    Cents balanceAfter_ = 0;
    Cents finalAmounts_[lineCount] = {};
    disc::DiscCalcResponse calc_;
    disc::DiscCalcPayResponse calcPay_;
    loyalty::CommitChequeResponse commit_;
    loyalty::ParkingInfoResponse parking_;
    QString cashierText_;
    QString chequeText_;
};

} // namespace

int runWholeSale(const Options& options, QTextStream& out) {
    out << "A whole sale through the library's clients\n";
    std::optional<Bench> bench = openBench(options, out);
    if (!bench)
        return 1;
    const QString& base = bench->base;
    const bool fresh = bench->fresh;

    Sale sale(out, !fresh);
    int result = 0;
    try {
        sale.run();
        out << "\nEvery step behaved as the seed says.\n";
    } catch (const Failure& failure) {
        out << "\nFAILED at step " << sale.step() << " (" << sale.title()
            << "): " << failure.message << "\n";
        result = 1;
    } catch (const NetworkException& e) {
        out << "\nFAILED at step " << sale.step() << " (" << sale.title() << "): no answer from "
            << base << ": " << QString::fromUtf8(e.what()) << "\n";
        result = 1;
    } catch (const Exception& e) {
        out << "\nFAILED at step " << sale.step() << " (" << sale.title()
            << "): the service refused with code " << e.code() << ": "
            << QString::fromUtf8(e.what()) << "\n";
        result = 1;
    }
    if (result != 0 && !fresh)
        out << "The expected numbers are those of an emulator fresh from the shipped seed: "
               "restart it (without --db) and run again.\n";
    out.flush();
    if (bench->inProcess)
        bench->inProcess->stop();
    return result;
}

} // namespace vesk::demo
