#include "BenchScenario.h"

#include <demo/SeedSale.h>

#include <vesk/Exception.h>
#include <vesk/NetworkException.h>
#include <vesk/disc/Api.h>
#include <vesk/loyalty/Api.h>
#include <vesk/sales/Api.h>

#include <chrono>

namespace vesk::cli {
namespace {

// The sale, in terms of the shipped seed: one pack of coffee on the GOLD
// card, one bonus paid, the rest by bank card. Each sale accrues more
// bonuses than it pays, so that a long run never runs the card dry; the
// reservation is released at the end, so that the stock does not run out.
using demo::seed::bankCardCode;
using demo::seed::bonusCode;
using demo::seed::discountCards;
using demo::seed::goldCard;
using demo::seed::loyaltyCards;
using demo::seed::saleTime;
using demo::seed::shopNum;
using demo::seed::storeId;
const char* const section = "WAREHOUSE";
const char* const placeId = "S01-BENCH";
const char* const coffee = "4601234000017";
const char* const coffeeSku = "SKU-COF-1KG";
constexpr double coffeePrice = 1200.0;
constexpr double bonusesToPay = 1.0;

QList<disc::LinesEntryRequest> discountLines() {
    disc::LinesEntryRequest line;
    line.barcode = QLatin1String(coffee);
    line.skuId = QLatin1String(coffeeSku);
    line.lineNum = 1;
    line.locationId = QLatin1String(section);
    line.retailPrice = coffeePrice;
    line.qty = 1;
    return {line};
}

QList<loyalty::LinesEntry> loyaltyLines() {
    loyalty::LinesEntry line;
    line.barCode = QLatin1String(coffee);
    line.lineNum = 1;
    line.basePrice = coffeePrice;
    line.price = coffeePrice;
    line.qty = 1;
    line.salesPrice = coffeePrice;
    return {line};
}

template <class Request>
Request bonusRequest(const QString& cheque, const QString& token, double requested) {
    Request request;
    request.cardList = loyaltyCards(requested);
    request.lines = loyaltyLines();
    request.dataId = cheque;
    request.dateTime = QLatin1String(saleTime);
    request.orderDateTime = QLatin1String(saleTime);
    request.placeId = QLatin1String(placeId);
    request.salesChannel = 1;
    request.shopNum = shopNum;
    request.token = token;
    return request;
}

// The steps of one sale, each call through the same client.
class Sale {
public:
    Sale(const QSharedPointer<RecordingClient>& client, const QString& cheque,
         const BenchRecorder& record)
        : client_(client)
        , cheque_(cheque)
        , record_(record) {}

    bool run() {
        const bool done = scanAndReserve() && loyaltyAndDiscounts() && commitAndAfter();
        // The stock goes back whatever happened.
        release();
        return done && ok_;
    }

private:
    // Performs `call` (a prepared request) through the client; its reply, or
    // nothing when it failed.
    template <class Response>
    std::optional<Response> perform(PreparedRequest<Response> call) {
        call.client = client_;
        std::optional<Response> reply;
        const BenchCall timed = timeCall([&] { reply = call.response(); });
        record_(timed);
        if (timed.failed()) {
            ok_ = false;
            return std::nullopt;
        }
        return reply;
    }

    bool scanAndReserve() {
        sales::ItemInfoRequest item;
        item.sectionId = QLatin1String(section);
        item.barcode = QLatin1String(coffee);
        if (!perform(sales::Api::getInstance()->itemInfo(item)))
            return false;
        sales::ReserveChequeRequest reserve;
        reserve.chequeId = cheque_;
        reserve.storeId = QLatin1String(storeId);
        sales::ReserveLinesEntryRequest line;
        line.barcode = QLatin1String(coffee);
        line.sectionId = QLatin1String(section);
        line.skuId = QLatin1String(coffeeSku);
        line.lineNum = 1;
        line.qty = 1;
        reserve.lines = {line};
        reserved_ = perform(sales::Api::getInstance()->reserveCheque(reserve)).has_value();
        return reserved_;
    }

