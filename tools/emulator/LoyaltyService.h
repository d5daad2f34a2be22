#pragma once

#include "SeedData.h"
#include "Store.h"

#include <vesk/loyalty/loyalty.h>

namespace vesk::emulator {

// The loyalty service: cards, PINs, bonuses, commits, parking and texts.
//
// Identification. processId knows the seed's cards (else 404, 3001) and
// issues a token, which every later request for the card carries (a token
// of another card or none: 401, 3002). identityIsRequired says whether the
// card needs its PIN confirmed before bonuses may pay. processPin "sends"
// the card's PIN to the holder's phone (recorded; pinCodeSended 1, the
// phone masked); checkPin then confirms it, refusing a wrong PIN (403,
// 3003) and a token for which no PIN was sent (409, 3008).
//
// Bonuses, all amounts in cents of the currency, one bonus worth one unit:
// - the card is the first of cardList, else the token's; the bonus account
//   is the seed's bonusAccount (codeAccount), its requestAmount the
//   write-off that the till asks for;
// - a line's amount is salesPrice x qty; bonuses may pay at most the seed's
//   maxWriteOffPercent of the lines' total, and no more than the balance
//   less what other cheques hold reserved (maxPay = the smaller);
// - a write-off is spread over the lines in proportion to their amounts;
//   each line accrues the card's accrualPercent of its amount less its
//   share of the write-off. A line's bonusUnit is its accrual per unit.
// calcBonusAmount computes this for the requested write-off (capped at
// maxPay). calcAndReserveBonusPay reserves the requested write-off for the
// cheque (dataId), replacing an earlier reservation of it; it needs the PIN
// confirmed when the card requires one (403, 3004) and refuses more than the
// available bonuses (409, 3005) or the cheque's limit (409, 3009). Each
// line's share comes back as a discount of the bonus account.
// commitCheque books the reserved write-off and the accrual into the
// balance and returns the slips to print; its card is the first of cardList,
// else the token's, else the reservation's, and a token that it carries must
// be the card's. A cheque without a card is recorded and books nothing. It
// happens once per dataId: the same cheque again is refused (409, 3006),
// also when two tills race. (Over HTTP, RepeatGuard answers a commitCheque or
// a calcAndReserveBonusPay sent again before it gets here: the same body
// gets the first answer, another body is refused; a commit reaches this rule
// with another guid for the same dataId.)
// getCardBalance gives the booked balance.
//
// Parking. getParkingInfo validates a seed ticket against a committed cheque
// (else 404, 3007; an unknown ticket: 404, 3010): the seed's rule with the
// highest minTotal not above the cheque's totalAmount gives the free hours;
// the ticket's stay is billed at the hourly rate, the free hours off it.
// A commit that names a parkingId validates it the same way.
//
// Texts. cashierAdditionalInfo and chequeAdditionalInfo fill the seed's
// texts with the card's holder, type, masked number and balance, and the
// cheque's bonuses paid and accrued once committed.
//
// Values out of range (a quantity not more than 0 and at most 1000000, an
// amount not from 0 to 1000000000) and missing identifiers: 400, 3000.
class LoyaltyService {
public:
    LoyaltyService(Store& store, const SeedData& seed);

    loyalty::ProcessIdResponse processId(const loyalty::ProcessIdRequest& request);
    loyalty::ProcessPinResponse processPin(const loyalty::ProcessPinRequest& request);
    loyalty::CardBalanceResponse getCardBalance(const loyalty::CardBalanceRequest& request);
    loyalty::CalcBonusAmountResponse
    calcBonusAmount(const loyalty::CalcBonusAmountRequest& request);
    loyalty::CalcAndReserveBonusPayResponse
    calcAndReserveBonusPay(const loyalty::CalcAndReserveBonusPayRequest& request);
    loyalty::CheckPinResponse checkPin(const loyalty::CheckPinRequest& request);
    loyalty::CommitChequeResponse commitCheque(const loyalty::CommitChequeRequest& request);
    loyalty::ParkingInfoResponse getParkingInfo(const loyalty::ParkingInfoRequest& request);
    loyalty::AdditionalInfoResponse
    cashierAdditionalInfo(const loyalty::AdditionalInfoRequest& request);
    loyalty::AdditionalInfoResponse
    chequeAdditionalInfo(const loyalty::AdditionalInfoRequest& request);

    // "****0011": the last four characters of a card number.
    static QString maskCard(const QString& card);
    // "+7 900 ***-**-67": the first four and the last two digits of a phone.
    static QString maskPhone(const QString& phone);

private:
    struct Bonuses;
    Store::Card requireCard(const QString& number);
    Store::Token requireToken(const QString& token, const Store::Card& card);
    Bonuses bonuses(const QList<loyalty::CardListEntry>& cards,
                    const QList<loyalty::LinesEntry>& lines, const QString& token,
                    const QString& dataId);
    Store::ParkingValidation validateParking(const SeedParkingTicket& ticket, const QString& dataId,
                                             Cents total);
    QString fillText(const QString& text, const QString& cardNumber, const QString& token,
                     const QString& chequeId);

    Store& store_;
    const SeedData& seed_;
};

} // namespace vesk::emulator
