#pragma once

#include "DiscountsEntryResponse.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One line of a discount calculation reply with the discounts granted on it.
///
/// An entry of `lines` in DiscCalcResponse and DiscCalcPayResponse.
class LinesEntryResponse {
    VESK_RECORD(LinesEntryResponse)
    /// Discounts granted on the line; empty when there are none.
    VESK_FIELD(List<DiscountsEntryResponse>, discounts)
    /// Number of the line in the cheque.
    VESK_FIELD(Integer, lineNum)
};

} // namespace vesk::disc
