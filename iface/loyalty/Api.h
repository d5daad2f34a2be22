#pragma once

#include "../ServiceClient.h"

#include <morva/Singleton.h>

namespace vesk::loyalty {

// Client of the loyalty service: card identification, PIN, balance, bonuses, commit of a cheque, parking and additional texts.
//
// Configuration: "Vesk.loyalty:url", the service's base URL (default
// "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/"). Logger: "veskloyalty".
class Api : public ServiceClient, public Singleton<Api> {
public:
    static const ServiceDescription service;

    Api();
};

} // namespace vesk::loyalty

template <>
vesk::loyalty::Api* Singleton<vesk::loyalty::Api>::instance;
