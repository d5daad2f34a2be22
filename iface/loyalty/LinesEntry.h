#pragma once

#include "../records/Record.h"

#include "DiscountsEntry.h"
#include "ExtraDataEntry.h"
#include "PresentPaidEntry.h"
#include "StaffEntry.h"

namespace vesk::loyalty {

// One cheque line with its discounts, present-card payments, extra data and staff.
class LinesEntry {
    VESK_RECORD(LinesEntry)
    VESK_FIELD(OptionalString, approvedCode)
    VESK_FIELD(String, barCode)
    VESK_FIELD(Number, basePrice)
    VESK_FIELD(OptionalNumber, bonusUnit)
    VESK_FIELD(OptionalString, connectChatId)
    VESK_FIELD(OptionalInteger, corner)
    VESK_FIELD(OptionalString, dateTime)
    VESK_FIELD(OptionalString, discountCard)
    VESK_FIELD(List<DiscountsEntry>, discounts)
    VESK_FIELD(OptionalNumber, discUnitKs)
    VESK_FIELD(OptionalInteger, itemId_Crystall)
    VESK_FIELD(OptionalString, itemId_Mercury)
    VESK_FIELD(OptionalInteger, kodCli)
    VESK_FIELD(Integer, lineNum)
    VESK_FIELD(OptionalString, presentCard)
    VESK_FIELD(List<PresentPaidEntry>, presentPaid)
    VESK_FIELD(OptionalNumber, presentPaidUnit)
    VESK_FIELD(Number, price)
    VESK_FIELD(Quantity, qty)
    VESK_FIELD(OptionalString, salerId)
    VESK_FIELD(Number, salesPrice)
    VESK_FIELD(OptionalString, tShopTicketId)
    VESK_FIELD(OptionalList<ExtraDataEntry>, extraDataLine)
    VESK_FIELD(OptionalList<StaffEntry>, staff)
};

} // namespace vesk::loyalty
