#pragma once

// Reply of unreserveCheque: the cheque whose reservation was released.

#include "../records/Record.h"

namespace vesk::sales {

class UnreserveChequeResponse {
    VESK_RECORD(UnreserveChequeResponse)
    VESK_FIELD(String, chequeId)
};

} // namespace vesk::sales
