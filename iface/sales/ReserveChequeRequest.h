#pragma once

#include "ReserveLinesEntryRequest.h"

#include "../records/Record.h"

namespace vesk::sales {

/// @brief Body of reserveCheque: the goods of a cheque to reserve in a store's stock.
///
/// Sent by Api::reserveCheque, whose reply is a ReserveChequeResponse. `chequeId`, `storeId` and
/// `lines` are always sent; `basketId` and `includeFirstRetailPrice` only when set.
class ReserveChequeRequest {
    VESK_RECORD(ReserveChequeRequest)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// Identifier of the store.
    VESK_FIELD(String, storeId)
    /// Identifier of the basket. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, basketId)
    /// Flag for the service to include the first retail price. Optional: left out of the body
    /// unless set, and sent as false when set to false.
    VESK_FIELD(OptionalBoolean, includeFirstRetailPrice)
    /// Goods lines to reserve, in order. Always sent, as an empty array when there are none.
    VESK_FIELD(List<ReserveLinesEntryRequest>, lines)
};

} // namespace vesk::sales
