#pragma once

// One payment of the discCalcPay reply with its discount.

#include "../records/Record.h"

namespace vesk::disc {

class PaymentsEntryResponse {
    VESK_RECORD(PaymentsEntryResponse)
    VESK_FIELD(Integer, payLineNum)
    VESK_FIELD(Integer, code)
    VESK_FIELD(OptionalString, card)
    VESK_FIELD(Number, amount)
    VESK_FIELD(Number, discAmount)
    VESK_FIELD(Number, payAmount)
};

} // namespace vesk::disc
