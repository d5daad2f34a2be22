#pragma once

#include "../records/Record.h"

#include "CardListEntry.h"
#include "LinesEntry.h"

namespace vesk::loyalty {

// Body of calcAndReserveBonusPay: the bonus calculation's cheque with the reservation's references.
class CalcAndReserveBonusPayRequest {
    VESK_RECORD(CalcAndReserveBonusPayRequest)
    VESK_FIELD(OptionalInteger, bonusCountCanceled)
    VESK_FIELD(String, calcOnlyKey)
    VESK_FIELD(List<CardListEntry>, cardList)
    VESK_FIELD(List<LinesEntry>, lines)
    VESK_FIELD(String, dataId)
    VESK_FIELD(String, dateTime)
    VESK_FIELD(OptionalString, eShopOrderId)
    VESK_FIELD(Integer, ksSource)
    VESK_FIELD(Integer, online)
    VESK_FIELD(String, orderDateTime)
    VESK_FIELD(OptionalString, placeId)
    VESK_FIELD(OptionalInteger, presentCountCanceled)
    VESK_FIELD(Integer, salesChannel)
    VESK_FIELD(Integer, shopNum)
    VESK_FIELD(String, token)
    VESK_FIELD(String, unitedLocationId)
    VESK_FIELD(Integer, tokenCorrectness)
    VESK_FIELD(String, dataIdReturned)
};

} // namespace vesk::loyalty
