#pragma once

#include "../records/Record.h"

#include "CardListEntry.h"
#include "LinesEntry.h"
#include "PaymentsEntry.h"
#include "SlipsEntry.h"

namespace vesk::loyalty {

// Reply of commitCheque: the committed cheque echoed with amounts, parking data and slips.
class CommitChequeResponse {
    VESK_RECORD(CommitChequeResponse)
    VESK_FIELD(Number, bonusAmount)
    VESK_FIELD(List<CardListEntry>, cardList)
    VESK_FIELD(String, cashId)
    VESK_FIELD(String, dataId)
    VESK_FIELD(String, dataIdReturned)
    VESK_FIELD(String, dateTime)
    VESK_FIELD(Number, discAmount)
    VESK_FIELD(String, eShopOrderId)
    VESK_FIELD(String, fd)
    VESK_FIELD(String, fn)
    VESK_FIELD(String, fpd)
    VESK_FIELD(String, guid)
    VESK_FIELD(Integer, ksSource)
    VESK_FIELD(List<LinesEntry>, lines)
    VESK_FIELD(String, mnogoInfo)
    VESK_FIELD(Integer, online)
    VESK_FIELD(String, orderDateTime)
    VESK_FIELD(String, parkingDateTimeEntry)
    VESK_FIELD(String, parkingDateTimePrivilegeEnd)
    VESK_FIELD(Number, parkingDiscAmount)
    VESK_FIELD(Integer, parkingDiscHours)
    VESK_FIELD(String, parkingId)
    VESK_FIELD(Number, parkingTotalAmount)
    VESK_FIELD(Integer, parkingType)
    VESK_FIELD(String, parkingValidateStatus)
    VESK_FIELD(String, partnerChequeId)
    VESK_FIELD(String, partnerId)
    VESK_FIELD(List<PaymentsEntry>, payments)
    VESK_FIELD(String, placeId)
    VESK_FIELD(String, returnOrderId)
    VESK_FIELD(Integer, shopNum)
    VESK_FIELD(List<SlipsEntry>, slips)
    VESK_FIELD(String, token)
    VESK_FIELD(Integer, tokenCorrectness)
    VESK_FIELD(Number, totalAmount)
    VESK_FIELD(Number, totalAmountAfterKs)
    VESK_FIELD(String, tShopOrderId)
    VESK_FIELD(String, unitedLocationId)
};

} // namespace vesk::loyalty
