#include "Api.h"

template <>
vesk::sales::Api* Singleton<vesk::sales::Api>::instance = nullptr;

namespace vesk::sales {

const ServiceDescription Api::service = {"Vesk.sales:url",
                                         "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/",
                                         "vesksales", "vesk::sales::Api"};

Api::Api()
    : ServiceClient(service) {}

PreparedRequest<ItemInfoResponse> Api::itemInfo(const ItemInfoRequest& request) {
    return prepare<ItemInfoResponse>("./itemInfo", request);
}

PreparedRequest<ReserveChequeResponse> Api::reserveCheque(const ReserveChequeRequest& request) {
    return prepare<ReserveChequeResponse>("./reserveCheque", request);
}

PreparedRequest<UnreserveChequeResponse>
Api::unreserveCheque(const UnreserveChequeRequest& request) {
    return prepare<UnreserveChequeResponse>("./unreserveCheque", request);
}

} // namespace vesk::sales
