#pragma once

#include "VariantsEntry.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief Reply of getPublicityList: the variants of promotions that the cheque qualifies for.
///
/// Returned by the prepared request of Api::getPublicityList.
class GetPublicityListResponse {
    VESK_RECORD(GetPublicityListResponse)
    /// The variants, each with its promotions; empty when the reply has none.
    VESK_FIELD(List<VariantsEntry>, variants)
};

} // namespace vesk::disc
