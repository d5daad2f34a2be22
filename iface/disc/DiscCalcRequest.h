#pragma once

#include "CardListEntry.h"
#include "LinesEntryRequest.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief Body of discCalc: the cheque with its cards and lines, sent for discount calculation.
///
/// Sent by Api::discCalc, whose reply is a DiscCalcResponse. Every member is plain, so the body
/// always has all seven keys.
class DiscCalcRequest {
    VESK_RECORD(DiscCalcRequest)
    /// Cards presented for the cheque.
    VESK_FIELD(List<CardListEntry>, cardList)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// Date and time of the calculation, as text; sent exactly as the caller gives it, neither
    /// formatted nor checked.
    VESK_FIELD(String, calcDateTime)
    /// Lines of the cheque.
    VESK_FIELD(List<LinesEntryRequest>, lines)
    /// Promotions for the calculation, as a list of strings (unlike VariantsEntry::publicities,
    /// which holds records).
    VESK_FIELD(StringList, publicities)
    /// Code of the sales channel; its values are the service's.
    VESK_FIELD(Integer, salesChannel)
    /// Identifier of the store, as text.
    VESK_FIELD(String, storeId)
};

} // namespace vesk::disc
