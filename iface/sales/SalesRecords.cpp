// The sales service's records as the library sets them up when it is loaded:
// the strategies of the entries (mapped inside lists) and of the requests
// (sent as bodies), and every record's meta-type under its qualified name.

#include "ItemInfoRequest.h"
#include "ItemInfoResponse.h"
#include "ReserveChequeRequest.h"
#include "ReserveChequeResponse.h"
#include "ReserveLinesEntryRequest.h"
#include "ReserveLinesEntryResponse.h"
#include "UnreserveChequeRequest.h"
#include "UnreserveChequeResponse.h"

#include "../records/Registration.h"

#include <morva/Serder.h>

// Entries.
template struct serder::default_serder_type<vesk::sales::ReserveLinesEntryRequest>;
template struct serder::default_serder_type<vesk::sales::ReserveLinesEntryResponse>;

// Requests.
template struct serder::default_serder_type<vesk::sales::ItemInfoRequest>;
template struct serder::default_serder_type<vesk::sales::ReserveChequeRequest>;
template struct serder::default_serder_type<vesk::sales::UnreserveChequeRequest>;

namespace {

const bool registered = vesk::records::registerMetaTypes<
    vesk::sales::ItemInfoRequest, vesk::sales::ItemInfoResponse,
    vesk::sales::ReserveLinesEntryRequest, vesk::sales::ReserveLinesEntryResponse,
    vesk::sales::ReserveChequeRequest, vesk::sales::ReserveChequeResponse,
    vesk::sales::UnreserveChequeRequest, vesk::sales::UnreserveChequeResponse>();

} // namespace
