#include "Api.h"

template <>
vesk::sales::Api* Singleton<vesk::sales::Api>::instance = nullptr;

namespace vesk::sales {

const ServiceDescription Api::service = {"Vesk.sales:url",
                                         "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/", "vesksales"};

Api::Api() : ServiceClient(service) {}

} // namespace vesk::sales
