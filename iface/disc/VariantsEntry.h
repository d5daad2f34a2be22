#pragma once

// One numbered variant of promotions.

#include "PublicitiesEntry.h"

#include "../records/Record.h"

namespace vesk::disc {

class VariantsEntry {
    VESK_RECORD(VariantsEntry)
    VESK_FIELD(List<PublicitiesEntry>, publicities)
    VESK_FIELD(Integer, variantNum)
};

} // namespace vesk::disc
