#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

// One slip text returned after a commit, as an element of CommitChequeResponse's slips.
class SlipsEntry {
    VESK_RECORD(SlipsEntry)
    VESK_FIELD(String, chequeMessage)
    VESK_FIELD(Integer, codeAccount)
    VESK_FIELD(String, operatorMessage)
    VESK_FIELD(Quantity, qty)
};

} // namespace vesk::loyalty
