#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Reply of checkPin: whether the PIN was right.
class CheckPinResponse {
    VESK_RECORD(CheckPinResponse)
    VESK_FIELD(Integer, correctPin)
    VESK_FIELD(String, discCardId)
    VESK_FIELD(Integer, retCode)
    VESK_FIELD(String, retMessage)
};

} // namespace vesk::loyalty
