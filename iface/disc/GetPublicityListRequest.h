#pragma once

// Body of getPublicityList: the cheque whose promotions are asked for.

#include "CardListEntry.h"
#include "ExtraDataLineEntry.h"
#include "LinesEntryRequest.h"

#include "../records/Record.h"

namespace vesk::disc {

class GetPublicityListRequest {
    VESK_RECORD(GetPublicityListRequest)
    VESK_FIELD(List<CardListEntry>, cardList)
    VESK_FIELD(String, dataId)
    VESK_FIELD(String, dateTime)
    VESK_FIELD(List<ExtraDataLineEntry>, extraData)
    VESK_FIELD(List<LinesEntryRequest>, lines)
    VESK_FIELD(String, orderDateTime)
    VESK_FIELD(Integer, salesChannel)
    VESK_FIELD(Integer, shopNum)
    VESK_FIELD(String, token)
};

} // namespace vesk::disc
