#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Body of processPin: asks the service to send a PIN to the card holder.
class ProcessPinRequest {
    VESK_RECORD(ProcessPinRequest)
    VESK_FIELD(OptionalString, chequeIdReturned)
    VESK_FIELD(String, discCardId)
    VESK_FIELD(String, token)
    VESK_FIELD(OptionalString, uniteLocationId)
};

} // namespace vesk::loyalty
