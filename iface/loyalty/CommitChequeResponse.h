#pragma once

#include "../records/Record.h"

#include "CardListEntry.h"
#include "LinesEntry.h"
#include "PaymentsEntry.h"
#include "SlipsEntry.h"

namespace vesk::loyalty {

/// @brief Reply of commitCheque: the committed cheque echoed back with amounts, parking data and
/// slips.
///
/// Returned by the prepared request of Api::commitCheque. Every member is plain, also those that
/// are optional in the request: a member that the reply lacks reads as an empty string, 0 or an
/// empty list. The reply names the source code `ksSource`, not the request's `ksSources`. The
/// parking members are the validation's outcome as in ParkingInfoResponse, here with the date-times
/// kept as text.
class CommitChequeResponse {
    VESK_RECORD(CommitChequeResponse)
    /// Bonus amount of the cheque, as the service counts it.
    VESK_FIELD(Number, bonusAmount)
    /// Cards of the sale with their accounts.
    VESK_FIELD(List<CardListEntry>, cardList)
    /// Reference of the cheque under the key `cashId`.
    VESK_FIELD(String, cashId)
    /// Data identifier of the cheque.
    VESK_FIELD(String, dataId)
    /// Data identifier of the returned cheque.
    VESK_FIELD(String, dataIdReturned)
    /// Date and time of the cheque, as text as the service gives it.
    VESK_FIELD(String, dateTime)
    /// Discount amount of the cheque, in currency units.
    VESK_FIELD(Number, discAmount)
    /// Identifier of an e-shop order.
    VESK_FIELD(String, eShopOrderId)
    /// Reference of the cheque under the key `fd`.
    VESK_FIELD(String, fd)
    /// Reference of the cheque under the key `fn`.
    VESK_FIELD(String, fn)
    /// Reference of the cheque under the key `fpd`.
    VESK_FIELD(String, fpd)
    /// GUID of the cheque, as text.
    VESK_FIELD(String, guid)
    /// Source code under the key `ksSource`; a reply that carries only `ksSources` leaves it 0.
    VESK_FIELD(Integer, ksSource)
    /// Lines of the cheque.
    VESK_FIELD(List<LinesEntry>, lines)
    /// Reference text under the key `mnogoInfo`.
    VESK_FIELD(String, mnogoInfo)
    /// Online flag, an integer rather than a boolean.
    VESK_FIELD(Integer, online)
    /// Date and time of the order, as text as the service gives it.
    VESK_FIELD(String, orderDateTime)
    /// Time of entry to the car park, as text as the service gives it (not parsed here).
    VESK_FIELD(String, parkingDateTimeEntry)
    /// End of the privileged parking period, as text as the service gives it (not parsed here).
    VESK_FIELD(String, parkingDateTimePrivilegeEnd)
    /// Parking discount, in currency units.
    VESK_FIELD(Number, parkingDiscAmount)
    /// Discounted parking hours, a whole number here.
    VESK_FIELD(Integer, parkingDiscHours)
    /// Identifier of the customer's parking ticket.
    VESK_FIELD(String, parkingId)
    /// Total parking amount, in currency units.
    VESK_FIELD(Number, parkingTotalAmount)
    /// Parking type code.
    VESK_FIELD(Integer, parkingType)
    /// Parking validation status, as text rather than a code number.
    VESK_FIELD(String, parkingValidateStatus)
    /// The partner's identifier of the cheque.
    VESK_FIELD(String, partnerChequeId)
    /// Identifier of the partner, as text.
    VESK_FIELD(String, partnerId)
    /// Payments of the cheque.
    VESK_FIELD(List<PaymentsEntry>, payments)
    /// Identifier of the place of sale.
    VESK_FIELD(String, placeId)
    /// Identifier of the return order.
    VESK_FIELD(String, returnOrderId)
    /// Number of the shop.
    VESK_FIELD(Integer, shopNum)
    /// Slips to print, in the order received; empty when the reply has none.
    VESK_FIELD(List<SlipsEntry>, slips)
    /// Token of the card's identification.
    VESK_FIELD(String, token)
    /// Token correctness code.
    VESK_FIELD(Integer, tokenCorrectness)
    /// Total amount of the cheque, in currency units.
    VESK_FIELD(Number, totalAmount)
    /// Total amount of the cheque under the key `totalAmountAfterKs`, in currency units.
    VESK_FIELD(Number, totalAmountAfterKs)
    /// Order identifier under the key `tShopOrderId`, with a lower-case t.
    VESK_FIELD(String, tShopOrderId)
    /// United location identifier.
    VESK_FIELD(String, unitedLocationId)
};

} // namespace vesk::loyalty
