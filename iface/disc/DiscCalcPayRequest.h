#pragma once

// Body of discCalcPay: the cheque with its cards, lines and payments.

#include "CardListEntry.h"
#include "LinesEntryRequest.h"
#include "PaymentsEntryRequest.h"

#include "../records/Record.h"

namespace vesk::disc {

class DiscCalcPayRequest {
    VESK_RECORD(DiscCalcPayRequest)
    VESK_FIELD(List<CardListEntry>, cardList)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(String, calcDateTime)
    VESK_FIELD(List<LinesEntryRequest>, lines)
    VESK_FIELD(List<PaymentsEntryRequest>, payments)
    VESK_FIELD(StringList, publicities)
    VESK_FIELD(Integer, salesChannel)
    VESK_FIELD(String, storeId)
};

} // namespace vesk::disc
