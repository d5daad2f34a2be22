#include "Api.h"

template <>
vesk::disc::Api* Singleton<vesk::disc::Api>::instance = nullptr;

namespace vesk::disc {

const ServiceDescription Api::service = {"Vesk.disc:url",
                                         "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/", "veskdisc"};

Api::Api() : ServiceClient(service) {}

} // namespace vesk::disc
