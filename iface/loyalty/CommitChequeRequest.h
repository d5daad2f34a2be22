#pragma once

#include "../records/Record.h"

#include "CardListEntry.h"
#include "LinesEntry.h"
#include "PaymentsEntry.h"

namespace vesk::loyalty {

/// @brief Body of commitCheque: the whole finished cheque with its cards, lines and payments.
///
/// Sent by Api::commitCheque, whose reply is a CommitChequeResponse. Members run in alphabetical
/// order, letter case ignored. Twelve are plain and always sent; the eighteen optional ones are
/// sent only when set (a count set to 0 is sent as 0).
///
/// The references (`cashId`, `dataId`, `fd`, `fn`, `fpd`, `guid`, `mnogoInfo` and the like) and the
/// codes are the service's; the library passes them through without checks.
class CommitChequeRequest {
    VESK_RECORD(CommitChequeRequest)
    /// Count of cancelled bonuses; the bonus calculation requests use the same key. Optional: left
    /// out of the body when unset.
    VESK_FIELD(OptionalInteger, bonusCountCanceled)
    /// Cards of the sale with their accounts. Always sent.
    VESK_FIELD(List<CardListEntry>, cardList)
    /// Reference of the cheque under the key `cashId`. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, cashId)
    /// Data identifier of the cheque.
    VESK_FIELD(String, dataId)
    /// Data identifier of the returned cheque. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, dataIdReturned)
    /// Date and time of the cheque, as text; sent exactly as the caller gives it.
    VESK_FIELD(String, dateTime)
    /// Identifier of an e-shop order. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, eShopOrderId)
    /// Reference of the cheque under the key `fd`. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, fd)
    /// Reference of the cheque under the key `fn`. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, fn)
    /// Reference of the cheque under the key `fpd`. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, fpd)
    /// GUID of the cheque, as text. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, guid)
    /// Source code under the key `ksSources`. The plural is this request's own: the reply and the
    /// bonus calculation requests use `ksSource`.
    VESK_FIELD(Integer, ksSources)
    /// Lines of the cheque. Always sent.
    VESK_FIELD(List<LinesEntry>, lines)
    /// Reference text under the key `mnogoInfo`. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, mnogoInfo)
    /// Online flag, an integer rather than a boolean.
    VESK_FIELD(Integer, online)
    /// Date and time of the order, as text; sent exactly as the caller gives it.
    VESK_FIELD(String, orderDateTime)
    /// Identifier of the customer's parking ticket. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, parkingId)
    /// Parking type code. Optional: left out of the body when unset.
    VESK_FIELD(OptionalInteger, parkingType)
    /// The partner's identifier of the cheque. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, partnerChequeId)
    /// Identifier of the partner, a string here (unlike the integer `partnerExternalId` of the card
    /// records). Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, partnerId)
    /// Payments of the cheque. Always sent.
    VESK_FIELD(List<PaymentsEntry>, payments)
    /// Identifier of the place of sale.
    VESK_FIELD(String, placeId)
    /// Count of cancelled presents. The key is shorter than the bonus calculation requests'
    /// `presentCountCanceled`, as the service expects. Optional: left out of the body when unset.
    VESK_FIELD(OptionalInteger, presentCountCancel)
    /// Identifier of the return order. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, returnOrderId)
    /// Number of the shop.
    VESK_FIELD(Integer, shopNum)
    /// Token obtained when the card was identified (ProcessIdResponse::token).
    VESK_FIELD(String, token)
    /// Token correctness code. Optional: left out of the body when unset.
    VESK_FIELD(OptionalInteger, tokenCorrectness)
    /// Total amount of the cheque, in currency units.
    VESK_FIELD(Number, totalAmount)
    /// Order identifier under the key `tShopOrderId`, with a lower-case t. Optional: left out of
    /// the body when unset.
    VESK_FIELD(OptionalString, tShopOrderId)
    /// United location identifier. Optional: left out of the body when unset.
    VESK_FIELD(OptionalString, unitedLocationId)
};

} // namespace vesk::loyalty
