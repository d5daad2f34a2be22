#pragma once

// Reply of reserveCheque: the reserved lines of the cheque.

#include "ReserveLinesEntryResponse.h"

#include "../records/Record.h"

namespace vesk::sales {

class ReserveChequeResponse {
    VESK_RECORD(ReserveChequeResponse)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(OptionalString, basketId)
    VESK_FIELD(List<ReserveLinesEntryResponse>, lines)
};

} // namespace vesk::sales
