#pragma once

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One card presented for the cheque in a discount request.
///
/// An entry of `cardList` in DiscCalcRequest, DiscCalcPayRequest and GetPublicityListRequest. Both
/// members are optional, so an entry with nothing set is sent as an empty JSON object. Not to be
/// confused with vesk::loyalty::CardListEntry, which has other members.
class CardListEntry {
    VESK_RECORD(CardListEntry)
    /// The card, by its number as presented. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, card)
    /// Identifier of the partner that the card belongs to, an integer. Optional: left out of the
    /// body when unset.
    VESK_FIELD(OptionalInteger, partnerId)
};

} // namespace vesk::disc
