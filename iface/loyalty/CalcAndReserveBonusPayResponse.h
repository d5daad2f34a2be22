#pragma once

#include "../records/Record.h"

#include "CalcBonusAmountResponse.h"

namespace vesk::loyalty {

/// @brief Reply of calcAndReserveBonusPay: the bonus calculation's reply with the reservation's
/// reference.
///
/// Returned by the prepared request of Api::calcAndReserveBonusPay. It derives from
/// CalcBonusAmountResponse, so it has all of its members, `dataIdReturn` included, and adds
/// `dataIdReturned`; both keys are read and written separately.
class CalcAndReserveBonusPayResponse : public CalcBonusAmountResponse {
    VESK_DERIVED_RECORD(CalcAndReserveBonusPayResponse, CalcBonusAmountResponse)
    /// Returned data identifier under the key `dataIdReturned`. A reply that carries only
    /// `dataIdReturn` leaves it empty, and the other way round.
    VESK_FIELD(String, dataIdReturned)
};

} // namespace vesk::loyalty
