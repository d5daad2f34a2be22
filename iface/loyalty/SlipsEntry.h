#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief One slip that the loyalty service returns after a cheque commit.
///
/// An entry of CommitChequeResponse::slips. Every member is plain: an empty string or 0 when the
/// reply lacks it.
class SlipsEntry {
    VESK_RECORD(SlipsEntry)
    /// Text to print on the cheque.
    VESK_FIELD(String, chequeMessage)
    /// Code of the account that the slip concerns, as AccountsEntry::codeAccount.
    VESK_FIELD(Integer, codeAccount)
    /// Text for the operator.
    VESK_FIELD(String, operatorMessage)
    /// Quantity, a fractional number like LinesEntry::qty.
    VESK_FIELD(Quantity, qty)
};

} // namespace vesk::loyalty
