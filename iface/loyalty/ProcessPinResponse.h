#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Reply of processPin: where the PIN went and whether to show a PIN field.
class ProcessPinResponse {
    VESK_RECORD(ProcessPinResponse)
    VESK_FIELD(String, phone)
    VESK_FIELD(Integer, pinCodeSended)
    VESK_FIELD(Integer, retCode)
    VESK_FIELD(String, retMessage)
    VESK_FIELD(Integer, showPinField)
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
