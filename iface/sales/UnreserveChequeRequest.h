#pragma once

// Body of unreserveCheque: the cheque whose reservation is released.

#include "../records/Record.h"

namespace vesk::sales {

class UnreserveChequeRequest {
    VESK_RECORD(UnreserveChequeRequest)
    VESK_FIELD(String, chequeId)
};

} // namespace vesk::sales
