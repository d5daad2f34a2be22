#pragma once

#include "LinesEntryResponse.h"
#include "PaymentsEntryResponse.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief Reply of discCalcPay: the cheque's lines and payments with their discounts.
///
/// Returned by the prepared request of Api::discCalcPay. Members that the reply lacks keep their
/// defaults, and keys that name no member are ignored.
class DiscCalcPayResponse {
    VESK_RECORD(DiscCalcPayResponse)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// Date and time of the calculation, as text as the service gives it.
    VESK_FIELD(String, calcDateTime)
    /// Lines of the cheque with their discounts.
    VESK_FIELD(List<LinesEntryResponse>, lines)
    /// Payments of the cheque with their discounts.
    VESK_FIELD(List<PaymentsEntryResponse>, payments)
};

} // namespace vesk::disc
