#pragma once

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One discount that the service grants on a line.
///
/// An entry of LinesEntryResponse::discounts in the replies of discCalc and discCalcPay. Unlike
/// DiscountsEntryRequest, `discId`, `card` and `complectId` are plain here (an empty string or 0
/// when the reply lacks them), and `payLineNum`, `payCode` and `description` are added.
class DiscountsEntryResponse {
    VESK_RECORD(DiscountsEntryResponse)
    /// Identifier of the discount granted.
    VESK_FIELD(String, discId)
    /// The card that the discount is granted for, by its number; empty when none.
    VESK_FIELD(String, card)
    /// Identifier of the set that the discount belongs to, an integer; its values are the
    /// service's.
    VESK_FIELD(Integer, complectId)
    /// Number of the payment line that the discount concerns. Optional: absent when the reply lacks
    /// it.
    VESK_FIELD(OptionalInteger, payLineNum)
    /// Code of the payment that the discount concerns; its values are the service's. Optional:
    /// absent when the reply lacks it.
    VESK_FIELD(OptionalInteger, payCode)
    /// Discount per unit of goods, as an amount in currency units; compared within 0.005 in record
    /// equality.
    VESK_FIELD(Number, discUnit)
    /// Quantity of goods that the discount covers, a fractional number; compared within 0.0005 in
    /// record equality.
    VESK_FIELD(Quantity, discQty)
    /// Description of the discount, as text.
    VESK_FIELD(String, description)
};

} // namespace vesk::disc
