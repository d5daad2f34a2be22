#pragma once

#include "../records/Record.h"

namespace vesk::sales {

/// @brief Body of itemInfo: the barcode of an item and the store section whose stock is asked.
///
/// Sent by Api::itemInfo, whose reply is an ItemInfoResponse. Both members are plain and always
/// sent.
class ItemInfoRequest {
    VESK_RECORD(ItemInfoRequest)
    /// Store section in whose stock the item is looked up.
    VESK_FIELD(String, sectionId)
    /// The barcode as scanned.
    VESK_FIELD(String, barcode)
};

} // namespace vesk::sales
