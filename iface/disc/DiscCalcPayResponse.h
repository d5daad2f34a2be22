#pragma once

// Reply of discCalcPay: the cheque's lines and payments with their discounts.

#include "LinesEntryResponse.h"
#include "PaymentsEntryResponse.h"

#include "../records/Record.h"

namespace vesk::disc {

class DiscCalcPayResponse {
    VESK_RECORD(DiscCalcPayResponse)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(String, calcDateTime)
    VESK_FIELD(List<LinesEntryResponse>, lines)
    VESK_FIELD(List<PaymentsEntryResponse>, payments)
};

} // namespace vesk::disc
