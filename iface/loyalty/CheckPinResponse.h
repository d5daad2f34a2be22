#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Reply of checkPin: whether the PIN was right.
///
/// Returned by the prepared request of Api::checkPin. Every member is plain: an empty string or 0
/// when the reply lacks it.
class CheckPinResponse {
    VESK_RECORD(CheckPinResponse)
    /// Flag, an integer: the PIN was right.
    VESK_FIELD(Integer, correctPin)
    /// The card number.
    VESK_FIELD(String, discCardId)
    /// Result code of the service.
    VESK_FIELD(Integer, retCode)
    /// Result text of the service.
    VESK_FIELD(String, retMessage)
};

} // namespace vesk::loyalty
