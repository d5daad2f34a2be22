#pragma once

// Reply of itemInfo: what the service knows of the item.

#include "../records/Record.h"

namespace vesk::sales {

class ItemInfoResponse {
    VESK_RECORD(ItemInfoResponse)
    VESK_FIELD(String, barcode)
    VESK_FIELD(Integer, barcodeType)
    VESK_FIELD(Number, price)
    VESK_FIELD(String, priceGroupId)
    VESK_FIELD(String, skuId)
    VESK_FIELD(String, name)
    VESK_FIELD(String, article)
    VESK_FIELD(String, itemId)
    VESK_FIELD(String, colorId)
    VESK_FIELD(String, sizeId)
    VESK_FIELD(String, unitId)
    VESK_FIELD(String, groupId)
    VESK_FIELD(String, countryCode)
    VESK_FIELD(String, vendorId)
    VESK_FIELD(Integer, properties)
};

} // namespace vesk::sales
