#pragma once

#include "../records/Record.h"

#include "CalcBonusAmountRequest.h"

namespace vesk::loyalty {

// Reply of calcBonusAmount: the request echoed back with the service's additions.
class CalcBonusAmountResponse : public CalcBonusAmountRequest {
    VESK_DERIVED_RECORD(CalcBonusAmountResponse, CalcBonusAmountRequest)
    VESK_FIELD(Integer, tokenCorrectness)
    VESK_FIELD(String, dataIdReturn)
};

} // namespace vesk::loyalty
