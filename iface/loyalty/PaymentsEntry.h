#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief One payment of a cheque committed to the loyalty service.
///
/// An entry of `payments` in CommitChequeRequest and CommitChequeResponse. Members run in
/// alphabetical order; `amount`, `docTypeEnum` and `type` are plain and always written, the others
/// only when set.
class PaymentsEntry {
    VESK_RECORD(PaymentsEntry)
    /// Acquirer of a card payment, as text. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, acquirer)
    /// Amount of the payment, in currency units.
    VESK_FIELD(Number, amount)
    /// Authorisation code of a card payment. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, authCode)
    /// The card of the payment, by its number. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, card)
    /// Document type code; its values are the service's.
    VESK_FIELD(Integer, docTypeEnum)
    /// Merchant identifier of a card payment. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, merchantId)
    /// Date and time of the payment, as text; passed through exactly as given. Optional: left out
    /// of the JSON object when unset.
    VESK_FIELD(OptionalString, payDateTime)
    /// Payment text under the key `payment`. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, payment)
    /// Type of the payment system, as text rather than an integer. Optional: left out of the JSON
    /// object when unset.
    VESK_FIELD(OptionalString, paymentSystemType)
    /// Retrieval reference number of a card payment. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalString, rrn)
    /// Identifier of the payment's source. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, sourceId)
    /// Identifier of the payment terminal. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, terminalId)
    /// Type code of the payment; its values are the service's.
    VESK_FIELD(Integer, type)
};

} // namespace vesk::loyalty
