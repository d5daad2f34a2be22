#pragma once

/// @file
/// @brief The discount service: its client and every record it exchanges.
///
/// Include this one header to use the discount service (discount calculation of a cheque, with or
/// without its payments, and the promotions that a cheque qualifies for): it brings in the client
/// vesk::disc::Api and all records of the namespace vesk::disc.

#include "Api.h"
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
