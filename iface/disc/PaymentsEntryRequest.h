#pragma once

// One payment of the cheque sent to discCalcPay.

#include "../records/Record.h"

namespace vesk::disc {

class PaymentsEntryRequest {
    VESK_RECORD(PaymentsEntryRequest)
    VESK_FIELD(Integer, payLineNum)
    VESK_FIELD(Integer, code)
    VESK_FIELD(OptionalString, card)
    VESK_FIELD(Number, amount)
};

} // namespace vesk::disc
