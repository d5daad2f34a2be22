#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Reply of cashierAdditionalInfo and chequeAdditionalInfo: the cashier's and the cheque's texts.
class AdditionalInfoResponse {
    VESK_RECORD(AdditionalInfoResponse)
    VESK_FIELD(String, cashierText)
    VESK_FIELD(String, chequeText)
};

} // namespace vesk::loyalty
