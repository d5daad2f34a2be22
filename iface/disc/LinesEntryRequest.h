#pragma once

// One line of the cheque sent for calculation.

#include "DiscountsEntryRequest.h"
#include "ExtraDataLineEntry.h"

#include "../records/Record.h"

namespace vesk::disc {

class LinesEntryRequest {
    VESK_RECORD(LinesEntryRequest)
    VESK_FIELD(String, barcode)
    VESK_FIELD(OptionalString, colorId)
    VESK_FIELD(OptionalString, itemId)
    VESK_FIELD(OptionalString, sizeId)
    VESK_FIELD(OptionalString, skuId)
    VESK_FIELD(List<DiscountsEntryRequest>, discounts)
    VESK_FIELD(Integer, lineNum)
    VESK_FIELD(String, locationId)
    VESK_FIELD(Number, retailPrice)
    VESK_FIELD(Quantity, qty)
    VESK_FIELD(List<ExtraDataLineEntry>, extraDataLine)
};

} // namespace vesk::disc
