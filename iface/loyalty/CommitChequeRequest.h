#pragma once

#include "../records/Record.h"

#include "CardListEntry.h"
#include "LinesEntry.h"
#include "PaymentsEntry.h"

namespace vesk::loyalty {

// Body of commitCheque: the whole finished cheque with its cards, lines and payments.
class CommitChequeRequest {
    VESK_RECORD(CommitChequeRequest)
    VESK_FIELD(OptionalInteger, bonusCountCanceled)
    VESK_FIELD(List<CardListEntry>, cardList)
    VESK_FIELD(OptionalString, cashId)
    VESK_FIELD(String, dataId)
    VESK_FIELD(OptionalString, dataIdReturned)
    VESK_FIELD(String, dateTime)
    VESK_FIELD(OptionalString, eShopOrderId)
    VESK_FIELD(OptionalString, fd)
    VESK_FIELD(OptionalString, fn)
    VESK_FIELD(OptionalString, fpd)
    VESK_FIELD(OptionalString, guid)
    VESK_FIELD(Integer, ksSources)
    VESK_FIELD(List<LinesEntry>, lines)
    VESK_FIELD(OptionalString, mnogoInfo)
    VESK_FIELD(Integer, online)
    VESK_FIELD(String, orderDateTime)
    VESK_FIELD(OptionalString, parkingId)
    VESK_FIELD(OptionalInteger, parkingType)
    VESK_FIELD(OptionalString, partnerChequeId)
    VESK_FIELD(OptionalString, partnerId)
    VESK_FIELD(List<PaymentsEntry>, payments)
    VESK_FIELD(String, placeId)
    VESK_FIELD(OptionalInteger, presentCountCancel)
    VESK_FIELD(OptionalString, returnOrderId)
    VESK_FIELD(Integer, shopNum)
    VESK_FIELD(String, token)
    VESK_FIELD(OptionalInteger, tokenCorrectness)
    VESK_FIELD(Number, totalAmount)
    VESK_FIELD(OptionalString, tShopOrderId)
    VESK_FIELD(OptionalString, unitedLocationId)
};

} // namespace vesk::loyalty
