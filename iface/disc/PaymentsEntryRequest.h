#pragma once

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One payment of the cheque sent to discCalcPay.
///
/// An entry of DiscCalcPayRequest::payments. The service answers each payment with a
/// PaymentsEntryResponse.
class PaymentsEntryRequest {
    VESK_RECORD(PaymentsEntryRequest)
    /// Number of the payment line in the cheque.
    VESK_FIELD(Integer, payLineNum)
    /// Code of the payment; its values are the service's.
    VESK_FIELD(Integer, code)
    /// The card used for the payment, by its number. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, card)
    /// Amount of the payment, in currency units; compared within 0.005 in record equality.
    VESK_FIELD(Number, amount)
};

} // namespace vesk::disc
