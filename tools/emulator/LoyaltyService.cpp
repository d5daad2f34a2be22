#include "LoyaltyService.h"

#include "Log.h"
#include "ServiceError.h"

#include <morva/Serder.h>

#include <algorithm>

namespace vesk::emulator {

namespace {

const char* const validated = "VALIDATED";
const char* const notValidated = "NOT_VALIDATED";
const char* const unknownTicket = "UNKNOWN_TICKET";

ServiceError invalid(const QString& why) {
    return ServiceError(400, code::loyaltyInvalid, why);
}

void requireNotEmpty(const QString& value, const char* name) {
    if (value.isEmpty())
        throw invalid(QStringLiteral("%1 is empty").arg(QLatin1String(name)));
}

void checkLines(const QList<loyalty::LinesEntry>& lines) {
    for (const loyalty::LinesEntry& line : lines) {
        if (!isValidQuantity(line.qty))
            throw invalid(QStringLiteral("Line %1: the quantity must be more than 0 and at most %2")
                              .arg(line.lineNum)
                              .arg(maxQuantity, 0, 'f', 0));
        if (!isValidAmount(line.salesPrice))
            throw invalid(QStringLiteral("Line %1: the sales price must be from 0 to %2")
                              .arg(line.lineNum)
                              .arg(maxAmount, 0, 'f', 0));
    }
}

QString firstCard(const QList<loyalty::CardListEntry>& cards) {
    for (const loyalty::CardListEntry& entry : cards)
        if (!entry.card.isEmpty())
            return entry.card;
    return QString();
}

// What the till asks bonuses to pay: the requestAmount of the card's bonus account.
Cents requestedWriteOff(const QList<loyalty::CardListEntry>& cards, const QString& card,
                        int bonusAccount) {
    Cents requested = 0;
    for (const loyalty::CardListEntry& entry : cards) {
        if (entry.card != card)
            continue;
        for (const loyalty::AccountsEntry& account : entry.accounts) {
            if (account.codeAccount != bonusAccount)
                continue;
            if (!isValidAmount(account.requestAmount))
                throw invalid(
                    QStringLiteral("requestAmount must be from 0 to %1").arg(maxAmount, 0, 'f', 0));
            requested += toCents(account.requestAmount);
        }
    }
    return requested;
}

QList<Cents> lineAmounts(const QList<loyalty::LinesEntry>& lines) {
    QList<Cents> amounts;
    for (const loyalty::LinesEntry& line : lines)
        amounts.append(lineAmount(toCents(line.salesPrice), line.qty));
    return amounts;
}

Cents sum(const QList<Cents>& values) {
    Cents total = 0;
    for (Cents value : values)
        total += value;
    return total;
}

// Each line's accrual: the percent of its amount less its share of the write-off.
QList<Cents> accruals(const QList<Cents>& amounts, const QList<Cents>& shares, double percent) {
    QList<Cents> result;
    for (qsizetype i = 0; i < amounts.size(); ++i)
        result.append(percentOf(std::max<Cents>(amounts[i] - shares[i], 0), percent));
    return result;
}

// The lines with their accrual per unit and, when `bonusShares` is given,
// each line's bonus payment as a discount of the bonus account.
QList<loyalty::LinesEntry> withBonuses(QList<loyalty::LinesEntry> lines,
                                       const QList<Cents>& lineAccruals,
                                       const QList<Cents>* bonusShares, const QString& card,
                                       int bonusAccount) {
    for (qsizetype i = 0; i < lines.size(); ++i) {
        loyalty::LinesEntry& line = lines[i];
        line.bonusUnit = fromCents(lineAccruals[i]) / line.qty;
        if (!bonusShares)
            continue;
        line.discounts.removeIf([&](const loyalty::DiscountsEntry& discount) {
            return discount.codeAccount == bonusAccount;
        });
        if ((*bonusShares)[i] <= 0)
            continue;
        loyalty::DiscountsEntry discount;
        discount.card = card;
        discount.codeAccount = bonusAccount;
        discount.discAmount = fromCents((*bonusShares)[i]);
        discount.discQty = line.qty;
        line.discounts.append(discount);
    }
    return lines;
}

// The cards with `account` as the bonus account of `card`, the card added when missing.
QList<loyalty::CardListEntry> withAccount(QList<loyalty::CardListEntry> cards,
                                          const Store::Card& card,
                                          const loyalty::AccountsEntry& account) {
    auto entry = std::find_if(cards.begin(), cards.end(),
                              [&](const loyalty::CardListEntry& e) { return e.card == card.card; });
    if (entry == cards.end()) {
        loyalty::CardListEntry added;
        added.card = card.card;
        cards.append(added);
        entry = cards.end() - 1;
    }
    entry->accounts.removeIf(
        [&](const loyalty::AccountsEntry& a) { return a.codeAccount == account.codeAccount; });
    entry->accounts.append(account);
    return cards;
}

loyalty::AccountsEntry bonusAccountOf(const Store::Card& card, int codeAccount, Cents balance,
                                      Cents maxPay, Cents requested,
                                      std::optional<Cents> confirmed = std::nullopt) {
    loyalty::AccountsEntry account;
    account.codeAccount = codeAccount;
    account.balance = fromCents(balance);
    account.maxPay = fromCents(maxPay);
    account.minPay = 0.0;
    account.requestAmount = fromCents(requested);
    if (confirmed)
        account.confirmedAmount = fromCents(*confirmed);
    account.card = card.card;
    account.cardNumber = card.card;
    account.cardPan = LoyaltyService::maskCard(card.card);
    account.fio = card.holder;
    account.status = 1; // active
    return account;
}

} // namespace

struct LoyaltyService::Bonuses {
    Store::Card card;
    Store::Token token;
    QList<Cents> amounts; // salesPrice x qty of each line
    Cents total = 0;
    Cents available = 0; // the balance less what other cheques hold reserved
    Cents limit = 0;     // the most of this cheque that bonuses may pay
    Cents maxPay = 0;
    Cents requested = 0;
};

LoyaltyService::LoyaltyService(Store& store, const SeedData& seed)
    : store_(store)
    , seed_(seed) {}

QString LoyaltyService::maskCard(const QString& card) {
    return QStringLiteral("****") + card.right(4);
}

QString LoyaltyService::maskPhone(const QString& phone) {
    qsizetype digits = 0;
    for (const QChar c : phone)
        digits += c.isDigit() ? 1 : 0;
    QString masked;
    qsizetype seen = 0;
    for (const QChar c : phone) {
        if (c.isDigit()) {
            ++seen;
            masked += seen <= 4 || seen > digits - 2 ? c : QLatin1Char('*');
        } else {
            masked += c;
        }
    }
    return masked;
}

Store::Card LoyaltyService::requireCard(const QString& number) {
    requireNotEmpty(number, "discCardId");
    std::optional<Store::Card> card = store_.card(number);
    if (!card)
        throw ServiceError(404, code::unknownCard,
                           QStringLiteral("No loyalty card %1").arg(maskCard(number)));
    return *card;
}

Store::Token LoyaltyService::requireToken(const QString& token, const Store::Card& card) {
    std::optional<Store::Token> found = store_.token(token);
    if (!found || found->card != card.card)
        throw ServiceError(401, code::invalidToken,
                           QStringLiteral("The token is not valid for card %1: identify the card "
                                          "again")
                               .arg(maskCard(card.card)));
    return *found;
}

LoyaltyService::Bonuses LoyaltyService::bonuses(const QList<loyalty::CardListEntry>& cards,
                                                const QList<loyalty::LinesEntry>& lines,
                                                const QString& token, const QString& dataId) {
    QString number = firstCard(cards);
    if (number.isEmpty()) {
        if (token.isEmpty())
            throw invalid(QStringLiteral("No loyalty card: cardList and token are both empty"));
        const std::optional<Store::Token> found = store_.token(token);
        if (!found)
            throw ServiceError(401, code::invalidToken,
                               QStringLiteral("Unknown token: identify the card again"));
        number = found->card;
    }
    Bonuses b;
    b.card = requireCard(number);
    b.token = requireToken(token, b.card);
    b.amounts = lineAmounts(lines);
    b.total = sum(b.amounts);
    b.available = std::max<Cents>(b.card.balance - store_.bonusesReserved(b.card.card, dataId), 0);
    b.limit = percentOf(b.total, seed_.maxWriteOffPercent);
    b.maxPay = std::min(b.available, b.limit);
    b.requested = requestedWriteOff(cards, b.card.card, seed_.bonusAccount);
    return b;
}

loyalty::ProcessIdResponse LoyaltyService::processId(const loyalty::ProcessIdRequest& request) {
    requireNotEmpty(request.discCardId, "discCardId");
    const auto [card, token] = store_.transaction([&] {
        const Store::Card card = requireCard(request.discCardId);
        return std::make_pair(card, store_.issueToken(card.card, request.chequeId));
    });
    loyalty::ProcessIdResponse response;
    response.clientFIO = card.holder;
    response.discCardId = card.card;
    response.discCardTypeId = card.cardType;
    response.identityIsRequired = card.pinRequired ? 1 : 0;
    response.isLoyaltyCard = 1;
    response.retCode = 0;
    response.retMessage = QStringLiteral("Card identified");
    response.token = token.token;
    return response;
}

loyalty::ProcessPinResponse LoyaltyService::processPin(const loyalty::ProcessPinRequest& request) {
    const Store::Card card = store_.transaction([&] {
        const Store::Card card = requireCard(request.discCardId);
        requireToken(request.token, card);
        store_.recordPinSent(request.token, card.card, card.phone);
        return card;
    });
    const QString phone = maskPhone(card.phone);
    // The PIN itself stays out of the log, as on a real back office; the seed file holds it.
    qCDebug(lcEmulator).noquote() << "PIN of card" << maskCard(card.card) << "sent to" << phone;
    loyalty::ProcessPinResponse response;
    response.phone = phone;
    response.pinCodeSended = 1;
    response.retCode = 0;
    response.retMessage = QStringLiteral("PIN sent to %1").arg(phone);
    response.showPinField = 1;
    response.token = request.token;
    return response;
}

loyalty::CheckPinResponse LoyaltyService::checkPin(const loyalty::CheckPinRequest& request) {
    store_.transaction([&] {
        const Store::Card card = requireCard(request.discCardId);
        const Store::Token token = requireToken(request.token, card);
        if (!token.pinSent)
            throw ServiceError(409, code::pinNotSent,
                               QStringLiteral("No PIN was sent for this token: ask for one with "
                                              "processPin first"));
        if (request.pinCode.value_or(QString()) != card.pin)
            throw ServiceError(403, code::wrongPin, QStringLiteral("Wrong PIN"));
        store_.confirmPin(token.token);
    });
    loyalty::CheckPinResponse response;
    response.correctPin = 1;
    response.discCardId = request.discCardId;
    response.retCode = 0;
    response.retMessage = QStringLiteral("PIN confirmed");
    return response;
}

loyalty::CardBalanceResponse
LoyaltyService::getCardBalance(const loyalty::CardBalanceRequest& request) {
    const Store::Card card = store_.transaction([&] {
        const Store::Card card = requireCard(request.discCardId);
        requireToken(request.token, card);
        return card;
    });
    loyalty::CardBalanceResponse response;
    response.askOperation = 0;
    response.balance = fromCents(card.balance);
    response.retCode = 0;
    response.showBalance = 1;
    return response;
}

loyalty::CalcBonusAmountResponse
LoyaltyService::calcBonusAmount(const loyalty::CalcBonusAmountRequest& request) {
    checkLines(request.lines);
    const Bonuses b = store_.transaction(
        [&] { return bonuses(request.cardList, request.lines, request.token, request.dataId); });
    const Cents writeOff = std::min(b.requested, b.maxPay);
    const QList<Cents> shares = distribute(writeOff, b.amounts);

    loyalty::CalcBonusAmountResponse response;
    static_cast<loyalty::CalcBonusAmountRequest&>(response) = request;
    response.lines = withBonuses(request.lines, accruals(b.amounts, shares, b.card.accrualPercent),
                                 nullptr, b.card.card, seed_.bonusAccount);
    response.cardList =
        withAccount(request.cardList, b.card,
                    bonusAccountOf(b.card, seed_.bonusAccount, b.available, b.maxPay, b.requested));
    response.tokenCorrectness = 1;
    response.dataIdReturn = request.dataId;
    return response;
}

loyalty::CalcAndReserveBonusPayResponse
LoyaltyService::calcAndReserveBonusPay(const loyalty::CalcAndReserveBonusPayRequest& request) {
    requireNotEmpty(request.dataId, "dataId");
    checkLines(request.lines);
    const Bonuses b = store_.transaction([&] {
        Bonuses b = bonuses(request.cardList, request.lines, request.token, request.dataId);
        if (b.card.pinRequired && !b.token.pinConfirmed)
            throw ServiceError(403, code::pinNotConfirmed,
                               QStringLiteral("Card %1 needs its PIN confirmed before bonuses "
                                              "can pay")
                                   .arg(maskCard(b.card.card)));
        if (b.requested > b.available)
            throw ServiceError(409, code::notEnoughBonuses,
                               QStringLiteral("Not enough bonuses: %1 asked for, %2 available")
                                   .arg(formatCents(b.requested), formatCents(b.available)));
        if (b.requested > b.limit)
            throw ServiceError(409, code::writeOffOverLimit,
                               QStringLiteral("Bonuses may pay at most %1 of this cheque, not %2")
                                   .arg(formatCents(b.limit), formatCents(b.requested)));
        if (b.requested > 0)
            store_.saveBonusReservation({request.dataId, b.card.card, b.requested});
        else
            store_.dropBonusReservation(request.dataId);
        return b;
    });
    const QList<Cents> shares = distribute(b.requested, b.amounts);

    // The reply repeats the request: the keys that both records have carry over.
    auto response =
        serder::deserialize<loyalty::CalcAndReserveBonusPayResponse>(serder::serialize(request));
    response.lines = withBonuses(request.lines, accruals(b.amounts, shares, b.card.accrualPercent),
                                 &shares, b.card.card, seed_.bonusAccount);
    response.cardList = withAccount(request.cardList, b.card,
                                    bonusAccountOf(b.card, seed_.bonusAccount, b.available,
                                                   b.maxPay, b.requested, b.requested));
    response.tokenCorrectness = 1;
    response.dataIdReturn = request.dataId;
    return response;
}

Store::ParkingValidation LoyaltyService::validateParking(const SeedParkingTicket& ticket,
                                                         const QString& dataId, Cents total) {
    Store::ParkingValidation validation;
    validation.parkingId = ticket.parkingId;
    validation.dataId = dataId;
    for (const SeedParkingRule& rule : seed_.parkingRules)
        if (total >= rule.minTotal)
            validation.freeHours = rule.freeHours; // the rules ascend by minTotal
    validation.total = seed_.parkingHourlyRate * ticket.stayHours;
    validation.discount =
        std::min(validation.total, seed_.parkingHourlyRate * validation.freeHours);
    validation.toPay = validation.total - validation.discount;
    store_.saveParkingValidation(validation);
    return validation;
}

loyalty::CommitChequeResponse
LoyaltyService::commitCheque(const loyalty::CommitChequeRequest& request) {
    requireNotEmpty(request.dataId, "dataId");
    checkLines(request.lines);
    if (!isValidAmount(request.totalAmount))
        throw invalid(QStringLiteral("totalAmount must be from 0 to %1").arg(maxAmount, 0, 'f', 0));

    struct Outcome {
        std::optional<Store::Card> card;
        Store::CommittedCheque cheque;
        QList<Cents> accruals;
        QList<Cents> shares;
        std::optional<Store::ParkingValidation> parking;
        std::optional<SeedParkingTicket> ticket;
    };
    const Outcome outcome = store_.transaction([&] {
        if (store_.committedCheque(request.dataId))
            throw ServiceError(
                409, code::alreadyCommitted,
                QStringLiteral("Cheque %1 has already been committed").arg(request.dataId));
        Outcome o;
        const std::optional<Store::BonusReservation> reservation =
            store_.bonusReservation(request.dataId);
        QString number = firstCard(request.cardList);
        if (number.isEmpty() && !request.token.isEmpty()) {
            const std::optional<Store::Token> token = store_.token(request.token);
            if (!token)
                throw ServiceError(401, code::invalidToken,
                                   QStringLiteral("Unknown token: identify the card again"));
            number = token->card;
        }
        if (number.isEmpty() && reservation)
            number = reservation->card;
        const QList<Cents> amounts = lineAmounts(request.lines);
        o.cheque.dataId = request.dataId;
        o.cheque.total = toCents(request.totalAmount);
        o.shares = QList<Cents>(amounts.size(), 0);
        o.accruals = QList<Cents>(amounts.size(), 0);
        if (!number.isEmpty()) {
            const Store::Card card = requireCard(number);
            if (!request.token.isEmpty())
                requireToken(request.token, card);
            if (reservation && reservation->card != card.card)
                throw invalid(QStringLiteral("The bonuses of cheque %1 were reserved with "
                                             "another card")
                                  .arg(request.dataId));
            o.card = card;
            o.cheque.card = card.card;
            o.cheque.writeOff = reservation ? reservation->amount : 0;
            if (o.cheque.writeOff > card.balance)
                throw ServiceError(
                    409, code::notEnoughBonuses,
                    QStringLiteral("Not enough bonuses: %1 reserved, %2 on the "
                                   "card")
                        .arg(formatCents(o.cheque.writeOff), formatCents(card.balance)));
            o.shares = distribute(o.cheque.writeOff, amounts);
            o.accruals = accruals(amounts, o.shares, card.accrualPercent);
            o.cheque.accrual = sum(o.accruals);
            o.cheque.balanceAfter = card.balance - o.cheque.writeOff + o.cheque.accrual;
        }
        // The key on dataId decides: of two tills that race, one inserts.
        if (!store_.addCommittedCheque(o.cheque))
            throw ServiceError(
                409, code::alreadyCommitted,
                QStringLiteral("Cheque %1 has already been committed").arg(request.dataId));
        if (o.card) {
            store_.setBalance(o.card->card, o.cheque.balanceAfter);
            o.card->balance = o.cheque.balanceAfter;
        }
        store_.dropBonusReservation(request.dataId);
        if (request.parkingId && !request.parkingId->isEmpty()) {
            o.ticket = store_.parkingTicket(*request.parkingId);
            if (o.ticket)
                o.parking = validateParking(*o.ticket, request.dataId, o.cheque.total);
        }
        return o;
    });

    // The reply repeats the request: the keys that both records have carry over.
    auto response = serder::deserialize<loyalty::CommitChequeResponse>(serder::serialize(request));
    response.ksSource = request.ksSources;
    response.bonusAmount = fromCents(outcome.cheque.accrual);
    response.discAmount = fromCents(outcome.cheque.writeOff);
    response.totalAmountAfterKs = fromCents(outcome.cheque.total - outcome.cheque.writeOff);
    // A token that was given has been checked against the card by now.
    response.tokenCorrectness = outcome.card && !request.token.isEmpty() ? 1 : 0;
    if (outcome.card) {
        const Store::Card& card = *outcome.card;
        response.lines = withBonuses(request.lines, outcome.accruals, &outcome.shares, card.card,
                                     seed_.bonusAccount);
        response.cardList =
            withAccount(request.cardList, card,
                        bonusAccountOf(card, seed_.bonusAccount, card.balance, 0,
                                       outcome.cheque.writeOff, outcome.cheque.writeOff));
        loyalty::SlipsEntry slip;
        slip.codeAccount = seed_.bonusAccount;
        slip.qty = 1;
        slip.chequeMessage =
            QStringLiteral("Loyalty card %1\nBonuses paid: %2\nBonuses accrued: "
                           "%3\nBalance: %4")
                .arg(maskCard(card.card), formatCents(outcome.cheque.writeOff),
                     formatCents(outcome.cheque.accrual), formatCents(card.balance));
        slip.operatorMessage =
            QStringLiteral("Card %1 (%2): -%3 +%4 bonuses, balance %5")
                .arg(maskCard(card.card), card.holder, formatCents(outcome.cheque.writeOff),
                     formatCents(outcome.cheque.accrual), formatCents(card.balance));
        response.slips.append(slip);
    }
    if (request.parkingId && !request.parkingId->isEmpty()) {
        if (outcome.parking) {
            const Store::ParkingValidation& p = *outcome.parking;
            const QDateTime end = outcome.ticket->entry.addSecs(3600LL * p.freeHours);
            response.parkingValidateStatus =
                QLatin1String(p.freeHours > 0 ? validated : notValidated);
            response.parkingTotalAmount = fromCents(p.total);
            response.parkingDiscAmount = fromCents(p.discount);
            response.parkingDiscHours = p.freeHours;
            response.parkingDateTimeEntry = outcome.ticket->entry.toString(Qt::ISODate);
            response.parkingDateTimePrivilegeEnd = end.toString(Qt::ISODate);
            loyalty::SlipsEntry slip;
            slip.qty = 1;
            slip.chequeMessage = QStringLiteral("Parking ticket %1: %2 free hours, until %3")
                                     .arg(p.parkingId)
                                     .arg(p.freeHours)
                                     .arg(end.toString(QStringLiteral("yyyy-MM-dd HH:mm")));
            slip.operatorMessage =
                QStringLiteral("Parking %1 validated: %2 off, %3 to pay")
                    .arg(p.parkingId, formatCents(p.discount), formatCents(p.toPay));
            response.slips.append(slip);
        } else {
            response.parkingValidateStatus = QLatin1String(unknownTicket);
        }
    }
    return response;
}

loyalty::ParkingInfoResponse
LoyaltyService::getParkingInfo(const loyalty::ParkingInfoRequest& request) {
    requireNotEmpty(request.parkingId, "parkingId");
    const auto [ticket, validation] = store_.transaction([&] {
        const std::optional<Store::CommittedCheque> cheque =
            store_.committedCheque(request.chequeId);
        if (!cheque)
            throw ServiceError(
                404, code::notCommitted,
                QStringLiteral("Cheque %1 has not been committed").arg(request.chequeId));
        const std::optional<SeedParkingTicket> ticket = store_.parkingTicket(request.parkingId);
        if (!ticket)
            throw ServiceError(404, code::unknownTicket,
                               QStringLiteral("No parking ticket %1").arg(request.parkingId));
        return std::make_pair(*ticket, validateParking(*ticket, request.chequeId, cheque->total));
    });
    loyalty::ParkingInfoResponse response;
    response.parkingId = ticket.parkingId;
    response.parkingValidateStatus =
        QLatin1String(validation.freeHours > 0 ? validated : notValidated);
    response.parkingTotalAmount = fromCents(validation.total);
    response.parkingDiscAmount = fromCents(validation.discount);
    response.parkingPayAmount = fromCents(validation.toPay);
    response.parkingDiscHours = validation.freeHours;
    response.parkingDateTimeEntry = ticket.entry;
    response.parkingDateTimePrivilegeEnd = ticket.entry.addSecs(3600LL * validation.freeHours);
    return response;
}

QString LoyaltyService::fillText(const QString& text, const QString& cardNumber,
                                 const QString& token, const QString& chequeId) {
    return store_.transaction([&] {
        const Store::Card card = requireCard(cardNumber);
        requireToken(token, card);
        const std::optional<Store::CommittedCheque> cheque = store_.committedCheque(chequeId);
        const bool own = cheque && cheque->card == card.card;
        QString filled = text;
        filled.replace(QLatin1String("{holder}"), card.holder)
            .replace(QLatin1String("{cardType}"), card.cardType)
            .replace(QLatin1String("{card}"), maskCard(card.card))
            .replace(QLatin1String("{balance}"), formatCents(card.balance))
            .replace(QLatin1String("{accrued}"), formatCents(own ? cheque->accrual : 0))
            .replace(QLatin1String("{paid}"), formatCents(own ? cheque->writeOff : 0));
        return filled;
    });
}

loyalty::AdditionalInfoResponse
LoyaltyService::cashierAdditionalInfo(const loyalty::AdditionalInfoRequest& request) {
    loyalty::AdditionalInfoResponse response;
    response.cashierText =
        request.discCardId.isEmpty()
            ? seed_.texts.cashierWithoutCard
            : fillText(seed_.texts.cashier, request.discCardId, request.token, request.chequeId);
    return response;
}

loyalty::AdditionalInfoResponse
LoyaltyService::chequeAdditionalInfo(const loyalty::AdditionalInfoRequest& request) {
    loyalty::AdditionalInfoResponse response;
    response.chequeText =
        request.discCardId.isEmpty()
            ? seed_.texts.chequeWithoutCard
            : fillText(seed_.texts.cheque, request.discCardId, request.token, request.chequeId);
    return response;
}

} // namespace vesk::emulator
