#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Body of checkPin: the card's identification with the PIN that the cashier typed.
///
/// Sent by Api::checkPin, whose reply is a CheckPinResponse. It repeats the identification members
/// of ProcessIdRequest in the same order, except that the kind of operation is keyed
/// `operationType` rather than `opType`, and that `token` is plain and always sent.
class CheckPinRequest {
    VESK_RECORD(CheckPinRequest)
    /// Identifier of the current cheque.
    VESK_FIELD(String, chequeId)
    /// Identifier of the cheque being refunded, when the sale is a return. Optional: left out of
    /// the body when unset.
    VESK_FIELD(OptionalString, chequeIdReturned)
    /// The card number.
    VESK_FIELD(String, discCardId)
    /// Virtual-card flag, an integer rather than a boolean.
    VESK_FIELD(Integer, isVirtual)
    /// Kind of operation, with the meaning of ProcessIdRequest::opType.
    VESK_FIELD(Integer, operationType)
    /// The PIN as the cashier typed it. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, pinCode)
    /// Identifier of the place of sale. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, placeId)
    /// Identifier of the shop, as text. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, shopId)
    /// Number of the shop.
    VESK_FIELD(Integer, shopNum)
    /// Token from ProcessIdResponse::token; always sent.
    VESK_FIELD(String, token)
    /// United location identifier. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, unitedLocationId)
};

} // namespace vesk::loyalty
