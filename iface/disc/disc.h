#pragma once

// The discount service: its client and every record it exchanges.

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
