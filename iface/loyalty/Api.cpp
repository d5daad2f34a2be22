#include "Api.h"

template <>
vesk::loyalty::Api* Singleton<vesk::loyalty::Api>::instance = nullptr;

namespace vesk::loyalty {

const ServiceDescription Api::service = {"Vesk.loyalty:url",
                                         "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/", "veskloyalty"};

Api::Api() : ServiceClient(service) {}

} // namespace vesk::loyalty
