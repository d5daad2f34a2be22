#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// One key/value pair of free data of a cheque line (LinesEntry's extraDataLine).
class ExtraDataEntry {
    VESK_RECORD(ExtraDataEntry)
    VESK_FIELD(String, key)
    VESK_FIELD(String, value)
};

} // namespace vesk::loyalty