    bool loyaltyAndDiscounts() {
        loyalty::ProcessIdRequest identify;
        identify.chequeId = cheque_;
        identify.discCardId = QLatin1String(goldCard);
        identify.shopNum = shopNum;
        identify.placeId = QLatin1String(placeId);
        const auto identified = perform(loyalty::Api::getInstance()->processId(identify));
        if (!identified)
            return false;
        token_ = identified->token;

        loyalty::ProcessPinRequest pin;
        pin.discCardId = QLatin1String(goldCard);
        pin.token = token_;
        loyalty::CheckPinRequest check;
        check.discCardId = QLatin1String(goldCard);
        check.token = token_;
        check.pinCode = QLatin1String(demo::seed::goldPin);
        loyalty::CardBalanceRequest balance;
        balance.discCardId = QLatin1String(goldCard);
        balance.token = token_;
        if (!perform(loyalty::Api::getInstance()->processPin(pin)) ||
            !perform(loyalty::Api::getInstance()->checkPin(check)) ||
            !perform(loyalty::Api::getInstance()->getCardBalance(balance)))
            return false;

        disc::DiscCalcRequest calc;
        calc.cardList = discountCards();
        calc.chequeId = cheque_;
        calc.calcDateTime = QLatin1String(saleTime);
        calc.lines = discountLines();
        calc.salesChannel = 1;
        calc.storeId = QLatin1String(storeId);
        disc::GetPublicityListRequest publicity;
        publicity.cardList = discountCards();
        publicity.dataId = cheque_;
        publicity.dateTime = QLatin1String(saleTime);
        publicity.lines = discountLines();
        publicity.salesChannel = 1;
        publicity.shopNum = shopNum;
        publicity.token = token_;
        return perform(disc::Api::getInstance()->discCalc(calc)) &&
               perform(disc::Api::getInstance()->getPublicityList(publicity)) &&
               perform(loyalty::Api::getInstance()->calcBonusAmount(
                   bonusRequest<loyalty::CalcBonusAmountRequest>(cheque_, token_, 0))) &&
               perform(loyalty::Api::getInstance()->calcAndReserveBonusPay(
                   bonusRequest<loyalty::CalcAndReserveBonusPayRequest>(cheque_, token_,
                                                                        bonusesToPay)));
    }

    bool commitAndAfter() {
        disc::DiscCalcPayRequest calcPay;
        calcPay.cardList = discountCards();
        calcPay.chequeId = cheque_;
        calcPay.calcDateTime = QLatin1String(saleTime);
        calcPay.lines = discountLines();
        disc::PaymentsEntryRequest card;
        card.payLineNum = 1;
        card.code = bankCardCode;
        card.amount = coffeePrice - bonusesToPay;
        disc::PaymentsEntryRequest bonuses;
        bonuses.payLineNum = 2;
        bonuses.code = bonusCode;
        bonuses.amount = bonusesToPay;
        calcPay.payments = {card, bonuses};
        calcPay.salesChannel = 1;
        calcPay.storeId = QLatin1String(storeId);
        if (!perform(disc::Api::getInstance()->discCalcPay(calcPay)))
            return false;

        loyalty::CommitChequeRequest commit;
        commit.cardList = loyaltyCards(bonusesToPay);
        commit.dataId = cheque_;
        commit.dateTime = QLatin1String(saleTime);
        commit.lines = loyaltyLines();
        commit.online = 1;
        commit.orderDateTime = QLatin1String(saleTime);
        loyalty::PaymentsEntry paidByCard;
        paidByCard.type = bankCardCode;
        paidByCard.amount = coffeePrice - bonusesToPay;
        paidByCard.payment = QStringLiteral("bank card");
        loyalty::PaymentsEntry paidByBonuses;
        paidByBonuses.type = bonusCode;
        paidByBonuses.amount = bonusesToPay;
        paidByBonuses.payment = QStringLiteral("bonuses");
        commit.payments = {paidByCard, paidByBonuses};
        commit.placeId = QLatin1String(placeId);
        commit.shopNum = shopNum;
        commit.token = token_;
        commit.totalAmount = coffeePrice;
        if (!perform(loyalty::Api::getInstance()->commitCheque(commit)))
            return false;

        loyalty::ParkingInfoRequest parking;
        parking.chequeId = cheque_;
        parking.parkingId = QLatin1String(demo::seed::parkingTicket);
        parking.storeId = QLatin1String(storeId);
        loyalty::AdditionalInfoRequest texts;
        texts.chequeId = cheque_;
        texts.discCardId = QLatin1String(goldCard);
        texts.token = token_;
        return perform(loyalty::Api::getInstance()->getParkingInfo(parking)) &&
               perform(loyalty::Api::getInstance()->cashierAdditionalInfo(texts)) &&
               perform(loyalty::Api::getInstance()->chequeAdditionalInfo(texts));
    }

    void release() {
        if (!reserved_)
            return;
        sales::UnreserveChequeRequest release;
        release.chequeId = cheque_;
        perform(sales::Api::getInstance()->unreserveCheque(release));
    }

    QSharedPointer<RecordingClient> client_;
    QString cheque_;
    const BenchRecorder& record_;
    QString token_;
    bool reserved_ = false;
    bool ok_ = true;
};

} // namespace

QString BenchCall::kind() const {
    const QString name = CallOutcome::name(failure).section(QLatin1String("::"), 1);
    return failure == CallOutcome::Failure::ServiceError
               ? name + QLatin1Char(' ') + QString::number(code)
               : name;
}

BenchCall timeCall(const std::function<void()>& call) {
    BenchCall timed;
    const auto started = std::chrono::steady_clock::now();
    try {
        call();
    } catch (const Exception& e) {
        timed.code = e.code();
    }
    timed.microseconds = std::chrono::duration_cast<std::chrono::microseconds>(
                             std::chrono::steady_clock::now() - started)
                             .count();
    timed.failure = lastCallOutcome().failure(); // this thread's call, just made
    return timed;
}

bool runWholeSaleCalls(const QSharedPointer<RecordingClient>& client, const QString& cheque,
                       const BenchRecorder& record) {
    return Sale(client, cheque, record).run();
}

} // namespace vesk::cli
