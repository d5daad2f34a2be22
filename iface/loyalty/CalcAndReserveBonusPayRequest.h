#pragma once

#include "../records/Record.h"

#include "CardListEntry.h"
#include "LinesEntry.h"

namespace vesk::loyalty {

/// @brief Body of calcAndReserveBonusPay: the bonus calculation's cheque with the reservation's
/// references.
///
/// Sent by Api::calcAndReserveBonusPay, whose reply is a CalcAndReserveBonusPayResponse. A record
/// of its own, not derived from CalcBonusAmountRequest and not convertible to it: its first sixteen
/// members repeat that record's keys, kinds and optionality, then `tokenCorrectness` and
/// `dataIdReturned` follow.
class CalcAndReserveBonusPayRequest {
    VESK_RECORD(CalcAndReserveBonusPayRequest)
    /// Count of cancelled bonuses. Optional: left out of the body when unset.
    VESK_FIELD(OptionalInteger, bonusCountCanceled)
    /// Calculation key, as text.
    VESK_FIELD(String, calcOnlyKey)
    /// Cards of the sale with their accounts. Always sent.
    VESK_FIELD(List<CardListEntry>, cardList)
    /// Lines of the cheque. Always sent.
    VESK_FIELD(List<LinesEntry>, lines)
    /// Data identifier of the cheque.
    VESK_FIELD(String, dataId)
    /// Date and time of the cheque, as text; sent exactly as the caller gives it, without time-zone
    /// or format conversion.
    VESK_FIELD(String, dateTime)
    /// Identifier of an e-shop order. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, eShopOrderId)
    /// Source code under the key `ksSource` (singular; the commit request uses `ksSources`).
    VESK_FIELD(Integer, ksSource)
    /// Online flag, an integer rather than a boolean.
    VESK_FIELD(Integer, online)
    /// Date and time of the order, as text; sent exactly as the caller gives it.
    VESK_FIELD(String, orderDateTime)
    /// Identifier of the place of sale. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, placeId)
    /// Count of cancelled presents. The commit request spells the key `presentCountCancel`.
    /// Optional: left out of the body when unset.
    VESK_FIELD(OptionalInteger, presentCountCanceled)
    /// Code of the sales channel.
    VESK_FIELD(Integer, salesChannel)
    /// Number of the shop.
    VESK_FIELD(Integer, shopNum)
    /// Token from the card's identification (ProcessIdResponse::token).
    VESK_FIELD(String, token)
    /// United location identifier; always sent here, while the identification requests send it only
    /// when set.
    VESK_FIELD(String, unitedLocationId)
    /// Token correctness code; its values are the service's.
    VESK_FIELD(Integer, tokenCorrectness)
    /// Returned data identifier under the key `dataIdReturned` (CalcBonusAmountResponse uses
    /// `dataIdReturn`).
    VESK_FIELD(String, dataIdReturned)
};

} // namespace vesk::loyalty
