#pragma once

#include "../ServiceClient.h"
#include "ItemInfoRequest.h"
#include "ItemInfoResponse.h"
#include "ReserveChequeRequest.h"
#include "ReserveChequeResponse.h"
#include "UnreserveChequeRequest.h"
#include "UnreserveChequeResponse.h"

#include <morva/Singleton.h>

namespace vesk::sales {

/// @brief Client of the sales service.
///
/// Prepares the query of item information by barcode, the reservation of the goods of a cheque in
/// the stock of a store section, and the release of such a reservation.
///
/// Configuration: "Vesk.sales:url", the service's base URL (default
/// "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/"), read once when the client is made; a
/// "/" is appended when it does not end with one. Logger: "vesksales".
///
/// Every operation only prepares its call: the endpoint's URL, the request's serialisation as the
/// body and the shared HTTP client. Nothing is sent until the prepared request is performed,
/// synchronously on the caller's thread. Any thread may perform calls: those of one service share
/// one HTTP client, so the library performs them one after the other, while calls of different
/// services run in parallel. A host may derive from the client and override any operation.
class Api : public ServiceClient, public Singleton<Api> {
public:
    /// What tells this client from the other services' clients: the configuration key
    /// "Vesk.sales:url", the default base URL
    /// "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/", the logger name "vesksales" and the
    /// class name "vesk::sales::Api" that diagnostics use.
    static const ServiceDescription service;

    /// Makes the sales client: takes the HTTP client that the host substituted, or makes one, gives
    /// it the service's logger, and reads the base URL from the configuration. The host reaches the
    /// one instance through Singleton; it is made on first use and lives until the process ends.
    Api();

    /// @brief Asks the service for information about an item found by its barcode.
    ///
    /// Prepares a POST to the endpoint "./itemInfo", that is itemInfo joined to the base URL, with
    /// the request serialised as the body. Nothing is sent here: the call is made when the returned
    /// prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the barcode and the store section whose stock is asked; only read.
    /// @return the prepared call, whose reply is an ItemInfoResponse with what the service knows of
    /// the item.
    virtual PreparedRequest<ItemInfoResponse> itemInfo(const ItemInfoRequest& request);
    /// @brief Asks the service to reserve the goods of a cheque in a store's stock.
    ///
    /// Prepares a POST to the endpoint "./reserveCheque", that is reserveCheque joined to the base
    /// URL, with the request serialised as the body. Nothing is sent here: the call is made when
    /// the returned prepared request's response() or getResponseVariant() is called.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque, the store and the goods lines to reserve; only read.
    /// @return the prepared call, whose reply is a ReserveChequeResponse with the outcome of each
    /// line's reservation.
    virtual PreparedRequest<ReserveChequeResponse>
    reserveCheque(const ReserveChequeRequest& request);
    /// @brief Asks the service to release the reservation of a cheque's goods.
    ///
    /// Prepares a POST to the endpoint "./unreserveCheque", that is unreserveCheque joined to the
    /// base URL, with the request serialised as the body. Nothing is sent here: the call is made
    /// when the returned prepared request's response() or getResponseVariant() is called.
    ///
    /// The release is a call of its own: it does not need an earlier reserveCheque() through the
    /// same client.
    ///
    /// Performing the call throws vesk::Exception, with the service's "code" and "userMsg", when
    /// the reply's status is not 200, or vesk::NetworkException when the exchange fails on the
    /// network.
    ///
    /// @param request the cheque whose reservation is released; only read.
    /// @return the prepared call, whose reply is an UnreserveChequeResponse.
    virtual PreparedRequest<UnreserveChequeResponse>
    unreserveCheque(const UnreserveChequeRequest& request);
};

} // namespace vesk::sales

/// @cond
template <>
vesk::sales::Api* Singleton<vesk::sales::Api>::instance;
/// @endcond
