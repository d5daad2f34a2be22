#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// Reply of processId: the identified card, its holder and the token for the next calls.
class ProcessIdResponse {
    VESK_RECORD(ProcessIdResponse)
    VESK_FIELD(String, clientFIO)
    VESK_FIELD(String, discCardId)
    VESK_FIELD(String, discCardTypeId)
    VESK_FIELD(Integer, identityIsRequired)
    VESK_FIELD(Integer, isLoyaltyCard)
    VESK_FIELD(Integer, retCode)
    VESK_FIELD(String, retMessage)
    VESK_FIELD(String, token)
};

} // namespace vesk::loyalty
