#pragma once

#include "../ServiceClient.h"

#include <morva/Singleton.h>

namespace vesk::disc {

// Client of the discount service: discount calculation of a cheque, with its payments, and the promotions a cheque qualifies for.
//
// Configuration: "Vesk.disc:url", the service's base URL (default
// "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/"). Logger: "veskdisc".
class Api : public ServiceClient, public Singleton<Api> {
public:
    static const ServiceDescription service;

    Api();
};

} // namespace vesk::disc

template <>
vesk::disc::Api* Singleton<vesk::disc::Api>::instance;
