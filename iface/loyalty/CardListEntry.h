#pragma once

#include "../records/Record.h"

#include "AccountsEntry.h"

namespace vesk::loyalty {

// One loyalty card of a sale with its accounts, as an element of a cardList.
class CardListEntry {
    VESK_RECORD(CardListEntry)
    VESK_FIELD(List<AccountsEntry>, accounts)
    VESK_FIELD(String, card)
    VESK_FIELD(OptionalString, hash)
    VESK_FIELD(Integer, isVirtual)
    VESK_FIELD(Integer, opType)
    VESK_FIELD(OptionalInteger, partnerExternalId)
    VESK_FIELD(OptionalString, partnerGUID)
};

} // namespace vesk::loyalty
