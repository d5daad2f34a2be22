#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Reply of getCardBalance: the card's balance and what the host is to show.
class CardBalanceResponse {
    VESK_RECORD(CardBalanceResponse)
    VESK_FIELD(Integer, askOperation)
    VESK_FIELD(Number, balance)
    VESK_FIELD(Integer, retCode)
    VESK_FIELD(String, retMessage)
    VESK_FIELD(Integer, showBalance)
};

} // namespace vesk::loyalty
