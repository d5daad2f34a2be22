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

/// @brief Client of the loyalty service.
///
/// Prepares card identification, the sending and the check of a PIN, the card balance, bonus
/// calculation and bonus reservation, the commit of a finished cheque, parking validation, and two
/// additional texts, one for the cashier and one for the cheque.
///
/// Configuration: "Vesk.loyalty:url", the service's base URL (default
/// "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/"), read once when the client is made; a
/// "/" is appended when it does not end with one. Logger: "veskloyalty".
///
/// Every operation only prepares its call: the endpoint's URL, the request's serialisation as the
/// body and the shared HTTP client. Nothing is sent until the prepared request is performed,
/// synchronously on the caller's thread. Any thread may perform calls: those of one service share
/// one HTTP client, so the library performs them one after the other, while calls of different
/// services run in parallel. A host may derive from the client and override any operation.
class Api : public ServiceClient, public Singleton<Api> {
public:
    /// What tells this client from the other services' clients: the configuration key
    /// "Vesk.loyalty:url", the default base URL
    /// "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/", the logger name "veskloyalty" and
    /// the class name "vesk::loyalty::Api" that diagnostics use.
    static const ServiceDescription service;

    /// Makes the loyalty client: takes the HTTP client that the host substituted, or makes one,
    /// gives it the service's logger, and reads the base URL from the configuration. The host
    /// reaches the one instance through Singleton; it is made on first use and lives until the
    /// process ends.
    Api();

