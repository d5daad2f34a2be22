#pragma once

/// @file
/// @brief The sales service: its client and every record it exchanges.
///
/// Include this one header to use the sales service (item information by barcode, and reservation
/// and release of the goods of a cheque): it brings in the client vesk::sales::Api and all records
/// of the namespace vesk::sales.

#include "Api.h"
#include "ItemInfoRequest.h"
#include "ItemInfoResponse.h"
#include "ReserveChequeRequest.h"
#include "ReserveChequeResponse.h"
#include "ReserveLinesEntryRequest.h"
#include "ReserveLinesEntryResponse.h"
#include "UnreserveChequeRequest.h"
#include "UnreserveChequeResponse.h"
