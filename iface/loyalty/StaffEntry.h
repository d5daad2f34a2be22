#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// One staff member of a cheque line with a percentage (LinesEntry's staff).
class StaffEntry {
    VESK_RECORD(StaffEntry)
    VESK_FIELD(String, staffId)
    VESK_FIELD(ExactNumber, percent)
};

} // namespace vesk::loyalty
