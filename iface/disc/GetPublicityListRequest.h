#pragma once

#include "CardListEntry.h"
#include "ExtraDataLineEntry.h"
#include "LinesEntryRequest.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief Body of getPublicityList: the cheque whose promotions are asked for.
///
/// Sent by Api::getPublicityList, whose reply is a GetPublicityListResponse. It names the cheque's
/// time and shop with other keys than the calculation requests (`dateTime`, `orderDateTime` and
/// `shopNum` against `calcDateTime` and `storeId`), carries `extraData` for the whole cheque and
/// adds `dataId` and `token`; the service expects the keys as they stand. Every member is plain and
/// always sent.
class GetPublicityListRequest {
    VESK_RECORD(GetPublicityListRequest)
    /// Cards presented for the cheque.
    VESK_FIELD(List<CardListEntry>, cardList)
    /// Data identifier of the request; its meaning is the service's.
    VESK_FIELD(String, dataId)
    /// Date and time of the cheque, as text; sent exactly as the caller gives it.
    VESK_FIELD(String, dateTime)
    /// Free key and value data of the whole cheque.
    VESK_FIELD(List<ExtraDataLineEntry>, extraData)
    /// Lines of the cheque.
    VESK_FIELD(List<LinesEntryRequest>, lines)
    /// Date and time of the order, as text; sent exactly as the caller gives it.
    VESK_FIELD(String, orderDateTime)
    /// Code of the sales channel; its values are the service's.
    VESK_FIELD(Integer, salesChannel)
    /// Number of the shop, an integer (the calculation requests name the store by the text
    /// `storeId` instead).
    VESK_FIELD(Integer, shopNum)
    /// Token for the service, as text.
    VESK_FIELD(String, token)
};

} // namespace vesk::disc
