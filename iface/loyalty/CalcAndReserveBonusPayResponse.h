#pragma once

#include "../records/Record.h"

#include "CalcBonusAmountResponse.h"

namespace vesk::loyalty {

// Reply of calcAndReserveBonusPay: the bonus calculation's reply with the reservation's reference.
class CalcAndReserveBonusPayResponse : public CalcBonusAmountResponse {
    VESK_DERIVED_RECORD(CalcAndReserveBonusPayResponse, CalcBonusAmountResponse)
    VESK_FIELD(String, dataIdReturned)
};

} // namespace vesk::loyalty
