#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Body of processId: identifies a loyalty card, or a virtual card, at a place of sale.
///
/// Sent by Api::processId, whose reply is a ProcessIdResponse. `chequeId`, `discCardId`,
/// `isVirtual`, `opType` and `shopNum` are plain and always sent; the others only when set.
class ProcessIdRequest {
    VESK_RECORD(ProcessIdRequest)
    /// Identifier of the current cheque.
    VESK_FIELD(String, chequeId)
    /// Identifier of the cheque being refunded, when the sale is a return. Optional: left out of
    /// the body when unset.
    VESK_FIELD(OptionalString, chequeIdReturned)
    /// The card number as scanned or typed.
    VESK_FIELD(String, discCardId)
    /// Virtual-card flag, an integer rather than a boolean.
    VESK_FIELD(Integer, isVirtual)
    /// Kind of operation, a code of the service. CheckPinRequest names the same member
    /// `operationType`.
    VESK_FIELD(Integer, opType)
    /// Identifier of the place of sale. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, placeId)
    /// Identifier of the shop, as text. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, shopId)
    /// Number of the shop.
    VESK_FIELD(Integer, shopNum)
    /// Token for the card. Optional here, while the other identification, PIN and balance requests
    /// always send it.
    VESK_FIELD(OptionalString, token)
    /// United location identifier. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, unitedLocationId)
};

} // namespace vesk::loyalty
