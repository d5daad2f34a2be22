#pragma once

#include "../records/Record.h"

namespace vesk::sales {

/// @brief One goods line of the reserveCheque reply.
///
/// An entry of ReserveChequeResponse::lines: the request line repeated, with the price and tax of
/// the line and the outcome of its reservation. Never sent by the library.
class ReserveLinesEntryResponse {
    VESK_RECORD(ReserveLinesEntryResponse)
    /// Barcode of the line's item.
    VESK_FIELD(String, barcode)
    /// Store section in whose stock the goods are reserved.
    VESK_FIELD(String, sectionId)
    /// Stock-keeping unit identifier of the item.
    VESK_FIELD(String, skuId)
    /// Number of the line in the cheque, as sent.
    VESK_FIELD(Integer, lineNum)
    /// Price of the line's item, in currency units (plain in ItemInfoResponse). Optional: absent
    /// when the reply lacks it.
    VESK_FIELD(OptionalNumber, price)
    /// Quantity reserved, a fractional number.
    VESK_FIELD(Quantity, qty)
    /// Tax code of the line; its values are the service's.
    VESK_FIELD(String, taxCode)
    /// Identifier of the item's vendor (plain in ItemInfoResponse). Optional: absent when the reply
    /// lacks it.
    VESK_FIELD(OptionalString, vendorId)
    /// Flag: goods of the line exist without a reservation. False when the reply lacks it.
    VESK_FIELD(Boolean, existWithoutReservation)
    /// Quantity without a reservation, a fractional number. Optional: absent when the reply lacks
    /// it.
    VESK_FIELD(OptionalQuantity, qtyWithoutReservation)
    /// Text for the cashier about the goods without a reservation. Optional: absent when the reply
    /// lacks it.
    VESK_FIELD(OptionalString, withoutReservationMessage)
};

} // namespace vesk::sales
