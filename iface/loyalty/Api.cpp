#include "Api.h"

template <>
vesk::loyalty::Api* Singleton<vesk::loyalty::Api>::instance = nullptr;

namespace vesk::loyalty {

const ServiceDescription Api::service = {"Vesk.loyalty:url",
                                         "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/",
                                         "veskloyalty", "vesk::loyalty::Api"};

Api::Api()
    : ServiceClient(service) {}

PreparedRequest<ProcessIdResponse> Api::processId(const ProcessIdRequest& request) {
    return prepare<ProcessIdResponse>("./processId", request);
}

PreparedRequest<ProcessPinResponse> Api::processPin(const ProcessPinRequest& request) {
    return prepare<ProcessPinResponse>("./processPin", request);
}

PreparedRequest<CardBalanceResponse> Api::getCardBalance(const CardBalanceRequest& request) {
    return prepare<CardBalanceResponse>("./getCardBalance", request);
}

PreparedRequest<CalcBonusAmountResponse>
Api::calcBonusAmount(const CalcBonusAmountRequest& request) {
    return prepare<CalcBonusAmountResponse>("./calcBonusAmount", request);
}

PreparedRequest<CalcAndReserveBonusPayResponse>
Api::calcAndReserveBonusPay(const CalcAndReserveBonusPayRequest& request) {
    return prepare<CalcAndReserveBonusPayResponse>("./calcAndReserveBonusPay", request);
}

PreparedRequest<CheckPinResponse> Api::checkPin(const CheckPinRequest& request) {
    return prepare<CheckPinResponse>("./checkPin", request);
}

PreparedRequest<CommitChequeResponse> Api::commitCheque(const CommitChequeRequest& request) {
    return prepare<CommitChequeResponse>("./commitCheque", request);
}

PreparedRequest<ParkingInfoResponse> Api::getParkingInfo(const ParkingInfoRequest& request) {
    return prepare<ParkingInfoResponse>("./getParkingInfo", request);
}

PreparedRequest<AdditionalInfoResponse>
Api::cashierAdditionalInfo(const AdditionalInfoRequest& request) {
    return prepareAdditionalInfo(endpointUrl("./cashierAdditionalInfo"), request);
}

PreparedRequest<AdditionalInfoResponse>
Api::chequeAdditionalInfo(const AdditionalInfoRequest& request) {
    return prepareAdditionalInfo(endpointUrl("./chequeAdditionalInfo"), request);
}

PreparedRequest<AdditionalInfoResponse>
Api::prepareAdditionalInfo(const QUrl& url, const AdditionalInfoRequest& request) const {
    return prepareAt<AdditionalInfoResponse>(url, request);
}

} // namespace vesk::loyalty
