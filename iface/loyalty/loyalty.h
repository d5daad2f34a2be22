#pragma once

/// @file
/// @brief The loyalty service: its client and every record it exchanges.
///
/// Include this one header to use the loyalty service (card identification, PIN, card balance,
/// bonus calculation and reservation, cheque commit, parking validation and additional texts): it
/// brings in the client vesk::loyalty::Api and all records of the namespace vesk::loyalty.

#include "Api.h"

#include "AccountsEntry.h"
#include "AdditionalInfoRequest.h"
#include "AdditionalInfoResponse.h"
#include "CalcAndReserveBonusPayRequest.h"
#include "CalcAndReserveBonusPayResponse.h"
#include "CalcBonusAmountRequest.h"
#include "CalcBonusAmountResponse.h"
#include "CardBalanceRequest.h"
#include "CardBalanceResponse.h"
#include "CardListEntry.h"
#include "CheckPinRequest.h"
#include "CheckPinResponse.h"
#include "CommitChequeRequest.h"
#include "CommitChequeResponse.h"
#include "DiscountsEntry.h"
#include "ExtraDataEntry.h"
#include "LinesEntry.h"
#include "ParkingInfoRequest.h"
#include "ParkingInfoResponse.h"
#include "PaymentsEntry.h"
#include "PresentPaidEntry.h"
#include "ProcessIdRequest.h"
#include "ProcessIdResponse.h"
#include "ProcessPinRequest.h"
#include "ProcessPinResponse.h"
#include "SlipsEntry.h"
#include "StaffEntry.h"
