#pragma once

#include "../ServiceClient.h"

#include <morva/Singleton.h>

namespace vesk::sales {

// Client of the sales service: item information by barcode, reservation and release of a cheque's goods.
//
// Configuration: "Vesk.sales:url", the service's base URL (default
// "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/"). Logger: "vesksales".
class Api : public ServiceClient, public Singleton<Api> {
public:
    static const ServiceDescription service;

    Api();
};

} // namespace vesk::sales

template <>
vesk::sales::Api* Singleton<vesk::sales::Api>::instance;
