#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Body of checkPin: the card's identification with the PIN that the cashier typed.
class CheckPinRequest {
    VESK_RECORD(CheckPinRequest)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(OptionalString, chequeIdReturned)
    VESK_FIELD(String, discCardId)
    VESK_FIELD(Integer, isVirtual)
    VESK_FIELD(Integer, operationType)
    VESK_FIELD(OptionalString, pinCode)
    VESK_FIELD(OptionalString, placeId)
    VESK_FIELD(OptionalString, shopId)
    VESK_FIELD(Integer, shopNum)
    VESK_FIELD(String, token)
    VESK_FIELD(OptionalString, unitedLocationId)
};

} // namespace vesk::loyalty
