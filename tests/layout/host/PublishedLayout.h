#pragma once

// The library's classes as a till's host declares them from their published
// description alone, without the library's own headers: the exceptions with
// their fields in order, the prepared requests, the three service clients
// (each its own Singleton, the HTTP client and the base URL as members, its
// operations as its only virtual functions, in their published order, no
// virtual destructor) and the sales records. The host's own types come from
// the host's own headers.
//
// A program built against this header and linked with libVeskIface works
// only if the library lays out and names its classes exactly as published.

#include <morva/BasicException.h>
#include <morva/Http.h>
#include <morva/MockFactory.h>
#include <morva/RestClient.h>
#include <morva/Singleton.h>
#include <morva/Tr.h>

#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <optional>

namespace vesk {

class Exception : public BasicException {
public:
    Exception(int code, const tr::Tr& message);
    explicit Exception(const tr::Tr& message);
    ~Exception() override;
    int code() const;

    int codeField; // `code`, after the base part
};

class NetworkException : public Exception {
public:
    explicit NetworkException(const tr::Tr& message);
    ~NetworkException() override;
};

class PreparedRequestBase {
public:
    QString url;
    QVariant body;
    QSharedPointer<RestClient> client;

    QVariant getResponseVariant() const;
};

template <class R>
class PreparedRequest : public PreparedRequestBase {
public:
    std::optional<R> response;
};

namespace disc {
struct DiscCalcRequest;
struct DiscCalcResponse;
struct DiscCalcPayRequest;
struct DiscCalcPayResponse;
struct GetPublicityListRequest;
struct GetPublicityListResponse;

class Api : public Singleton<Api> {
public:
    Api();
    virtual PreparedRequest<DiscCalcResponse> discCalc(const DiscCalcRequest& request);
    virtual PreparedRequest<DiscCalcPayResponse> discCalcPay(const DiscCalcPayRequest& request);
    virtual PreparedRequest<GetPublicityListResponse>
    getPublicityList(const GetPublicityListRequest& request);

    QSharedPointer<RestClient> client;
    QUrl baseUrl;
};
} // namespace disc

namespace loyalty {
struct ProcessIdRequest;
struct ProcessIdResponse;
struct ProcessPinRequest;
struct ProcessPinResponse;
struct CardBalanceRequest;
struct CardBalanceResponse;
struct CalcBonusAmountRequest;
struct CalcBonusAmountResponse;
struct CalcAndReserveBonusPayRequest;
struct CalcAndReserveBonusPayResponse;
struct CheckPinRequest;
struct CheckPinResponse;
struct CommitChequeRequest;
struct CommitChequeResponse;
struct ParkingInfoRequest;
struct ParkingInfoResponse;
struct AdditionalInfoRequest;
struct AdditionalInfoResponse;

class Api : public Singleton<Api> {
public:
    Api();
    virtual PreparedRequest<ProcessIdResponse> processId(const ProcessIdRequest& request);
    virtual PreparedRequest<ProcessPinResponse> processPin(const ProcessPinRequest& request);
    virtual PreparedRequest<CardBalanceResponse> getCardBalance(const CardBalanceRequest& request);
    virtual PreparedRequest<CalcBonusAmountResponse>
    calcBonusAmount(const CalcBonusAmountRequest& request);
    virtual PreparedRequest<CalcAndReserveBonusPayResponse>
    calcAndReserveBonusPay(const CalcAndReserveBonusPayRequest& request);
    virtual PreparedRequest<CheckPinResponse> checkPin(const CheckPinRequest& request);
    virtual PreparedRequest<CommitChequeResponse> commitCheque(const CommitChequeRequest& request);
    virtual PreparedRequest<ParkingInfoResponse> getParkingInfo(const ParkingInfoRequest& request);
    virtual PreparedRequest<AdditionalInfoResponse>
    cashierAdditionalInfo(const AdditionalInfoRequest& request);
    virtual PreparedRequest<AdditionalInfoResponse>
    chequeAdditionalInfo(const AdditionalInfoRequest& request);

    QSharedPointer<RestClient> client;
    QUrl baseUrl;
};
} // namespace loyalty

namespace sales {
struct ItemInfoRequest {
    QString sectionId;
    QString barcode;
};

struct ItemInfoResponse {
    QString barcode;
    int barcodeType = 0;
    double price = 0;
    QString priceGroupId;
    QString skuId;
    QString name;
    QString article;
    QString itemId;
    QString colorId;
    QString sizeId;
    QString unitId;
    QString groupId;
    QString countryCode;
    QString vendorId;
    int properties = 0;
};

struct ReserveLinesEntryRequest {
    QString barcode;
    QString sectionId;
    QString skuId;
    int lineNum = 0;
    double qty = 0;
};

struct ReserveLinesEntryResponse {
    QString barcode;
    QString sectionId;
    QString skuId;
    int lineNum = 0;
    std::optional<double> price;
    double qty = 0;
    QString taxCode;
    std::optional<QString> vendorId;
    bool existWithoutReservation = false;
    std::optional<double> qtyWithoutReservation;
    std::optional<QString> withoutReservationMessage;
};

struct ReserveChequeRequest {
    QString chequeId;
    QString storeId;
    std::optional<QString> basketId;
    std::optional<bool> includeFirstRetailPrice;
    QList<ReserveLinesEntryRequest> lines;
};

struct ReserveChequeResponse {
    QString chequeId;
    std::optional<QString> basketId;
    QList<ReserveLinesEntryResponse> lines;
};

struct UnreserveChequeRequest {
    QString chequeId;
};

struct UnreserveChequeResponse {
    QString chequeId;
};

class Api : public Singleton<Api> {
public:
    Api();
    virtual PreparedRequest<ItemInfoResponse> itemInfo(const ItemInfoRequest& request);
    virtual PreparedRequest<ReserveChequeResponse>
    reserveCheque(const ReserveChequeRequest& request);
    virtual PreparedRequest<UnreserveChequeResponse>
    unreserveCheque(const UnreserveChequeRequest& request);

    QSharedPointer<RestClient> client;
    QUrl baseUrl;
};
} // namespace sales

} // namespace vesk

// The storage of these belongs to the library.
template <>
vesk::disc::Api* Singleton<vesk::disc::Api>::instance;
template <>
vesk::loyalty::Api* Singleton<vesk::loyalty::Api>::instance;
template <>
vesk::sales::Api* Singleton<vesk::sales::Api>::instance;
template <>
RestClient* MockFactory<RestClient>::mocked;
