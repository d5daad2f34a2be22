#pragma once

#include "../records/Record.h"

namespace vesk::sales {

/// @brief Body of unreserveCheque: the cheque whose reservation is released.
///
/// Sent by Api::unreserveCheque, whose reply is an UnreserveChequeResponse. The release does not
/// need an earlier reserveCheque through the same client.
class UnreserveChequeRequest {
    VESK_RECORD(UnreserveChequeRequest)
    /// Identifier of the cheque whose reservation is released.
    VESK_FIELD(String, chequeId)
};

} // namespace vesk::sales
