#pragma once

// One goods line of a cheque to reserve.

#include "../records/Record.h"

namespace vesk::sales {

class ReserveLinesEntryRequest {
    VESK_RECORD(ReserveLinesEntryRequest)
    VESK_FIELD(String, barcode)
    VESK_FIELD(String, sectionId)
    VESK_FIELD(String, skuId)
    VESK_FIELD(Integer, lineNum)
    VESK_FIELD(Quantity, qty)
};

} // namespace vesk::sales
