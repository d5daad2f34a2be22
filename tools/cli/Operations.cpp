#include "Operations.h"

#include <vesk/disc/Api.h>
#include <vesk/loyalty/Api.h>
#include <vesk/sales/Api.h>

#include <morva/Serder.h>
#include <morva/Singleton.h>

#include <type_traits>

namespace vesk::cli {
namespace {

// One table line: everything about an operation follows from the client's
// member function; its service and name are given as the wire knows them.
template <class Api, class Request, class Response>
Operation op(PreparedRequest<Response> (Api::*call)(const Request&), const char* service,
             const char* name) {
    static_assert(std::is_base_of_v<ServiceClient, Api> && std::is_base_of_v<Singleton<Api>, Api>,
                  "an operation belongs to a service client that is a process-wide instance");
    Operation operation;
    operation.service = QString::fromLatin1(service);
    operation.name = QString::fromLatin1(name);
    operation.request = &Request::staticMetaObject;
    operation.response = &Response::staticMetaObject;
    operation.client = &Api::service;
    operation.madeClient = []() -> const ServiceClient* { return Singleton<Api>::instance; };
    operation.perform = [call](const QVariant& body, const QSharedPointer<RestClient>& client) {
        const Request request = serder::deserialize<Request>(body);
        PreparedRequest<Response> prepared = (Api::getInstance()->*call)(request);
        if (client)
            prepared.client = client;
        return serder::serialize(prepared.response());
    };
    return operation;
}

} // namespace

const QList<Operation>& operations() {
    static const QList<Operation> table = {
        op(&disc::Api::discCalc, "disc", "discCalc"),
        op(&disc::Api::discCalcPay, "disc", "discCalcPay"),
        op(&disc::Api::getPublicityList, "disc", "getPublicityList"),
        op(&loyalty::Api::processId, "loyalty", "processId"),
        op(&loyalty::Api::processPin, "loyalty", "processPin"),
        op(&loyalty::Api::getCardBalance, "loyalty", "getCardBalance"),
        op(&loyalty::Api::calcBonusAmount, "loyalty", "calcBonusAmount"),
        op(&loyalty::Api::calcAndReserveBonusPay, "loyalty", "calcAndReserveBonusPay"),
        op(&loyalty::Api::checkPin, "loyalty", "checkPin"),
        op(&loyalty::Api::commitCheque, "loyalty", "commitCheque"),
        op(&loyalty::Api::getParkingInfo, "loyalty", "getParkingInfo"),
        op(&loyalty::Api::cashierAdditionalInfo, "loyalty", "cashierAdditionalInfo"),
        op(&loyalty::Api::chequeAdditionalInfo, "loyalty", "chequeAdditionalInfo"),
        op(&sales::Api::itemInfo, "sales", "itemInfo"),
        op(&sales::Api::reserveCheque, "sales", "reserveCheque"),
        op(&sales::Api::unreserveCheque, "sales", "unreserveCheque"),
    };
    return table;
}

QStringList serviceNames() {
    QStringList names;
    for (const Operation& operation : operations())
        if (!names.contains(operation.service))
            names.append(operation.service);
    return names;
}

QList<const Operation*> operationsOf(const QString& service) {
    QList<const Operation*> found;
    for (const Operation& operation : operations())
        if (operation.service == service)
            found.append(&operation);
    return found;
}

const Operation* findOperation(const QString& service, const QString& name) {
    for (const Operation* operation : operationsOf(service))
        if (operation->name == name)
            return operation;
    return nullptr;
}

} // namespace vesk::cli
