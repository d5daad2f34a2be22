// The loyalty service's rules against an in-memory store with the shipped seed.

#include "StoreFixture.h"

#include <emulator/LoyaltyService.h>

#include <future>
#include <thread>

namespace vesk::emulator::test {
namespace {

struct Line {
    QString barcode;
    double salesPrice;
    double qty;
};

// The sale of the demo after its discounts: 2160.00 + 382.50 + 285.00.
const QList<Line> netSale{{coffee, 1080, 2}, {mug, 382.5, 1}, {tea, 285, 1}};
// The same after the bank card's discount: 2102.71 + 372.35 + 277.44 = 2752.50.
const QList<Line> paidSale{{coffee, 1051.355, 2}, {mug, 372.35, 1}, {tea, 277.44, 1}};

class LoyaltyServiceTest : public StoreFixture {
protected:
    QString identify(const QString& card, const QString& cheque = QStringLiteral("A")) {
        loyalty::ProcessIdRequest request;
        request.chequeId = cheque;
        request.discCardId = card;
        return service.processId(request).token;
    }
    loyalty::ProcessPinResponse sendPin(const QString& card, const QString& token) {
        loyalty::ProcessPinRequest request;
        request.discCardId = card;
        request.token = token;
        return service.processPin(request);
    }
    loyalty::CheckPinResponse checkPin(const QString& card, const QString& token,
                                       std::optional<QString> pin) {
        loyalty::CheckPinRequest request;
        request.discCardId = card;
        request.token = token;
        request.pinCode = pin;
        return service.checkPin(request);
    }
    // The GOLD card identified with its PIN confirmed.
    QString goldWithPin() {
        const QString token = identify(goldCard);
        sendPin(goldCard, token);
        checkPin(goldCard, token, QStringLiteral("4321"));
        return token;
    }

    static QList<loyalty::LinesEntry> lines(const QList<Line>& given) {
        QList<loyalty::LinesEntry> result;
        int lineNum = 0;
        for (const Line& l : given) {
            loyalty::LinesEntry line;
            line.barCode = l.barcode;
            line.lineNum = ++lineNum;
            line.salesPrice = l.salesPrice;
            line.price = l.salesPrice;
            line.qty = l.qty;
            result.append(line);
        }
        return result;
    }
    static QList<loyalty::CardListEntry> cards(const QString& card, double requested) {
        loyalty::AccountsEntry account;
        account.codeAccount = 1;
        account.requestAmount = requested;
        loyalty::CardListEntry entry;
        entry.card = card;
        entry.accounts = {account};
        return {entry};
    }
    static const loyalty::AccountsEntry& bonusAccount(const QList<loyalty::CardListEntry>& list) {
        static const loyalty::AccountsEntry none;
        for (const loyalty::CardListEntry& card : list)
            for (const loyalty::AccountsEntry& account : card.accounts)
                if (account.codeAccount == 1)
                    return account;
        ADD_FAILURE() << "no bonus account";
        return none;
    }
    static Cents accrual(const QList<loyalty::LinesEntry>& given) {
        Cents sum = 0;
        for (const loyalty::LinesEntry& line : given)
            sum += std::llround(line.bonusUnit.value_or(0) * line.qty * 100);
        return sum;
    }

    loyalty::CalcBonusAmountResponse calc(const QString& card, const QString& token,
                                          const QList<Line>& given, double requested = 0) {
        loyalty::CalcBonusAmountRequest request;
        request.cardList = cards(card, requested);
        request.lines = lines(given);
        request.dataId = QStringLiteral("A");
        request.shopNum = 101;
        request.token = token;
        return service.calcBonusAmount(request);
    }
    loyalty::CalcAndReserveBonusPayResponse reserve(const QString& card, const QString& token,
                                                    const QList<Line>& given, double requested,
                                                    const QString& cheque = QStringLiteral("A")) {
        loyalty::CalcAndReserveBonusPayRequest request;
        request.cardList = cards(card, requested);
        request.lines = lines(given);
        request.dataId = cheque;
        request.dataIdReturned = QStringLiteral("R-1");
        request.shopNum = 101;
        request.token = token;
        return service.calcAndReserveBonusPay(request);
    }
    loyalty::CommitChequeRequest commitRequest(const QString& card, const QString& token,
                                               const QList<Line>& given, double total,
                                               const QString& cheque = QStringLiteral("A")) {
        loyalty::CommitChequeRequest request;
        if (!card.isEmpty())
            request.cardList = cards(card, 0);
        request.dataId = cheque;
        request.dateTime = QStringLiteral("2026-11-20T10:05:00");
        request.lines = lines(given);
        request.ksSources = 3;
        request.online = 1;
        request.placeId = QStringLiteral("S01-POS1");
        request.shopNum = 101;
        request.token = token;
        request.totalAmount = total;
        return request;
    }
    loyalty::ParkingInfoResponse parking(const QString& cheque, const QString& ticket) {
        loyalty::ParkingInfoRequest request;
        request.chequeId = cheque;
        request.parkingId = ticket;
        request.storeId = QStringLiteral("S01");
        return service.getParkingInfo(request);
    }

