#pragma once

#include "../records/Record.h"

namespace vesk::loyalty {

/// @brief One discount applied to a line of a loyalty cheque.
///
/// An entry of LinesEntry::discounts. Every member is optional, so an entry with nothing set is
/// written as an empty JSON object. Codes and flags are the service's.
class DiscountsEntry {
    VESK_RECORD(DiscountsEntry)
    /// The card that the discount is granted for, by its number. Optional: left out of the JSON
    /// object when unset.
    VESK_FIELD(OptionalString, card)
    /// Code of the account that the discount concerns, as AccountsEntry::codeAccount. Optional:
    /// left out of the JSON object when unset.
    VESK_FIELD(OptionalInteger, codeAccount)
    /// Identifier of the set that the discount belongs to, an integer. Optional: left out of the
    /// JSON object when unset.
    VESK_FIELD(OptionalInteger, complectId)
    /// Amount of the discount, in currency units. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalNumber, discAmount)
    /// Identifier of the discount, a string (while `complectId` is an integer). Optional: left out
    /// of the JSON object when unset.
    VESK_FIELD(OptionalString, discId)
    /// Quantity of goods that the discount covers, a fractional number. Optional: left out of the
    /// JSON object when unset.
    VESK_FIELD(OptionalQuantity, discQty)
    /// Type code of the discount. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalInteger, discType)
    /// Identifier under the key `id_Rakt`, kept exactly with its underscore and upper-case R.
    /// Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalInteger, id_Rakt)
    /// The present card of the discount, by its number. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalString, presentCard)
    /// Set printing flag, an integer rather than a boolean. Optional: left out of the JSON object
    /// when unset.
    VESK_FIELD(OptionalInteger, printComplect)
    /// Identifier of the promotion behind the discount. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalString, publicityId)
    /// External identifier of the promotion. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, publicityIdExt)
    /// Name of the promotion. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, publicityName)
};

} // namespace vesk::loyalty
