#pragma once

// Body of discCalc: the cheque with its cards and lines.

#include "CardListEntry.h"
#include "LinesEntryRequest.h"

#include "../records/Record.h"

namespace vesk::disc {

class DiscCalcRequest {
    VESK_RECORD(DiscCalcRequest)
    VESK_FIELD(List<CardListEntry>, cardList)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(String, calcDateTime)
    VESK_FIELD(List<LinesEntryRequest>, lines)
    VESK_FIELD(StringList, publicities)
    VESK_FIELD(Integer, salesChannel)
    VESK_FIELD(String, storeId)
};

} // namespace vesk::disc
