#pragma once

// One discount that the service grants on a line.

#include "../records/Record.h"

namespace vesk::disc {

class DiscountsEntryResponse {
    VESK_RECORD(DiscountsEntryResponse)
    VESK_FIELD(String, discId)
    VESK_FIELD(String, card)
    VESK_FIELD(Integer, complectId)
    VESK_FIELD(OptionalInteger, payLineNum)
    VESK_FIELD(OptionalInteger, payCode)
    VESK_FIELD(Number, discUnit)
    VESK_FIELD(Quantity, discQty)
    VESK_FIELD(String, description)
};

} // namespace vesk::disc
