#pragma once

#include "../records/Record.h"

namespace vesk::disc {

/// @brief One promotion that the cheque qualifies for.
///
/// An entry of VariantsEntry::publicities in the reply of getPublicityList.
class PublicitiesEntry {
    VESK_RECORD(PublicitiesEntry)
    /// Identifier of the promotion.
    VESK_FIELD(String, publicityId)
    /// Name of the promotion.
    VESK_FIELD(String, publicityName)
    /// Description of the promotion, as text.
    VESK_FIELD(String, publicityDescription)
    /// Type code of the promotion; its values are the service's.
    VESK_FIELD(Integer, publicityType)
    /// Amount of the promotion, held as an integer despite its name. A reply value given as a
    /// string of digits is converted; one that cannot be converted reads as 0.
    VESK_FIELD(Integer, publicityAmount)
};

} // namespace vesk::disc
