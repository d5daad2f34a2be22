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

// Client of the discount service: discount calculation of a cheque, with its payments, and the
// promotions a cheque qualifies for.
//
// Configuration: "Vesk.disc:url", the service's base URL (default
// "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/"). Logger: "veskdisc".
class Api : public ServiceClient, public Singleton<Api> {
public:
    static const ServiceDescription service;

    Api();

    // The operations only prepare their calls; performing one posts the request.
    virtual PreparedRequest<DiscCalcResponse> discCalc(const DiscCalcRequest& request);
    virtual PreparedRequest<DiscCalcPayResponse> discCalcPay(const DiscCalcPayRequest& request);
    virtual PreparedRequest<GetPublicityListResponse>
    getPublicityList(const GetPublicityListRequest& request);
};

} // namespace vesk::disc

template <>
vesk::disc::Api* Singleton<vesk::disc::Api>::instance;
