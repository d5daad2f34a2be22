#pragma once

// One discount already applied to a line of the cheque sent for calculation.

#include "../records/Record.h"

namespace vesk::disc {

class DiscountsEntryRequest {
    VESK_RECORD(DiscountsEntryRequest)
    VESK_FIELD(OptionalString, discId)
    VESK_FIELD(OptionalString, card)
    VESK_FIELD(OptionalInteger, complectId)
    VESK_FIELD(OptionalNumber, discUnit)
    VESK_FIELD(OptionalQuantity, discQty)
};

} // namespace vesk::disc
