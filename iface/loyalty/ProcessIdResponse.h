#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Reply of processId: the identified card, its holder and the token for the next calls.
///
/// Returned by the prepared request of Api::processId. Every member is plain: an empty string or 0
/// when the reply lacks it. The flags are integers rather than booleans.
class ProcessIdResponse {
    VESK_RECORD(ProcessIdResponse)
    /// Full name of the card holder.
    VESK_FIELD(String, clientFIO)
    /// The card number as the service knows it.
    VESK_FIELD(String, discCardId)
    /// Type of the card.
    VESK_FIELD(String, discCardTypeId)
    /// Flag: a PIN confirmation is required before the card may be used.
    VESK_FIELD(Integer, identityIsRequired)
    /// Flag: the card is a loyalty card.
    VESK_FIELD(Integer, isLoyaltyCard)
    /// Result code of the service.
    VESK_FIELD(Integer, retCode)
    /// Result text of the service.
    VESK_FIELD(String, retMessage)
    /// Token that the following requests for the same card carry.
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
