#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Reply of getParkingInfo: the ticket's validation, amounts and times.
class ParkingInfoResponse {
    VESK_RECORD(ParkingInfoResponse)
    VESK_FIELD(String, parkingId)
    VESK_FIELD(String, parkingValidateStatus)
    VESK_FIELD(Number, parkingTotalAmount)
    VESK_FIELD(Number, parkingDiscAmount)
    VESK_FIELD(Number, parkingPayAmount)
    VESK_FIELD(Number, parkingDiscHours)
    VESK_FIELD(DateTime, parkingDateTimeEntry)
    VESK_FIELD(DateTime, parkingDateTimePrivilegeEnd)
};

} // namespace vesk::loyalty
