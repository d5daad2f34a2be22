#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief Reply of processPin: where the PIN went and whether to show a PIN field.
///
/// Returned by the prepared request of Api::processPin. Every member is plain: an empty string or 0
/// when the reply lacks it. The flags are integers rather than booleans.
class ProcessPinResponse {
    VESK_RECORD(ProcessPinResponse)
    /// Phone number to which the PIN went, as the service shows it.
    VESK_FIELD(String, phone)
    /// Flag: the PIN was sent. The key is kept exactly as the service spells it.
    VESK_FIELD(Integer, pinCodeSended)
    /// Result code of the service.
    VESK_FIELD(Integer, retCode)
    /// Result text of the service.
    VESK_FIELD(String, retMessage)
    /// Flag: the host is to show a PIN entry field.
    VESK_FIELD(Integer, showPinField)
    /// Token for the following requests for the same card.
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
