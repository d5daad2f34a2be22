#include "Api.h"

template <>
vesk::disc::Api* Singleton<vesk::disc::Api>::instance = nullptr;

namespace vesk::disc {

const ServiceDescription Api::service = {"Vesk.disc:url",
                                         "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/",
                                         "veskdisc", "vesk::disc::Api"};

Api::Api()
    : ServiceClient(service) {}

PreparedRequest<DiscCalcResponse> Api::discCalc(const DiscCalcRequest& request) {
    return prepare<DiscCalcResponse>("./discCalc", request);
}

PreparedRequest<DiscCalcPayResponse> Api::discCalcPay(const DiscCalcPayRequest& request) {
    return prepare<DiscCalcPayResponse>("./discCalcPay", request);
}

PreparedRequest<GetPublicityListResponse>
Api::getPublicityList(const GetPublicityListRequest& request) {
    return prepare<GetPublicityListResponse>("./getPublicityList", request);
}

} // namespace vesk::disc
