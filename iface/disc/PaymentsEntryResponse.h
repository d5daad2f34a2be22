#pragma once

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One payment of the discCalcPay reply with its discount.
///
/// An entry of DiscCalcPayResponse::payments.
class PaymentsEntryResponse {
    VESK_RECORD(PaymentsEntryResponse)
    /// Number of the payment line in the cheque.
    VESK_FIELD(Integer, payLineNum)
    /// Code of the payment; its values are the service's.
    VESK_FIELD(Integer, code)
    /// The card used for the payment, by its number. Optional: absent when the reply lacks it.
    VESK_FIELD(OptionalString, card)
    /// Amount of the payment, in currency units; compared within 0.005 in record equality.
    VESK_FIELD(Number, amount)
    /// Discount on the payment, in currency units; compared within 0.005 in record equality.
    VESK_FIELD(Number, discAmount)
    /// Amount to pay, in currency units; compared within 0.005 in record equality.
    VESK_FIELD(Number, payAmount)
};

} // namespace vesk::disc
