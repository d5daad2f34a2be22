#pragma once

#include "PublicitiesEntry.h"

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One numbered variant of promotions for the cheque.
///
/// An entry of GetPublicityListResponse::variants.
class VariantsEntry {
    VESK_RECORD(VariantsEntry)
    /// Promotions of the variant, as records (unlike the string list `publicities` of the
    /// calculation requests).
    VESK_FIELD(List<PublicitiesEntry>, publicities)
    /// Number of the variant.
    VESK_FIELD(Integer, variantNum)
};

} // namespace vesk::disc