    LoyaltyService service{store, seed};
};

TEST_F(LoyaltyServiceTest, ProcessIdIdentifiesTheCardAndIssuesAToken) {
    loyalty::ProcessIdRequest request;
    request.chequeId = QStringLiteral("A");
    request.discCardId = goldCard;
    const loyalty::ProcessIdResponse gold = service.processId(request);
    EXPECT_EQ(gold.clientFIO, "Anna Petrova");
    EXPECT_EQ(gold.discCardId, goldCard);
    EXPECT_EQ(gold.discCardTypeId, "GOLD");
    EXPECT_EQ(gold.identityIsRequired, 1);
    EXPECT_EQ(gold.isLoyaltyCard, 1);
    EXPECT_EQ(gold.retCode, 0);
    EXPECT_EQ(gold.retMessage, "Card identified");
    EXPECT_EQ(gold.token, "T000001");

    request.discCardId = silverCard;
    const loyalty::ProcessIdResponse silver = service.processId(request);
    EXPECT_EQ(silver.clientFIO, "Boris Ivanov");
    EXPECT_EQ(silver.identityIsRequired, 0);
    EXPECT_EQ(silver.token, "T000002");
}

TEST_F(LoyaltyServiceTest, ProcessIdRefusesAnUnknownCard) {
    const ServiceError e = refusal([&] { identify(QStringLiteral("1234567899999")); });
    EXPECT_EQ(e.status(), 404);
    EXPECT_EQ(e.code(), 3001);
    EXPECT_EQ(e.userMsg(), "No loyalty card ****9999");
    const ServiceError empty = refusal([&] { identify(QString()); });
    EXPECT_EQ(empty.status(), 400);
    EXPECT_EQ(empty.code(), 3000);
    EXPECT_EQ(empty.userMsg(), "discCardId is empty");
}

TEST_F(LoyaltyServiceTest, ProcessPinSendsThePinToTheHoldersPhone) {
    const QString token = identify(goldCard);
    const loyalty::ProcessPinResponse reply = sendPin(goldCard, token);
    EXPECT_EQ(reply.phone, "+7 900 ***-**-67");
    EXPECT_EQ(reply.pinCodeSended, 1);
    EXPECT_EQ(reply.retCode, 0);
    EXPECT_EQ(reply.retMessage, "PIN sent to +7 900 ***-**-67");
    EXPECT_EQ(reply.showPinField, 1);
    EXPECT_EQ(reply.token, token);
    EXPECT_EQ(store.transaction([&] { return store.pinMessageCount(goldCard); }), 1);
    EXPECT_TRUE(store.transaction([&] { return store.token(token)->pinSent; }));
}

TEST_F(LoyaltyServiceTest, TokenOfAnotherCardIsRefused) {
    const QString silverToken = identify(silverCard);
    const ServiceError e = refusal([&] { sendPin(goldCard, silverToken); });
    EXPECT_EQ(e.status(), 401);
    EXPECT_EQ(e.code(), 3002);
    EXPECT_EQ(e.userMsg(), "The token is not valid for card ****0011: identify the card again");
    EXPECT_EQ(refusal([&] { sendPin(goldCard, QStringLiteral("T999999")); }).code(), 3002);
}

TEST_F(LoyaltyServiceTest, CheckPinConfirmsTheRightPin) {
    const QString token = identify(goldCard);
    sendPin(goldCard, token);
    const loyalty::CheckPinResponse reply = checkPin(goldCard, token, QStringLiteral("4321"));
    EXPECT_EQ(reply.correctPin, 1);
    EXPECT_EQ(reply.discCardId, goldCard);
    EXPECT_EQ(reply.retCode, 0);
    EXPECT_EQ(reply.retMessage, "PIN confirmed");
    EXPECT_TRUE(store.transaction([&] { return store.token(token)->pinConfirmed; }));
}

TEST_F(LoyaltyServiceTest, CheckPinRefusesAWrongPin) {
    const QString token = identify(goldCard);
    sendPin(goldCard, token);
    for (const std::optional<QString>& pin :
         {std::optional<QString>(QStringLiteral("0000")), std::optional<QString>(QString()),
          std::optional<QString>()}) {
        const ServiceError e = refusal([&] { checkPin(goldCard, token, pin); });
        EXPECT_EQ(e.status(), 403);
        EXPECT_EQ(e.code(), 3003);
        EXPECT_EQ(e.userMsg(), "Wrong PIN");
    }
    EXPECT_FALSE(store.transaction([&] { return store.token(token)->pinConfirmed; }));
}

TEST_F(LoyaltyServiceTest, CheckPinBeforeAPinWasSentIsRefused) {
    const QString token = identify(goldCard);
    const ServiceError e = refusal([&] { checkPin(goldCard, token, QStringLiteral("4321")); });
    EXPECT_EQ(e.status(), 409);
    EXPECT_EQ(e.code(), 3008);
    EXPECT_EQ(e.userMsg(), "No PIN was sent for this token: ask for one with processPin first");
}

TEST_F(LoyaltyServiceTest, BalanceIsTheCardsBookedBalance) {
    loyalty::CardBalanceRequest request;
    request.discCardId = silverCard;
    request.token = identify(silverCard);
    const loyalty::CardBalanceResponse reply = service.getCardBalance(request);
    EXPECT_EQ(reply.balance, 80.0);
    EXPECT_EQ(reply.showBalance, 1);
    EXPECT_EQ(reply.askOperation, 0);
    EXPECT_EQ(reply.retCode, 0);
}

TEST_F(LoyaltyServiceTest, CalcBonusAmountGivesTheAccrualAndTheMostBonusesMayPay) {
    const QString token = identify(goldCard);
    const loyalty::CalcBonusAmountResponse reply = calc(goldCard, token, netSale);
    const loyalty::AccountsEntry& account = bonusAccount(reply.cardList);
    EXPECT_EQ(account.balance, 500.0);
    EXPECT_EQ(account.maxPay, 500.0);
    EXPECT_EQ(account.minPay, 0.0);
    EXPECT_EQ(account.requestAmount, 0.0);
    EXPECT_FALSE(account.confirmedAmount);
    EXPECT_EQ(account.fio, "Anna Petrova");
    EXPECT_EQ(account.cardPan, "****0011");
    ASSERT_EQ(reply.lines.size(), 3);
    EXPECT_EQ(reply.lines[0].bonusUnit, 21.6);
    EXPECT_EQ(reply.lines[1].bonusUnit, 7.65);
    EXPECT_EQ(reply.lines[2].bonusUnit, 5.7);
    EXPECT_EQ(accrual(reply.lines), 5655);
    // The request comes back with the service's additions.
    EXPECT_EQ(reply.dataId, "A");
    EXPECT_EQ(reply.shopNum, 101);
    EXPECT_EQ(reply.token, token);
    EXPECT_EQ(reply.tokenCorrectness, 1);
    EXPECT_EQ(reply.dataIdReturn, "A");
}

TEST_F(LoyaltyServiceTest, PlannedWriteOffEarnsNoAccrual) {
    const QString token = identify(goldCard);
    // 2% of 2827.50 - 327.50, line by line.
    EXPECT_EQ(accrual(calc(goldCard, token, netSale, 327.5).lines), 5000);
}

TEST_F(LoyaltyServiceTest, BonusesMayPayAtMostHalfOfTheCheque) {
    const QString token = identify(silverCard);
    const loyalty::CalcBonusAmountResponse reply = calc(silverCard, token, {{chocolate, 120, 1}});
    EXPECT_EQ(bonusAccount(reply.cardList).balance, 80.0);
    EXPECT_EQ(bonusAccount(reply.cardList).maxPay, 60.0);
    EXPECT_EQ(accrual(reply.lines), 120); // 1%
}

TEST_F(LoyaltyServiceTest, ReservationPaysLinesWithBonuses) {
    const QString token = goldWithPin();
    const loyalty::CalcAndReserveBonusPayResponse reply = reserve(goldCard, token, netSale, 327.5);
    const loyalty::AccountsEntry& account = bonusAccount(reply.cardList);
    EXPECT_EQ(account.confirmedAmount, 327.5);
    EXPECT_EQ(account.requestAmount, 327.5);
    EXPECT_EQ(account.maxPay, 500.0);
    EXPECT_EQ(accrual(reply.lines), 5000);
    const double shares[] = {250.19, 44.30, 33.01};
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(reply.lines[i].discounts.size(), 1);
        const loyalty::DiscountsEntry& d = reply.lines[i].discounts[0];
        EXPECT_EQ(d.codeAccount, 1);
        EXPECT_EQ(d.card, goldCard);
        EXPECT_EQ(toCents(d.discAmount.value_or(0)), toCents(shares[i]));
    }
    EXPECT_EQ(reply.dataIdReturn, "A");
    EXPECT_EQ(reply.dataIdReturned, "R-1");
    EXPECT_EQ(reply.tokenCorrectness, 1);
    const auto held = store.transaction([&] { return store.bonusReservation("A"); });
    ASSERT_TRUE(held);
    EXPECT_EQ(held->amount, 32750);
    EXPECT_EQ(balance(goldCard), 50000); // booked only by the commit
}

TEST_F(LoyaltyServiceTest, ReservationNeedsTheConfirmedPinOfACardThatRequiresOne) {
    const QString token = identify(goldCard);
    const ServiceError e = refusal([&] { reserve(goldCard, token, netSale, 100); });
    EXPECT_EQ(e.status(), 403);
    EXPECT_EQ(e.code(), 3004);
    EXPECT_EQ(e.userMsg(), "Card ****0011 needs its PIN confirmed before bonuses can pay");
    // The SILVER card needs none.
    const QString silver = identify(silverCard);
    EXPECT_EQ(bonusAccount(reserve(silverCard, silver, netSale, 50).cardList).confirmedAmount,
              50.0);
}

TEST_F(LoyaltyServiceTest, ReservationOfMoreThanTheBalanceIsRefused) {
    const QString token = identify(silverCard);
    const ServiceError e = refusal([&] { reserve(silverCard, token, netSale, 100); });
    EXPECT_EQ(e.status(), 409);
    EXPECT_EQ(e.code(), 3005);
    EXPECT_EQ(e.userMsg(), "Not enough bonuses: 100.00 asked for, 80.00 available");
    EXPECT_FALSE(store.transaction([&] { return store.bonusReservation("A"); }));
}

TEST_F(LoyaltyServiceTest, ReservationOverTheChequesLimitIsRefused) {
    const QString token = goldWithPin();
    const ServiceError e = refusal([&] { reserve(goldCard, token, {{tea, 300, 1}}, 200); });
    EXPECT_EQ(e.status(), 409);
    EXPECT_EQ(e.code(), 3009);
    EXPECT_EQ(e.userMsg(), "Bonuses may pay at most 150.00 of this cheque, not 200.00");
}

TEST_F(LoyaltyServiceTest, BonusesReservedForOneChequeAreNotAvailableToAnother) {
    const QString token = identify(silverCard);
    reserve(silverCard, token, netSale, 60, QStringLiteral("A"));
    const ServiceError e =
        refusal([&] { reserve(silverCard, token, netSale, 30, QStringLiteral("B")); });
    EXPECT_EQ(e.userMsg(), "Not enough bonuses: 30.00 asked for, 20.00 available");
    // Reserving the same cheque again replaces its reservation.
    EXPECT_EQ(bonusAccount(reserve(silverCard, token, netSale, 80, QStringLiteral("A")).cardList)
                  .confirmedAmount,
              80.0);
}

TEST_F(LoyaltyServiceTest, CommitBooksTheWriteOffAndTheAccrual) {
    const QString token = goldWithPin();
    reserve(goldCard, token, netSale, 327.5);
    loyalty::CommitChequeRequest request = commitRequest(goldCard, token, paidSale, 2752.5);
    request.cashId = QStringLiteral("POS-1");
    const loyalty::CommitChequeResponse reply = service.commitCheque(request);
    EXPECT_EQ(reply.discAmount, 327.5);
    EXPECT_EQ(reply.bonusAmount, 48.5);
    EXPECT_EQ(reply.totalAmount, 2752.5);
    EXPECT_EQ(reply.totalAmountAfterKs, 2425.0);
    EXPECT_EQ(reply.ksSource, 3);
    EXPECT_EQ(reply.dataId, "A");
    EXPECT_EQ(reply.cashId, "POS-1");
    EXPECT_EQ(reply.placeId, "S01-POS1");
    EXPECT_EQ(reply.token, token);
    EXPECT_EQ(reply.tokenCorrectness, 1);
    EXPECT_EQ(bonusAccount(reply.cardList).balance, 221.0);
    EXPECT_EQ(accrual(reply.lines), 4850);
    ASSERT_EQ(reply.slips.size(), 1);
    EXPECT_EQ(reply.slips[0].codeAccount, 1);
    EXPECT_EQ(reply.slips[0].qty, 1.0);
    EXPECT_EQ(
        reply.slips[0].chequeMessage,
        "Loyalty card ****0011\nBonuses paid: 327.50\nBonuses accrued: 48.50\nBalance: 221.00");
    EXPECT_EQ(reply.slips[0].operatorMessage,
              "Card ****0011 (Anna Petrova): -327.50 +48.50 bonuses, balance 221.00");
    EXPECT_EQ(balance(goldCard), 22100);
    EXPECT_FALSE(store.transaction([&] { return store.bonusReservation("A"); }));
}

TEST_F(LoyaltyServiceTest, CommitWithoutReservationOnlyAccrues) {
    const QString token = identify(silverCard);
    const loyalty::CommitChequeResponse reply =
        service.commitCheque(commitRequest(silverCard, token, {{tea, 300, 2}}, 600));
    EXPECT_EQ(reply.discAmount, 0.0);
    EXPECT_EQ(reply.bonusAmount, 6.0);
    EXPECT_EQ(balance(silverCard), 8600);
}

TEST_F(LoyaltyServiceTest, CommitWithoutCardBooksNothing) {
    const loyalty::CommitChequeResponse reply =
        service.commitCheque(commitRequest(QString(), QString(), {{tea, 300, 1}}, 300));
    EXPECT_EQ(reply.bonusAmount, 0.0);
    EXPECT_EQ(reply.tokenCorrectness, 0);
    EXPECT_TRUE(reply.slips.isEmpty());
    EXPECT_TRUE(store.transaction([&] { return store.committedCheque("A").has_value(); }));
}

TEST_F(LoyaltyServiceTest, SameChequeCommittedTwiceIsRefusedAndBookedOnce) {
    const QString token = identify(silverCard);
    const loyalty::CommitChequeRequest request =
        commitRequest(silverCard, token, {{tea, 300, 2}}, 600);
    service.commitCheque(request);
    const ServiceError e = refusal([&] { service.commitCheque(request); });
    EXPECT_EQ(e.status(), 409);
    EXPECT_EQ(e.code(), 3006);
    EXPECT_EQ(e.userMsg(), "Cheque A has already been committed");
    EXPECT_EQ(balance(silverCard), 8600);
}

TEST_F(LoyaltyServiceTest, CommitsRacingFromTwoThreadsAreBookedOnce) {
    const QString token = identify(silverCard);
    const loyalty::CommitChequeRequest request =
        commitRequest(silverCard, token, {{tea, 300, 2}}, 600);
    std::promise<void> go;
    const std::shared_future<void> start = go.get_future().share();
    const auto commit = [&] {
        start.wait();
        try {
            service.commitCheque(request);
            return 0;
        } catch (const ServiceError& e) {
            return e.code();
        }
    };
    std::future<int> first = std::async(std::launch::async, commit);
    std::future<int> second = std::async(std::launch::async, commit);
    go.set_value();
    const int a = first.get();
    const int b = second.get();
    EXPECT_EQ(std::min(a, b), 0);
    EXPECT_EQ(std::max(a, b), 3006);
    EXPECT_EQ(balance(silverCard), 8600);
}

TEST_F(LoyaltyServiceTest, FailedCommitLeavesNoTrace) {
    const QString token = identify(silverCard);
    loyalty::CommitChequeRequest request = commitRequest(silverCard, token, {{tea, 300, 2}}, 600);
    request.token = QStringLiteral("T999999");
    EXPECT_EQ(refusal([&] { service.commitCheque(request); }).code(), 3002);
    request.token = token;
    EXPECT_EQ(service.commitCheque(request).bonusAmount, 6.0);
}

TEST_F(LoyaltyServiceTest, CommitValidatesTheParkingTicketItNames) {
    const QString token = identify(silverCard);
    loyalty::CommitChequeRequest request = commitRequest(silverCard, token, {{tea, 300, 7}}, 2100);
    request.parkingId = QStringLiteral("P-000123");
    const loyalty::CommitChequeResponse reply = service.commitCheque(request);
    EXPECT_EQ(reply.parkingId, "P-000123");
    EXPECT_EQ(reply.parkingValidateStatus, "VALIDATED");
    EXPECT_EQ(reply.parkingDiscHours, 2);
    EXPECT_EQ(reply.parkingTotalAmount, 300.0);
    EXPECT_EQ(reply.parkingDiscAmount, 200.0);
    EXPECT_EQ(reply.parkingDateTimeEntry, "2026-11-20T09:30:00");
    EXPECT_EQ(reply.parkingDateTimePrivilegeEnd, "2026-11-20T11:30:00");
    ASSERT_EQ(reply.slips.size(), 2);
    EXPECT_EQ(reply.slips[1].chequeMessage,
              "Parking ticket P-000123: 2 free hours, until 2026-11-20 11:30");
    EXPECT_EQ(reply.slips[1].operatorMessage,
              "Parking P-000123 validated: 200.00 off, 100.00 to pay");

    loyalty::CommitChequeRequest unknown =
        commitRequest(silverCard, token, {{tea, 300, 1}}, 300, QStringLiteral("B"));
    unknown.parkingId = QStringLiteral("P-404");
    EXPECT_EQ(service.commitCheque(unknown).parkingValidateStatus, "UNKNOWN_TICKET");
}

struct ParkingRow {
    const char* name;
    double total;
    const char* status;
    int hours;
    double discount;
    double toPay;
    const char* end;
};

void PrintTo(const ParkingRow& row, std::ostream* out) {
    *out << row.name;
}

class ParkingTest : public LoyaltyServiceTest, public ::testing::WithParamInterface<ParkingRow> {};

TEST_P(ParkingTest, FreeHoursFollowTheChequesTotal) {
    const ParkingRow& row = GetParam();
    service.commitCheque(commitRequest(QString(), QString(), {{tea, row.total, 1}}, row.total));
    const loyalty::ParkingInfoResponse reply =
        parking(QStringLiteral("A"), QStringLiteral("P-000123"));
    EXPECT_EQ(reply.parkingId, "P-000123");
    EXPECT_EQ(reply.parkingValidateStatus, row.status);
    EXPECT_EQ(reply.parkingDiscHours, row.hours);
    EXPECT_EQ(reply.parkingTotalAmount, 300.0);
    EXPECT_EQ(reply.parkingDiscAmount, row.discount);
    EXPECT_EQ(reply.parkingPayAmount, row.toPay);
    EXPECT_EQ(reply.parkingDateTimeEntry.toDateTime().toString(Qt::ISODate), "2026-11-20T09:30:00");
    EXPECT_EQ(reply.parkingDateTimePrivilegeEnd.toDateTime().toString(Qt::ISODate), row.end);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ParkingTest,
    ::testing::Values(
        ParkingRow{"below_every_rule", 999.99, "NOT_VALIDATED", 0, 0, 300, "2026-11-20T09:30:00"},
        ParkingRow{"one_hour_from_1000", 1000, "VALIDATED", 1, 100, 200, "2026-11-20T10:30:00"},
        ParkingRow{"two_hours_from_2000", 2752.5, "VALIDATED", 2, 200, 100, "2026-11-20T11:30:00"},
        ParkingRow{"four_hours_cover_the_stay", 5000, "VALIDATED", 4, 300, 0,
                   "2026-11-20T13:30:00"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(LoyaltyServiceTest, ParkingNeedsACommittedChequeAndAKnownTicket) {
    const ServiceError cheque =
        refusal([&] { parking(QStringLiteral("A"), QStringLiteral("P-000123")); });
    EXPECT_EQ(cheque.status(), 404);
    EXPECT_EQ(cheque.code(), 3007);
    EXPECT_EQ(cheque.userMsg(), "Cheque A has not been committed");
    service.commitCheque(commitRequest(QString(), QString(), {{tea, 300, 1}}, 300));
    const ServiceError ticket =
        refusal([&] { parking(QStringLiteral("A"), QStringLiteral("P-1")); });
    EXPECT_EQ(ticket.status(), 404);
    EXPECT_EQ(ticket.code(), 3010);
    EXPECT_EQ(ticket.userMsg(), "No parking ticket P-1");
    const ServiceError none = refusal([&] { parking(QStringLiteral("A"), QString()); });
    EXPECT_EQ(none.code(), 3000);
    EXPECT_EQ(none.userMsg(), "parkingId is empty");
}

TEST_F(LoyaltyServiceTest, TextsNameTheHolderTheBalanceAndTheCheque) {
    const QString token = goldWithPin();
    reserve(goldCard, token, netSale, 327.5);
    service.commitCheque(commitRequest(goldCard, token, paidSale, 2752.5));
    loyalty::AdditionalInfoRequest request;
    request.chequeId = QStringLiteral("A");
    request.discCardId = goldCard;
    request.token = token;
    const loyalty::AdditionalInfoResponse cashier = service.cashierAdditionalInfo(request);
    EXPECT_EQ(cashier.cashierText, "Anna Petrova, GOLD card ****0011: 221.00 bonuses available.");
    EXPECT_EQ(cashier.chequeText, "");
    const loyalty::AdditionalInfoResponse cheque = service.chequeAdditionalInfo(request);
    EXPECT_EQ(cheque.cashierText, "");
    EXPECT_EQ(cheque.chequeText,
              "Thank you, Anna Petrova! Bonuses paid: 327.50, accrued: 48.50. Balance: 221.00.");
    request.chequeId = QStringLiteral("OTHER");
    EXPECT_EQ(service.chequeAdditionalInfo(request).chequeText,
              "Thank you, Anna Petrova! Bonuses paid: 0.00, accrued: 0.00. Balance: 221.00.");
}

TEST_F(LoyaltyServiceTest, TextsWithoutCardAreTheGeneralOnes) {
    loyalty::AdditionalInfoRequest request;
    request.chequeId = QStringLiteral("A");
    EXPECT_EQ(service.cashierAdditionalInfo(request).cashierText,
              "No loyalty card on this cheque: offer the customer one.");
    EXPECT_EQ(service.chequeAdditionalInfo(request).chequeText, "Thank you for your purchase!");
    request.discCardId = goldCard;
    EXPECT_EQ(refusal([&] { service.cashierAdditionalInfo(request); }).code(), 3002);
}

TEST_F(LoyaltyServiceTest, BadValuesAreRefused) {
    const QString token = identify(silverCard);
    const ServiceError qty = refusal([&] { calc(silverCard, token, {{tea, 300, -1}}); });
    EXPECT_EQ(qty.status(), 400);
    EXPECT_EQ(qty.code(), 3000);
    EXPECT_EQ(qty.userMsg(), "Line 1: the quantity must be more than 0 and at most 1000000");
    const ServiceError price = refusal([&] { calc(silverCard, token, {{tea, 1e300, 1}}); });
    EXPECT_EQ(price.userMsg(), "Line 1: the sales price must be from 0 to 1000000000");
    const ServiceError request = refusal([&] { calc(silverCard, token, {{tea, 300, 1}}, -5); });
    EXPECT_EQ(request.userMsg(), "requestAmount must be from 0 to 1000000000");
    const ServiceError total =
        refusal([&] { service.commitCheque(commitRequest(silverCard, token, {}, -1)); });
    EXPECT_EQ(total.userMsg(), "totalAmount must be from 0 to 1000000000");
    const ServiceError noCheque =
        refusal([&] { service.commitCheque(commitRequest(silverCard, token, {}, 1, QString())); });
    EXPECT_EQ(noCheque.userMsg(), "dataId is empty");
}

TEST(LoyaltyMaskTest, CardKeepsItsLastFourCharacters) {
    EXPECT_EQ(LoyaltyService::maskCard(QStringLiteral("2775000000011")), "****0011");
    EXPECT_EQ(LoyaltyService::maskCard(QStringLiteral("12")), "****12");
}

TEST(LoyaltyMaskTest, PhoneKeepsItsFirstFourAndLastTwoDigits) {
    EXPECT_EQ(LoyaltyService::maskPhone(QStringLiteral("+7 900 123-45-67")), "+7 900 ***-**-67");
    EXPECT_EQ(LoyaltyService::maskPhone(QStringLiteral("79001234567")), "7900*****67");
}

} // namespace
} // namespace vesk::emulator::test
