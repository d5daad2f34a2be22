#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Body of cashierAdditionalInfo and chequeAdditionalInfo: the cheque and card asked about.
class AdditionalInfoRequest {
    VESK_RECORD(AdditionalInfoRequest)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(String, discCardId)
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
