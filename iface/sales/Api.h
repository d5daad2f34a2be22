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

// Client of the sales service: item information by barcode, reservation and release of a cheque's
// goods.
//
// Configuration: "Vesk.sales:url", the service's base URL (default
// "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/"). Logger: "vesksales".
class Api : public ServiceClient, public Singleton<Api> {
public:
    static const ServiceDescription service;

    Api();

    // The operations only prepare their calls; performing one posts the request.
    virtual PreparedRequest<ItemInfoResponse> itemInfo(const ItemInfoRequest& request);
    virtual PreparedRequest<ReserveChequeResponse>
    reserveCheque(const ReserveChequeRequest& request);
    virtual PreparedRequest<UnreserveChequeResponse>
    unreserveCheque(const UnreserveChequeRequest& request);
};

} // namespace vesk::sales

template <>
vesk::sales::Api* Singleton<vesk::sales::Api>::instance;
