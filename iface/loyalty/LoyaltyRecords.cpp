// What the loyalty records need from the library at load: the strategies of
// the entries (elements of list members) and of the request bodies, built
// once during static initialisation, and the meta-types of every record,
// registered under their qualified names.
#include "loyalty.h"

#include "../records/Registration.h"

#include <morva/Serder.h>

// Entries.
template struct serder::default_serder_type<vesk::loyalty::CardListEntry>;
template struct serder::default_serder_type<vesk::loyalty::AccountsEntry>;
template struct serder::default_serder_type<vesk::loyalty::LinesEntry>;
template struct serder::default_serder_type<vesk::loyalty::DiscountsEntry>;
template struct serder::default_serder_type<vesk::loyalty::PresentPaidEntry>;
template struct serder::default_serder_type<vesk::loyalty::ExtraDataEntry>;
template struct serder::default_serder_type<vesk::loyalty::StaffEntry>;
template struct serder::default_serder_type<vesk::loyalty::PaymentsEntry>;
template struct serder::default_serder_type<vesk::loyalty::SlipsEntry>;

// Request bodies.
template struct serder::default_serder_type<vesk::loyalty::ProcessIdRequest>;
template struct serder::default_serder_type<vesk::loyalty::ProcessPinRequest>;
template struct serder::default_serder_type<vesk::loyalty::CardBalanceRequest>;
template struct serder::default_serder_type<vesk::loyalty::CalcBonusAmountRequest>;
template struct serder::default_serder_type<vesk::loyalty::CalcAndReserveBonusPayRequest>;
template struct serder::default_serder_type<vesk::loyalty::CheckPinRequest>;
template struct serder::default_serder_type<vesk::loyalty::CommitChequeRequest>;
template struct serder::default_serder_type<vesk::loyalty::ParkingInfoRequest>;
template struct serder::default_serder_type<vesk::loyalty::AdditionalInfoRequest>;

// Reading one card entry from a variant, for the host.
template vesk::loyalty::CardListEntry
serder::deserialize<vesk::loyalty::CardListEntry>(const QVariant& variant);

namespace {
const bool registered = vesk::records::registerMetaTypes<
    vesk::loyalty::AccountsEntry, vesk::loyalty::CardListEntry, vesk::loyalty::LinesEntry,
    vesk::loyalty::DiscountsEntry, vesk::loyalty::PresentPaidEntry, vesk::loyalty::ExtraDataEntry,
    vesk::loyalty::StaffEntry, vesk::loyalty::PaymentsEntry, vesk::loyalty::SlipsEntry,
    vesk::loyalty::CommitChequeRequest, vesk::loyalty::CommitChequeResponse,
    vesk::loyalty::ProcessIdRequest, vesk::loyalty::ProcessIdResponse,
    vesk::loyalty::ProcessPinRequest, vesk::loyalty::ProcessPinResponse,
    vesk::loyalty::CheckPinRequest, vesk::loyalty::CheckPinResponse,
    vesk::loyalty::CardBalanceRequest, vesk::loyalty::CardBalanceResponse,
    vesk::loyalty::CalcBonusAmountRequest, vesk::loyalty::CalcBonusAmountResponse,
    vesk::loyalty::CalcAndReserveBonusPayRequest, vesk::loyalty::CalcAndReserveBonusPayResponse,
    vesk::loyalty::ParkingInfoRequest, vesk::loyalty::ParkingInfoResponse,
    vesk::loyalty::AdditionalInfoRequest, vesk::loyalty::AdditionalInfoResponse>();
} // namespace
