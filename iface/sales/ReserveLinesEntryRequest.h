#pragma once

#include "../records/Record.h"

namespace vesk::sales {

/// @brief One goods line of a cheque to reserve.
///
/// An entry of ReserveChequeRequest::lines. Every member is plain and always sent. The service
/// answers each line with a ReserveLinesEntryResponse, a distinct record that shares the first four
/// members.
class ReserveLinesEntryRequest {
    VESK_RECORD(ReserveLinesEntryRequest)
    /// Barcode of the line's item.
    VESK_FIELD(String, barcode)
    /// Store section in whose stock the goods are reserved.
    VESK_FIELD(String, sectionId)
    /// Stock-keeping unit identifier of the item.
    VESK_FIELD(String, skuId)
    /// Number of the line in the cheque; carried unchanged, never renumbered.
    VESK_FIELD(Integer, lineNum)
    /// Quantity to reserve, a fractional number.
    VESK_FIELD(Quantity, qty)
};

} // namespace vesk::sales
