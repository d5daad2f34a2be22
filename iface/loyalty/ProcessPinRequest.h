#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Body of processPin: asks the service to send a PIN to the card holder.
///
/// Sent by Api::processPin, whose reply is a ProcessPinResponse.
class ProcessPinRequest {
    VESK_RECORD(ProcessPinRequest)
    /// Identifier of the cheque being refunded, when the sale is a return. Optional: left out of
    /// the body when unset.
    VESK_FIELD(OptionalString, chequeIdReturned)
    /// The card number.
    VESK_FIELD(String, discCardId)
    /// Token from ProcessIdResponse::token.
    VESK_FIELD(String, token)
    /// United location identifier. The key is spelled without the d of `unitedLocationId`: this
    /// request alone uses it, and the service expects it so. Optional: left out of the body when
    /// unset.
    VESK_FIELD(OptionalString, uniteLocationId)
};

} // namespace vesk::loyalty
