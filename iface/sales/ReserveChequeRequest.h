#pragma once

// Body of reserveCheque: the goods of a cheque to reserve in a store's stock.

#include "ReserveLinesEntryRequest.h"

#include "../records/Record.h"

namespace vesk::sales {

class ReserveChequeRequest {
    VESK_RECORD(ReserveChequeRequest)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(String, storeId)
    VESK_FIELD(OptionalString, basketId)
    VESK_FIELD(OptionalBoolean, includeFirstRetailPrice)
    VESK_FIELD(List<ReserveLinesEntryRequest>, lines)
};

} // namespace vesk::sales
