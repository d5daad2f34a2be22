#pragma once

#include "../records/Record.h"

#include "CardListEntry.h"
#include "LinesEntry.h"

namespace vesk::loyalty {

/// @brief Body of calcBonusAmount: the cheque's cards and lines for the bonus calculation.
///
/// Sent by Api::calcBonusAmount, whose reply is a CalcBonusAmountResponse; that record derives from
/// this one and echoes its members. `bonusCountCanceled`, `eShopOrderId`, `placeId` and
/// `presentCountCanceled` are sent only when set; the other members, both lists included, always.
///
/// The meaning of `calcOnlyKey`, `ksSource`, `salesChannel` and the two counts is the service's.
class CalcBonusAmountRequest {
    VESK_RECORD(CalcBonusAmountRequest)
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
};

} // namespace vesk::loyalty
