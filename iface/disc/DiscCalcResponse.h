#pragma once

// Reply of discCalc: the cheque's lines with their discounts.

#include "LinesEntryResponse.h"

#include "../records/Record.h"

namespace vesk::disc {

class DiscCalcResponse {
    VESK_RECORD(DiscCalcResponse)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(String, calcDateTime)
    VESK_FIELD(List<LinesEntryResponse>, lines)
};

} // namespace vesk::disc
