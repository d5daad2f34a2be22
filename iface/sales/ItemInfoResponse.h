#pragma once

#include "../records/Record.h"

namespace vesk::sales {

/// @brief Reply of itemInfo: what the service knows of the item.
///
/// Returned by the prepared request of Api::itemInfo. Every member is plain: an empty string or 0
/// when the reply lacks it. The meaning of `barcodeType` and of the bits of `properties` is the
/// service's.
class ItemInfoResponse {
    VESK_RECORD(ItemInfoResponse)
    /// Barcode of the item.
    VESK_FIELD(String, barcode)
    /// Type code of the barcode.
    VESK_FIELD(Integer, barcodeType)
    /// Price of the item, in currency units; an integer in the reply, such as 1200, reads as
    /// 1200.0.
    VESK_FIELD(Number, price)
    /// Identifier of the item's price group.
    VESK_FIELD(String, priceGroupId)
    /// Stock-keeping unit identifier of the item.
    VESK_FIELD(String, skuId)
    /// Name of the item.
    VESK_FIELD(String, name)
    /// Article of the item, as text.
    VESK_FIELD(String, article)
    /// Identifier of the item.
    VESK_FIELD(String, itemId)
    /// Colour identifier of the item.
    VESK_FIELD(String, colorId)
    /// Size identifier of the item.
    VESK_FIELD(String, sizeId)
    /// Unit of measure of the item.
    VESK_FIELD(String, unitId)
    /// Identifier of the item's group.
    VESK_FIELD(String, groupId)
    /// Country code of the item, as text.
    VESK_FIELD(String, countryCode)
    /// Identifier of the item's vendor.
    VESK_FIELD(String, vendorId)
    /// Properties of the item, a single 32-bit integer despite the plural name (not a list or an
    /// object).
    VESK_FIELD(Integer, properties)
};

} // namespace vesk::sales
