#pragma once

// One reserved goods line with its price, tax and the outcome of its reservation.

#include "../records/Record.h"

namespace vesk::sales {

class ReserveLinesEntryResponse {
    VESK_RECORD(ReserveLinesEntryResponse)
    VESK_FIELD(String, barcode)
    VESK_FIELD(String, sectionId)
    VESK_FIELD(String, skuId)
    VESK_FIELD(Integer, lineNum)
    VESK_FIELD(OptionalNumber, price)
    VESK_FIELD(Quantity, qty)
    VESK_FIELD(String, taxCode)
    VESK_FIELD(OptionalString, vendorId)
    VESK_FIELD(Boolean, existWithoutReservation)
    VESK_FIELD(OptionalQuantity, qtyWithoutReservation)
    VESK_FIELD(OptionalString, withoutReservationMessage)
};

} // namespace vesk::sales
