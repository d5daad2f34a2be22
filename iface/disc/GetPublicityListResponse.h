#pragma once

// Reply of getPublicityList: the variants of promotions.

#include "VariantsEntry.h"

#include "../records/Record.h"

namespace vesk::disc {

class GetPublicityListResponse {
    VESK_RECORD(GetPublicityListResponse)
    VESK_FIELD(List<VariantsEntry>, variants)
};

} // namespace vesk::disc
