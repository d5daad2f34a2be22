#pragma once

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One free key and value pair of a discount request.
///
/// An entry of LinesEntryRequest::extraDataLine (data of one line) and of
/// GetPublicityListRequest::extraData (data of the whole cheque). Both members are optional.
class ExtraDataLineEntry {
    VESK_RECORD(ExtraDataLineEntry)
    /// Name of the datum. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, key)
    /// Value of the datum, as text. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, value)
};

} // namespace vesk::disc
