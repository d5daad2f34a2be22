#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Reply of cashierAdditionalInfo and chequeAdditionalInfo: the cashier's and the cheque's
/// texts.
///
/// Returned by the prepared requests of both operations. Each fills the text that concerns it, as
/// the service decides; the record always has both members, and one the reply lacks reads as an
/// empty string.
class AdditionalInfoResponse {
    VESK_RECORD(AdditionalInfoResponse)
    /// Text to show to the cashier.
    VESK_FIELD(String, cashierText)
    /// Text to print on the cheque.
    VESK_FIELD(String, chequeText)
};

} // namespace vesk::loyalty
