#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Reply of getParkingInfo: the ticket's validation, amounts and times.
///
/// Returned by the prepared request of Api::getParkingInfo. Every member is plain: an empty string
/// or 0 when the reply lacks it.
///
/// The two date-time members hold a QDateTime inside a QVariant. Writing one through its property
/// parses text in ISO 8601 form (such as 2024-03-01T10:15:00); text that does not parse, or a
/// missing key, gives an invalid QDateTime without error. Reading the property always gives a
/// QDateTime variant.
class ParkingInfoResponse {
    VESK_RECORD(ParkingInfoResponse)
    /// Identifier of the parking ticket.
    VESK_FIELD(String, parkingId)
    /// Validation status, as text rather than a number; its values are the service's.
    VESK_FIELD(String, parkingValidateStatus)
    /// Total parking amount, in currency units.
    VESK_FIELD(Number, parkingTotalAmount)
    /// Parking discount, in currency units.
    VESK_FIELD(Number, parkingDiscAmount)
    /// Parking amount to pay, in currency units.
    VESK_FIELD(Number, parkingPayAmount)
    /// Discounted parking hours, a fractional number (an integer 2 in the reply reads as 2.0).
    VESK_FIELD(Number, parkingDiscHours)
    /// Time of entry to the car park, a QDateTime in a QVariant; invalid when the reply lacks it or
    /// its text is not ISO 8601.
    VESK_FIELD(DateTime, parkingDateTimeEntry)
    /// End of the privileged parking period, a QDateTime in a QVariant; invalid when the reply
    /// lacks it or its text is not ISO 8601.
    VESK_FIELD(DateTime, parkingDateTimePrivilegeEnd)
};

} // namespace vesk::loyalty