    /// @brief Asks the service to identify a loyalty card, or a virtual card, at a place of sale.
    ///
    /// Prepares a POST to the endpoint "./processId", that is processId joined to the base URL,
    /// with the request serialised as the body. Nothing is sent here: the call is made when the
    /// returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the card number as scanned or typed, with the cheque and the place of sale;
    /// only read.
    /// @return the prepared call, whose reply is a ProcessIdResponse with the card holder, whether
    /// a PIN is required, and the token that the following requests for the card carry.
    virtual PreparedRequest<ProcessIdResponse> processId(const ProcessIdRequest& request);
    /// @brief Asks the service to send a PIN to the card holder.
    ///
    /// Prepares a POST to the endpoint "./processPin", that is processPin joined to the base URL,
    /// with the request serialised as the body. Nothing is sent here: the call is made when the
    /// returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the card and the token from processId; only read.
    /// @return the prepared call, whose reply is a ProcessPinResponse saying where the PIN went and
    /// whether to show a PIN entry field.
    virtual PreparedRequest<ProcessPinResponse> processPin(const ProcessPinRequest& request);
    /// @brief Asks the service for the balance of a card.
    ///
    /// Prepares a POST to the endpoint "./getCardBalance", that is getCardBalance joined to the
    /// base URL, with the request serialised as the body. Nothing is sent here: the call is made
    /// when the returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the card and its token; only read.
    /// @return the prepared call, whose reply is a CardBalanceResponse with the balance and whether
    /// to show it.
    virtual PreparedRequest<CardBalanceResponse> getCardBalance(const CardBalanceRequest& request);
    /// @brief Asks the service to calculate the bonus amount of a cheque.
    ///
    /// Prepares a POST to the endpoint "./calcBonusAmount", that is calcBonusAmount joined to the
    /// base URL, with the request serialised as the body. Nothing is sent here: the call is made
    /// when the returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque with its cards and lines; only read.
    /// @return the prepared call, whose reply is a CalcBonusAmountResponse: the request echoed back
    /// with the service's additions.
    virtual PreparedRequest<CalcBonusAmountResponse>
    calcBonusAmount(const CalcBonusAmountRequest& request);
    /// @brief Asks the service to calculate a payment by bonuses and to reserve it.
    ///
    /// Prepares a POST to the endpoint "./calcAndReserveBonusPay", that is calcAndReserveBonusPay
    /// joined to the base URL, with the request serialised as the body. Nothing is sent here: the
    /// call is made when the returned prepared request's response() or getResponseVariant() is
    /// called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque with its cards and lines and the reservation's references; only
    /// read.
    /// @return the prepared call, whose reply is a CalcAndReserveBonusPayResponse.
    virtual PreparedRequest<CalcAndReserveBonusPayResponse>
    calcAndReserveBonusPay(const CalcAndReserveBonusPayRequest& request);
    /// @brief Asks the service to confirm the PIN that the cashier typed.
    ///
    /// Prepares a POST to the endpoint "./checkPin", that is checkPin joined to the base URL, with
    /// the request serialised as the body. Nothing is sent here: the call is made when the returned
    /// prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the card's identification with the PIN as typed; only read.
    /// @return the prepared call, whose reply is a CheckPinResponse saying whether the PIN was
    /// right.
    virtual PreparedRequest<CheckPinResponse> checkPin(const CheckPinRequest& request);
    /// @brief Commits a finished cheque to the service.
    ///
    /// Prepares a POST to the endpoint "./commitCheque", that is commitCheque joined to the base
    /// URL, with the request serialised as the body. Nothing is sent here: the call is made when
    /// the returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the whole cheque with its cards, lines and payments; only read.
    /// @return the prepared call, whose reply is a CommitChequeResponse with the committed cheque,
    /// its amounts, parking data and the slips to print.
    virtual PreparedRequest<CommitChequeResponse> commitCheque(const CommitChequeRequest& request);
    /// @brief Asks the service to validate a customer's parking ticket against a cheque.
    ///
    /// Prepares a POST to the endpoint "./getParkingInfo", that is getParkingInfo joined to the
    /// base URL, with the request serialised as the body. Nothing is sent here: the call is made
    /// when the returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque, the parking ticket and the store; only read.
    /// @return the prepared call, whose reply is a ParkingInfoResponse with the validation status,
    /// amounts and times.
    virtual PreparedRequest<ParkingInfoResponse> getParkingInfo(const ParkingInfoRequest& request);
    /// @brief Asks the service for the additional text to show to the cashier.
    ///
    /// Prepares a POST to the endpoint "./cashierAdditionalInfo", that is cashierAdditionalInfo
    /// joined to the base URL, with the request serialised as the body. Nothing is sent here: the
    /// call is made when the returned prepared request's response() or getResponseVariant() is
    /// called.
    ///
    /// It sends the same body as chequeAdditionalInfo() would for the same request; only the
    /// endpoint differs.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque, the card and its token; only read.
    /// @return the prepared call, whose reply is an AdditionalInfoResponse; the cashier's text is
    /// in its cashierText.
    virtual PreparedRequest<AdditionalInfoResponse>
    cashierAdditionalInfo(const AdditionalInfoRequest& request);
    /// @brief Asks the service for the additional text to print on the cheque.
    ///
    /// Prepares a POST to the endpoint "./chequeAdditionalInfo", that is chequeAdditionalInfo
    /// joined to the base URL, with the request serialised as the body. Nothing is sent here: the
    /// call is made when the returned prepared request's response() or getResponseVariant() is
    /// called.
    ///
    /// It sends the same body as cashierAdditionalInfo() would for the same request; only the
    /// endpoint differs.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque, the card and its token; only read.
    /// @return the prepared call, whose reply is an AdditionalInfoResponse; the cheque's text is in
    /// its chequeText.
    virtual PreparedRequest<AdditionalInfoResponse>
    chequeAdditionalInfo(const AdditionalInfoRequest& request);

private:
    // The one preparation of both additional-information calls: they differ
    // only in the endpoint that `url` names.
    PreparedRequest<AdditionalInfoResponse>
    prepareAdditionalInfo(const QUrl& url, const AdditionalInfoRequest& request) const;
};

} // namespace vesk::loyalty

/// @cond
template <>
vesk::loyalty::Api* Singleton<vesk::loyalty::Api>::instance;
/// @endcond
