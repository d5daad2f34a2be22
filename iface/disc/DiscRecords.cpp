// The discount service's records as the library sets them up when it is loaded:
// the strategies of the entries (mapped inside lists) and of the requests
// (sent as bodies), and every record's meta-type under its qualified name.

#include "CardListEntry.h"
#include "DiscCalcPayRequest.h"
#include "DiscCalcPayResponse.h"
#include "DiscCalcRequest.h"
#include "DiscCalcResponse.h"
#include "DiscountsEntryRequest.h"
#include "DiscountsEntryResponse.h"
#include "ExtraDataLineEntry.h"
#include "GetPublicityListRequest.h"
#include "GetPublicityListResponse.h"
#include "LinesEntryRequest.h"
#include "LinesEntryResponse.h"
#include "PaymentsEntryRequest.h"
#include "PaymentsEntryResponse.h"
#include "PublicitiesEntry.h"
#include "VariantsEntry.h"

#include "../records/Registration.h"

#include <morva/Serder.h>

// Entries.
template struct serder::default_serder_type<vesk::disc::CardListEntry>;
template struct serder::default_serder_type<vesk::disc::DiscountsEntryRequest>;
template struct serder::default_serder_type<vesk::disc::ExtraDataLineEntry>;
template struct serder::default_serder_type<vesk::disc::LinesEntryRequest>;
template struct serder::default_serder_type<vesk::disc::PaymentsEntryRequest>;
template struct serder::default_serder_type<vesk::disc::DiscountsEntryResponse>;
template struct serder::default_serder_type<vesk::disc::LinesEntryResponse>;
template struct serder::default_serder_type<vesk::disc::PaymentsEntryResponse>;
template struct serder::default_serder_type<vesk::disc::PublicitiesEntry>;
template struct serder::default_serder_type<vesk::disc::VariantsEntry>;

// Requests.
template struct serder::default_serder_type<vesk::disc::DiscCalcRequest>;
template struct serder::default_serder_type<vesk::disc::DiscCalcPayRequest>;
template struct serder::default_serder_type<vesk::disc::GetPublicityListRequest>;

namespace {

const bool registered = vesk::records::registerMetaTypes<
    vesk::disc::CardListEntry, vesk::disc::DiscountsEntryRequest, vesk::disc::ExtraDataLineEntry,
    vesk::disc::LinesEntryRequest, vesk::disc::PaymentsEntryRequest, vesk::disc::DiscCalcRequest,
    vesk::disc::DiscCalcPayRequest, vesk::disc::DiscountsEntryResponse,
    vesk::disc::LinesEntryResponse, vesk::disc::PaymentsEntryResponse, vesk::disc::DiscCalcResponse,
    vesk::disc::DiscCalcPayResponse, vesk::disc::GetPublicityListRequest,
    vesk::disc::PublicitiesEntry, vesk::disc::VariantsEntry,
    vesk::disc::GetPublicityListResponse>();

} // namespace
