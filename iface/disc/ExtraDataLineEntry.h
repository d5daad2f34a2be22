#pragma once

// One free key and value pair of a line or of the whole cheque.

#include "../records/Record.h"

namespace vesk::disc {

class ExtraDataLineEntry {
    VESK_RECORD(ExtraDataLineEntry)
    VESK_FIELD(OptionalString, key)
    VESK_FIELD(OptionalString, value)
};

} // namespace vesk::disc
