#pragma once

// One promotion that the cheque qualifies for.

#include "../records/Record.h"

namespace vesk::disc {

class PublicitiesEntry {
    VESK_RECORD(PublicitiesEntry)
    VESK_FIELD(String, publicityId)
    VESK_FIELD(String, publicityName)
    VESK_FIELD(String, publicityDescription)
    VESK_FIELD(Integer, publicityType)
    VESK_FIELD(Integer, publicityAmount)
};

} // namespace vesk::disc
