#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Body of getCardBalance: the card whose balance is asked for.
class CardBalanceRequest {
    VESK_RECORD(CardBalanceRequest)
    VESK_FIELD(String, discCardId)
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
