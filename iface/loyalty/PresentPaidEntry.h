#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief One present-card payment of a line of a loyalty cheque.
///
/// An entry of LinesEntry::presentPaid. Every member is optional, so an entry with nothing set is
/// written as an empty JSON object.
class PresentPaidEntry {
    VESK_RECORD(PresentPaidEntry)
    /// The present card, by its number. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, card)
    /// Quantity paid by the card, a fractional number. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalQuantity, paidQty)
    /// Value paid by the card, in the service's unit. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalNumber, paidUnit)
};

} // namespace vesk::loyalty
