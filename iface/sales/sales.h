#pragma once

// The sales service: its client and every record it exchanges.

#include "Api.h"
#include "ItemInfoRequest.h"
#include "ItemInfoResponse.h"
#include "ReserveChequeRequest.h"
#include "ReserveChequeResponse.h"
#include "ReserveLinesEntryRequest.h"
#include "ReserveLinesEntryResponse.h"
#include "UnreserveChequeRequest.h"
#include "UnreserveChequeResponse.h"
