#pragma once

#include "../records/Record.h"

#include "AccountsEntry.h"

namespace vesk::loyalty {

/// @brief One loyalty card of a sale with its accounts.
///
/// An entry of `cardList` in CalcBonusAmountRequest, CalcAndReserveBonusPayRequest,
/// CommitChequeRequest and CommitChequeResponse, so the card and account state travels inside those
/// bodies. It repeats six keys of AccountsEntry, but here `hash`, `partnerExternalId` and
/// `partnerGUID` are optional and left out when unset. Not to be confused with
/// vesk::disc::CardListEntry, which has other members.
class CardListEntry {
    VESK_RECORD(CardListEntry)
    /// Accounts of the card, in order. Always written, as an empty array when the card has none.
    VESK_FIELD(List<AccountsEntry>, accounts)
    /// The card, by its number.
    VESK_FIELD(String, card)
    /// Hash of the card, as the service gives it. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, hash)
    /// Virtual-card flag, an integer rather than a boolean (the JSON carries a number).
    VESK_FIELD(Integer, isVirtual)
    /// Kind of operation, a code of the service.
    VESK_FIELD(Integer, opType)
    /// External identifier of the partner, an integer as in AccountsEntry. Optional: left out of
    /// the JSON object when unset.
    VESK_FIELD(OptionalInteger, partnerExternalId)
    /// GUID of the partner, as text. The key is spelled with upper-case `GUID`. Optional: left out
    /// of the JSON object when unset.
    VESK_FIELD(OptionalString, partnerGUID)
};

} // namespace vesk::loyalty
