#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Body of processId: identifies a card (or a virtual card) at a place of sale.
class ProcessIdRequest {
    VESK_RECORD(ProcessIdRequest)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(OptionalString, chequeIdReturned)
    VESK_FIELD(String, discCardId)
    VESK_FIELD(Integer, isVirtual)
    VESK_FIELD(Integer, opType)
    VESK_FIELD(OptionalString, placeId)
    VESK_FIELD(OptionalString, shopId)
    VESK_FIELD(Integer, shopNum)
    VESK_FIELD(OptionalString, token)
    VESK_FIELD(OptionalString, unitedLocationId)
};

} // namespace vesk::loyalty
