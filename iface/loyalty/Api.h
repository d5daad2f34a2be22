#pragma once

#include "../ServiceClient.h"

#include "AdditionalInfoRequest.h"
#include "AdditionalInfoResponse.h"
#include "CalcAndReserveBonusPayRequest.h"
#include "CalcAndReserveBonusPayResponse.h"
#include "CalcBonusAmountRequest.h"
#include "CalcBonusAmountResponse.h"
#include "CardBalanceRequest.h"
#include "CardBalanceResponse.h"
#include "CheckPinRequest.h"
#include "CheckPinResponse.h"
#include "CommitChequeRequest.h"
#include "CommitChequeResponse.h"
#include "ParkingInfoRequest.h"
#include "ParkingInfoResponse.h"
#include "ProcessIdRequest.h"
#include "ProcessIdResponse.h"
#include "ProcessPinRequest.h"
#include "ProcessPinResponse.h"

#include <morva/Singleton.h>

namespace vesk::loyalty {

// Client of the loyalty service: card identification, PIN, balance, bonuses, commit of a cheque,
// parking and additional texts.
//
// Configuration: "Vesk.loyalty:url", the service's base URL (default
// "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/"). Logger: "veskloyalty".
//
// Every operation only prepares its call: the endpoint's URL, the request's
// serialisation as the body and the shared HTTP client. A host may derive
// from the client and override any of them.
class Api : public ServiceClient, public Singleton<Api> {
public:
    static const ServiceDescription service;

    Api();

    // Identifies a card ("./processId").
    virtual PreparedRequest<ProcessIdResponse> processId(const ProcessIdRequest& request);
    // Has a PIN sent to the card holder ("./processPin").
    virtual PreparedRequest<ProcessPinResponse> processPin(const ProcessPinRequest& request);
    // Reads the card's balance ("./getCardBalance").
    virtual PreparedRequest<CardBalanceResponse> getCardBalance(const CardBalanceRequest& request);
    // Calculates the bonus amount of a cheque ("./calcBonusAmount").
    virtual PreparedRequest<CalcBonusAmountResponse>
    calcBonusAmount(const CalcBonusAmountRequest& request);
    // Calculates and reserves a payment by bonuses ("./calcAndReserveBonusPay").
    virtual PreparedRequest<CalcAndReserveBonusPayResponse>
    calcAndReserveBonusPay(const CalcAndReserveBonusPayRequest& request);
    // Confirms the PIN that the cashier typed ("./checkPin").
    virtual PreparedRequest<CheckPinResponse> checkPin(const CheckPinRequest& request);
    // Commits a finished cheque ("./commitCheque").
    virtual PreparedRequest<CommitChequeResponse> commitCheque(const CommitChequeRequest& request);
    // Validates a parking ticket against a cheque ("./getParkingInfo").
    virtual PreparedRequest<ParkingInfoResponse> getParkingInfo(const ParkingInfoRequest& request);
    // The additional text for the cashier ("./cashierAdditionalInfo").
    virtual PreparedRequest<AdditionalInfoResponse>
    cashierAdditionalInfo(const AdditionalInfoRequest& request);
    // The additional text for the cheque ("./chequeAdditionalInfo").
    virtual PreparedRequest<AdditionalInfoResponse>
    chequeAdditionalInfo(const AdditionalInfoRequest& request);

private:
    // The one preparation of both additional-information calls: they differ
    // only in the endpoint that `url` names.
    PreparedRequest<AdditionalInfoResponse>
    prepareAdditionalInfo(const QUrl& url, const AdditionalInfoRequest& request) const;
};

} // namespace vesk::loyalty

template <>
vesk::loyalty::Api* Singleton<vesk::loyalty::Api>::instance;
