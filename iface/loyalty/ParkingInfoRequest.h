#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Body of getParkingInfo: the parking ticket to validate against a cheque.
class ParkingInfoRequest {
    VESK_RECORD(ParkingInfoRequest)
    VESK_FIELD(String, chequeId)
    VESK_FIELD(String, parkingId)
    VESK_FIELD(String, storeId)
};

} // namespace vesk::loyalty
