#pragma once

#include "../records/Record.h"

#include "CalcBonusAmountRequest.h"

namespace vesk::loyalty {

/// @brief Reply of calcBonusAmount: the request echoed back with the service's additions.
///
/// Returned by the prepared request of Api::calcBonusAmount. Its first members are those of
/// CalcBonusAmountRequest, inherited unchanged and filled from the reply; `tokenCorrectness` and
/// `dataIdReturn` follow. Serialised again, it writes the request's members first.
class CalcBonusAmountResponse : public CalcBonusAmountRequest {
    VESK_DERIVED_RECORD(CalcBonusAmountResponse, CalcBonusAmountRequest)
    /// Token correctness code; its values are the service's.
    VESK_FIELD(Integer, tokenCorrectness)
    /// Returned data identifier under the key `dataIdReturn`, which differs from the reservation
    /// records' `dataIdReturned`; the two keys never stand for each other.
    VESK_FIELD(String, dataIdReturn)
};

} // namespace vesk::loyalty
