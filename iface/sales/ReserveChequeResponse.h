#pragma once

#include "ReserveLinesEntryResponse.h"

#include "../records/Record.h"

namespace vesk::sales {

/// @brief Reply of reserveCheque: the reserved lines of the cheque.
///
/// Returned by the prepared request of Api::reserveCheque.
class ReserveChequeResponse {
    VESK_RECORD(ReserveChequeResponse)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// Identifier of the basket. Optional: absent when the reply lacks it.
    VESK_FIELD(OptionalString, basketId)
    /// Reserved lines, in the order received; empty when the reply has none.
    VESK_FIELD(List<ReserveLinesEntryResponse>, lines)
};

} // namespace vesk::sales
