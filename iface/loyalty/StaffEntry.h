#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief One staff member of a line of a loyalty cheque, with a percentage.
///
/// An entry of LinesEntry::staff. Both members are plain and always written.
class StaffEntry {
    VESK_RECORD(StaffEntry)
    /// Identifier of the staff member.
    VESK_FIELD(String, staffId)
    /// Percentage of the staff member on the line, as a number. Compared exactly in record
    /// equality, not within a tolerance.
    VESK_FIELD(ExactNumber, percent)
};

} // namespace vesk::loyalty
