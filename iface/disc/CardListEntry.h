#pragma once

// One card presented for the cheque.

#include "../records/Record.h"

namespace vesk::disc {

class CardListEntry {
    VESK_RECORD(CardListEntry)
    VESK_FIELD(OptionalString, card)
    VESK_FIELD(OptionalInteger, partnerId)
};

} // namespace vesk::disc
