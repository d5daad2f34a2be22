#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// One payment of a committed cheque, as an element of payments.
class PaymentsEntry {
    VESK_RECORD(PaymentsEntry)
    VESK_FIELD(OptionalString, acquirer)
    VESK_FIELD(Number, amount)
    VESK_FIELD(OptionalString, authCode)
    VESK_FIELD(OptionalString, card)
    VESK_FIELD(Integer, docTypeEnum)
    VESK_FIELD(OptionalString, merchantId)
    VESK_FIELD(OptionalString, payDateTime)
    VESK_FIELD(OptionalString, payment)
    VESK_FIELD(OptionalString, paymentSystemType)
    VESK_FIELD(OptionalString, rrn)
    VESK_FIELD(OptionalString, sourceId)
    VESK_FIELD(OptionalString, terminalId)
    VESK_FIELD(Integer, type)
};

} // namespace vesk::loyalty
