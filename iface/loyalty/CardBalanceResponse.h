#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Reply of getCardBalance: the card's balance and what the host is to show.
///
/// Returned by the prepared request of Api::getCardBalance. Every member is plain: an empty string
/// or 0 when the reply lacks it. The flags are integers rather than booleans.
class CardBalanceResponse {
    VESK_RECORD(CardBalanceResponse)
    /// Flag for the host; its meaning is the service's.
    VESK_FIELD(Integer, askOperation)
    /// Balance of the card, as the service counts it; an integer in the reply, such as 150, reads
    /// as 150.0. Compared within 0.005 in record equality.
    VESK_FIELD(Number, balance)
    /// Result code of the service.
    VESK_FIELD(Integer, retCode)
    /// Result text of the service.
    VESK_FIELD(String, retMessage)
    /// Flag: the host is to show the balance.
    VESK_FIELD(Integer, showBalance)
};

} // namespace vesk::loyalty
