#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Body of cashierAdditionalInfo and chequeAdditionalInfo: the cheque and card asked about.
///
/// Sent alike by Api::cashierAdditionalInfo and Api::chequeAdditionalInfo, whose replies are both
/// an AdditionalInfoResponse; only the endpoint says whose text is asked for. All members are plain
/// and always sent.
class AdditionalInfoRequest {
    VESK_RECORD(AdditionalInfoRequest)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// The card number.
    VESK_FIELD(String, discCardId)
    /// Token from the card's identification (ProcessIdResponse::token).
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
