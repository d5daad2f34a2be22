#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Body of getCardBalance: the card whose balance is asked for.
///
/// Sent by Api::getCardBalance, whose reply is a CardBalanceResponse.
class CardBalanceRequest {
    VESK_RECORD(CardBalanceRequest)
    /// The card number.
    VESK_FIELD(String, discCardId)
    /// Token from ProcessIdResponse::token.
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
