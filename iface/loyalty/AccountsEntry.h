#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief One account of a loyalty card.
///
/// An entry of CardListEntry::accounts; never sent alone. The amounts and account codes come first,
/// then the identifying and state members, each run in alphabetical order. The six members
/// `balance`, `confirmedAmount`, `maxPay`, `minPay`, `presentAccountType` and `presentCodeAccount`
/// are optional; the other nineteen are plain and always written, as an empty string or 0 when
/// unset.
///
/// The integer codes and flags are the service's; the library carries them without interpretation.
class AccountsEntry {
    VESK_RECORD(AccountsEntry)
    /// Balance of the account, as the service counts it. A reply without it leaves the member
    /// absent, not 0. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalNumber, balance)
    /// Code of the account. DiscountsEntry and SlipsEntry name the account by the same key.
    VESK_FIELD(Integer, codeAccount)
    /// Amount confirmed on the account. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalNumber, confirmedAmount)
    /// Largest payment allowed from the account. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalNumber, maxPay)
    /// Smallest payment allowed from the account. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalNumber, minPay)
    /// Type code of the present account; its values are the service's. Optional: left out of the
    /// JSON object when unset.
    VESK_FIELD(OptionalInteger, presentAccountType)
    /// Code of the present account. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalInteger, presentCodeAccount)
    /// Amount requested from the account. The only plain amount of the record: always written, 0
    /// when unset.
    VESK_FIELD(Number, requestAmount)
    /// Boutique card identifier, as text.
    VESK_FIELD(String, boutiqueCardId)
    /// The card, by its number.
    VESK_FIELD(String, card)
    /// Number of the card, a key of its own beside `card` and `cardPan`.
    VESK_FIELD(String, cardNumber)
    /// PAN of the card, a key of its own beside `card` and `cardNumber`.
    VESK_FIELD(String, cardPan)
    /// Type code of the card.
    VESK_FIELD(Integer, cardType)
    /// Full name of the card holder.
    VESK_FIELD(String, fio)
    /// Hash of the card, as the service gives it.
    VESK_FIELD(String, hash)
    /// Identification code; its values are the service's.
    VESK_FIELD(Integer, identityCode)
    /// Identification message, as text.
    VESK_FIELD(String, identityMessage)
    /// Virtual-card flag, an integer rather than a boolean (the JSON carries a number).
    VESK_FIELD(Integer, isVirtual)
    /// Kind of operation, a code of the service.
    VESK_FIELD(Integer, opType)
    /// External identifier of the partner, an integer rather than a string; a numeric string in the
    /// reply is converted.
    VESK_FIELD(Integer, partnerExternalId)
    /// GUID of the partner, as text. The key is spelled with upper-case `GUID`.
    VESK_FIELD(String, partnerGUID)
    /// PIN code, as text.
    VESK_FIELD(String, pinCode)
    /// Status code of the account.
    VESK_FIELD(Integer, status)
    /// Status code of the present's activation.
    VESK_FIELD(Integer, statusPresentActivate)
    /// Status code of the type change.
    VESK_FIELD(Integer, statusTypeChange)
};

} // namespace vesk::loyalty
