#pragma once

// One line of a calculation reply with the discounts granted on it.

#include "DiscountsEntryResponse.h"

#include "../records/Record.h"

namespace vesk::disc {

class LinesEntryResponse {
    VESK_RECORD(LinesEntryResponse)
    VESK_FIELD(List<DiscountsEntryResponse>, discounts)
    VESK_FIELD(Integer, lineNum)
};

} // namespace vesk::disc
