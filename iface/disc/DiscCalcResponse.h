#pragma once

#include "LinesEntryResponse.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief Reply of discCalc: the cheque's lines with the discounts granted on them.
///
/// Returned by the prepared request of Api::discCalc. Members that the reply lacks keep their
/// defaults, and keys that name no member are ignored.
class DiscCalcResponse {
    VESK_RECORD(DiscCalcResponse)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// Date and time of the calculation, as text as the service gives it.
    VESK_FIELD(String, calcDateTime)
    /// Lines of the cheque with their discounts.
    VESK_FIELD(List<LinesEntryResponse>, lines)
};

} // namespace vesk::disc
