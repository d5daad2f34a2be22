#pragma once

#include "DiscountsEntryRequest.h"
#include "ExtraDataLineEntry.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One line of the cheque in a discount request.
///
/// An entry of `lines` in DiscCalcRequest, DiscCalcPayRequest and GetPublicityListRequest. The
/// plain members and both lists are always sent; `colorId`, `itemId`, `sizeId` and `skuId` only
/// when set.
class LinesEntryRequest {
    VESK_RECORD(LinesEntryRequest)
    /// Barcode of the line's item. Always sent, as an empty string when unset. This service spells
    /// the key `barcode`; the loyalty service uses `barCode`.
    VESK_FIELD(String, barcode)
    /// Colour identifier of the item. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, colorId)
    /// Identifier of the item. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, itemId)
    /// Size identifier of the item. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, sizeId)
    /// Stock-keeping unit identifier of the item. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, skuId)
    /// Discounts already applied to the line. Always sent, as an empty array when there are none.
    VESK_FIELD(List<DiscountsEntryRequest>, discounts)
    /// Number of the line in the cheque.
    VESK_FIELD(Integer, lineNum)
    /// Identifier of the location of the line's goods, as text.
    VESK_FIELD(String, locationId)
    /// Retail price of the item, in currency units; compared within 0.005 in record equality.
    VESK_FIELD(Number, retailPrice)
    /// Quantity of the item on the line, a fractional number; compared within 0.0005 in record
    /// equality, so quantities that differ by 0.001 are unequal.
    VESK_FIELD(Quantity, qty)
    /// Free key and value data of the line. Always sent, as an empty array when there is none.
    VESK_FIELD(List<ExtraDataLineEntry>, extraDataLine)
};

} // namespace vesk::disc
