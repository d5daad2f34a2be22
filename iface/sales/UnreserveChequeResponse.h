#pragma once

#include "../records/Record.h"

namespace vesk::sales {

/// @brief Reply of unreserveCheque: the cheque whose reservation was released.
///
/// Returned by the prepared request of Api::unreserveCheque. It has the same single member as the
/// request.
class UnreserveChequeResponse {
    VESK_RECORD(UnreserveChequeResponse)
    /// Identifier of the cheque whose reservation was released.
    VESK_FIELD(String, chequeId)
};

} // namespace vesk::sales
