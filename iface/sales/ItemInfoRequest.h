#pragma once

// Body of itemInfo: the barcode of an item and the store section whose stock is asked.

#include "../records/Record.h"

namespace vesk::sales {

class ItemInfoRequest {
    VESK_RECORD(ItemInfoRequest)
    VESK_FIELD(String, sectionId)
    VESK_FIELD(String, barcode)
};

} // namespace vesk::sales
