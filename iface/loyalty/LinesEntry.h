#pragma once

#include "../records/Record.h"

#include "DiscountsEntry.h"
#include "ExtraDataEntry.h"
#include "PresentPaidEntry.h"
#include "StaffEntry.h"

namespace vesk::loyalty {

/// @brief One line of a cheque sent to or returned by the loyalty service.
///
/// An entry of `lines` in CalcBonusAmountRequest, CalcAndReserveBonusPayRequest,
/// CommitChequeRequest and CommitChequeResponse, with four nested lists: the discounts applied to
/// the line, its present-card payments, its free data and its staff. The first twenty-two members
/// run in alphabetical order; `extraDataLine` and `staff` follow.
///
/// Codes (`corner`, `kodCli`) and the units of `bonusUnit`, `discUnitKs` and `presentPaidUnit` are
/// the service's and are carried without interpretation.
class LinesEntry {
    VESK_RECORD(LinesEntry)
    /// Approval code of the line. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, approvedCode)
    /// Barcode of the item. This service spells the key `barCode`, with an upper-case C; the
    /// discount and sales services use `barcode`.
    VESK_FIELD(String, barCode)
    /// Base price of the item, in currency units.
    VESK_FIELD(Number, basePrice)
    /// Bonus value of the line, in the service's unit. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalNumber, bonusUnit)
    /// Chat connection identifier, as text. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalString, connectChatId)
    /// Corner code of the line, an integer. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalInteger, corner)
    /// Date and time of the line, as text; passed through exactly as given. Optional: left out of
    /// the JSON object when unset.
    VESK_FIELD(OptionalString, dateTime)
    /// The discount card of the line, by its number. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalString, discountCard)
    /// Discounts applied to the line. Always written, as an empty array when there are none.
    VESK_FIELD(List<DiscountsEntry>, discounts)
    /// Discount value of the line under the key `discUnitKs`, in the service's unit. Optional: left
    /// out of the JSON object when unset.
    VESK_FIELD(OptionalNumber, discUnitKs)
    /// Item identifier, an integer (while `itemId_Mercury` is a string). The key is kept exactly as
    /// the service spells it. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalInteger, itemId_Crystall)
    /// Item identifier, as text. The key is kept exactly as the service spells it. Optional: left
    /// out of the JSON object when unset.
    VESK_FIELD(OptionalString, itemId_Mercury)
    /// Code under the key `kodCli`, an integer. Optional: left out of the JSON object when unset.
    VESK_FIELD(OptionalInteger, kodCli)
    /// Number of the line in the cheque; 0 when a reply lacks it.
    VESK_FIELD(Integer, lineNum)
    /// The present card of the line, by its number. Optional: left out of the JSON object when
    /// unset.
    VESK_FIELD(OptionalString, presentCard)
    /// Present-card payments of the line. Always written, as an empty array when there are none.
    VESK_FIELD(List<PresentPaidEntry>, presentPaid)
    /// Value paid by present cards on the line, in the service's unit. Optional: left out of the
    /// JSON object when unset.
    VESK_FIELD(OptionalNumber, presentPaidUnit)
    /// Price of the item, in currency units.
    VESK_FIELD(Number, price)
    /// Quantity of the item, a fractional number (0.25 is kept as is).
    VESK_FIELD(Quantity, qty)
    /// Identifier of the seller. The key is spelled `salerId`, as the service expects. Optional:
    /// left out of the JSON object when unset.
    VESK_FIELD(OptionalString, salerId)
    /// Sales price of the item, in currency units.
    VESK_FIELD(Number, salesPrice)
    /// Ticket identifier under the key `tShopTicketId`, with a lower-case t. Optional: left out of
    /// the JSON object when unset.
    VESK_FIELD(OptionalString, tShopTicketId)
    /// Free key and value data of the line. Optional as a whole: left out when unset, and written
    /// as an empty array when set to an empty list.
    VESK_FIELD(OptionalList<ExtraDataEntry>, extraDataLine)
    /// Staff of the line, each with a percentage. Optional as a whole, like `extraDataLine`.
    VESK_FIELD(OptionalList<StaffEntry>, staff)
};

} // namespace vesk::loyalty
