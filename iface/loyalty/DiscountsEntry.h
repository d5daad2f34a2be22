#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// One discount applied to a cheque line, as an element of LinesEntry's discounts.
class DiscountsEntry {
    VESK_RECORD(DiscountsEntry)
    VESK_FIELD(OptionalString, card)
    VESK_FIELD(OptionalInteger, codeAccount)
    VESK_FIELD(OptionalInteger, complectId)
    VESK_FIELD(OptionalNumber, discAmount)
    VESK_FIELD(OptionalString, discId)
    VESK_FIELD(OptionalQuantity, discQty)
    VESK_FIELD(OptionalInteger, discType)
    VESK_FIELD(OptionalInteger, id_Rakt)
    VESK_FIELD(OptionalString, presentCard)
    VESK_FIELD(OptionalInteger, printComplect)
    VESK_FIELD(OptionalString, publicityId)
    VESK_FIELD(OptionalString, publicityIdExt)
    VESK_FIELD(OptionalString, publicityName)
};

} // namespace vesk::loyalty
