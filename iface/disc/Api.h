#pragma once

#include "../ServiceClient.h"
#include "DiscCalcPayRequest.h"
#include "DiscCalcPayResponse.h"
#include "DiscCalcRequest.h"
#include "DiscCalcResponse.h"
#include "GetPublicityListRequest.h"
#include "GetPublicityListResponse.h"

#include <morva/Singleton.h>

namespace vesk::disc {

/// @brief Client of the discount service.
///
/// Prepares the discount calculation of a cheque, the same calculation with the cheque's payments,
/// and the query of the promotions that a cheque qualifies for.
///
/// Configuration: "Vesk.disc:url", the service's base URL (default
/// "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/"), read once when the client is made; a
/// "/" is appended when it does not end with one. Logger: "veskdisc".
///
/// Every operation only prepares its call: the endpoint's URL, the request's serialisation as the
/// body and the shared HTTP client. Nothing is sent until the prepared request is performed,
/// synchronously on the caller's thread. Any thread may perform calls: those of one service share
/// one HTTP client, so the library performs them one after the other, while calls of different
/// services run in parallel. A host may derive from the client and override any operation.
class Api : public ServiceClient, public Singleton<Api> {
public:
    /// What tells this client from the other services' clients: the configuration key
    /// "Vesk.disc:url", the default base URL
    /// "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/", the logger name "veskdisc" and the
    /// class name "vesk::disc::Api" that diagnostics use.
    static const ServiceDescription service;

    /// Makes the discount client: takes the HTTP client that the host substituted, or makes one,
    /// gives it the service's logger, and reads the base URL from the configuration. The host
    /// reaches the one instance through Singleton; it is made on first use and lives until the
    /// process ends.
    Api();

    /// @brief Asks the service for the discounts of a cheque.
    ///
    /// Prepares a POST to the endpoint "./discCalc", that is discCalc joined to the base URL, with
    /// the request serialised as the body. Nothing is sent here: the call is made when the returned
    /// prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque with its cards and lines; only read.
    /// @return the prepared call, whose reply is a DiscCalcResponse with the discounts granted on
    /// each line.
    virtual PreparedRequest<DiscCalcResponse> discCalc(const DiscCalcRequest& request);
    /// @brief Asks the service for the discounts of a cheque together with its payments.
    ///
    /// Prepares a POST to the endpoint "./discCalcPay", that is discCalcPay joined to the base URL,
    /// with the request serialised as the body. Nothing is sent here: the call is made when the
    /// returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque with its cards, lines and payments; only read.
    /// @return the prepared call, whose reply is a DiscCalcPayResponse with the discounts on the
    /// lines and the payments.
    virtual PreparedRequest<DiscCalcPayResponse> discCalcPay(const DiscCalcPayRequest& request);
    /// @brief Asks the service for the promotions that a cheque qualifies for.
    ///
    /// Prepares a POST to the endpoint "./getPublicityList", that is getPublicityList joined to the
    /// base URL, with the request serialised as the body. Nothing is sent here: the call is made
    /// when the returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque whose promotions are asked for; only read.
    /// @return the prepared call, whose reply is a GetPublicityListResponse with the numbered
    /// variants of promotions.
    virtual PreparedRequest<GetPublicityListResponse>
    getPublicityList(const GetPublicityListRequest& request);
};

} // namespace vesk::disc

/// @cond
template <>
vesk::disc::Api* Singleton<vesk::disc::Api>::instance;
/// @endcond
