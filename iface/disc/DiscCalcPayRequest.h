#pragma once

#include "CardListEntry.h"
#include "LinesEntryRequest.h"
#include "PaymentsEntryRequest.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief Body of discCalcPay: the cheque with its cards, lines and payments, sent for discount
/// calculation.
///
/// Sent by Api::discCalcPay, whose reply is a DiscCalcPayResponse. It has the members of
/// DiscCalcRequest with `payments` after `lines`; every member is plain and always sent.
class DiscCalcPayRequest {
    VESK_RECORD(DiscCalcPayRequest)
    /// Cards presented for the cheque.
    VESK_FIELD(List<CardListEntry>, cardList)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// Date and time of the calculation, as text; sent exactly as the caller gives it, neither
    /// formatted nor checked.
    VESK_FIELD(String, calcDateTime)
    /// Lines of the cheque.
    VESK_FIELD(List<LinesEntryRequest>, lines)
    /// Payments of the cheque.
    VESK_FIELD(List<PaymentsEntryRequest>, payments)
    /// Promotions for the calculation, as a list of strings (unlike VariantsEntry::publicities,
    /// which holds records).
    VESK_FIELD(StringList, publicities)
    /// Code of the sales channel; its values are the service's.
    VESK_FIELD(Integer, salesChannel)
    /// Identifier of the store, as text.
    VESK_FIELD(String, storeId)
};

} // namespace vesk::disc
