#pragma once

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One discount already applied to a line of a discount request.
///
/// An entry of LinesEntryRequest::discounts. Every member is optional and is left out of the body
/// when unset. The service answers with DiscountsEntryResponse, where some of these members are
/// plain.
class DiscountsEntryRequest {
    VESK_RECORD(DiscountsEntryRequest)
    /// Identifier of the discount. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, discId)
    /// The card that the discount is granted for, by its number. Optional: left out of the body
    /// when unset.
    VESK_FIELD(OptionalString, card)
    /// Identifier of the set that the discount belongs to, an integer; its values are the
    /// service's. Optional: left out of the body when unset.
    VESK_FIELD(OptionalInteger, complectId)
    /// Discount per unit of goods, as an amount in currency units; compared within 0.005 in record
    /// equality. Optional: left out of the body when unset.
    VESK_FIELD(OptionalNumber, discUnit)
    /// Quantity of goods that the discount covers, a fractional number; compared within 0.0005 in
    /// record equality. Optional: left out of the body when unset.
    VESK_FIELD(OptionalQuantity, discQty)
};

} // namespace vesk::disc
