#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief One key and value pair of free data of a line of a loyalty cheque.
///
/// An entry of LinesEntry::extraDataLine. Both members are plain and always written.
class ExtraDataEntry {
    VESK_RECORD(ExtraDataEntry)
    /// Name of the datum.
    VESK_FIELD(String, key)
    /// Value of the datum, always a string.
    VESK_FIELD(String, value)
};

} // namespace vesk::loyalty
