#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// One present-card payment of a cheque line, as an element of LinesEntry's presentPaid.
class PresentPaidEntry {
    VESK_RECORD(PresentPaidEntry)
    VESK_FIELD(OptionalString, card)
    VESK_FIELD(OptionalQuantity, paidQty)
    VESK_FIELD(OptionalNumber, paidUnit)
};

} // namespace vesk::loyalty
