#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Body of getParkingInfo: the customer's parking ticket to validate against a cheque.
///
/// Sent by Api::getParkingInfo, whose reply is a ParkingInfoResponse. All three members are plain
/// and always sent.
class ParkingInfoRequest {
    VESK_RECORD(ParkingInfoRequest)
    /// Identifier of the cheque.
    VESK_FIELD(String, chequeId)
    /// Identifier of the parking ticket.
    VESK_FIELD(String, parkingId)
    /// Identifier of the store.
    VESK_FIELD(String, storeId)
};

} // namespace vesk::loyalty
