#pragma once

#include <vesk/ServiceClient.h>

#include <QList>
#include <QMetaObject>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace vesk::cli {

// One operation of a service client, described as data: what it takes and
// gives, and how to perform it from a variant map.
struct Operation {
    QString service; // "disc", "loyalty" or "sales"
    QString name;    // "discCalc"
    const QMetaObject* request;
    const QMetaObject* response;
    // The service client's configuration key and default base URL.
    const ServiceDescription* client;
    // The service's client if this process has made it already, else null.
    std::function<const ServiceClient*()> madeClient;
    // Fills the request record from `body` (a QVariantMap; keys that name no
    // member are ignored), performs the call at the service's URL, through
    // `client` or, when it is null, the service's own client, and returns the
    // response record as a QVariantMap. Throws what the call throws:
    // vesk::NetworkException or vesk::Exception.
    std::function<QVariant(const QVariant& body, const QSharedPointer<RestClient>& client)> perform;
};

// The sixteen operations, service by service, each client's in its own order.
const QList<Operation>& operations();

// The services that the operations belong to, in the same order.
QStringList serviceNames();

// The operations of `service`, in order; empty for an unknown service.
QList<const Operation*> operationsOf(const QString& service);

// The operation, or null when the service has none of that name.
const Operation* findOperation(const QString& service, const QString& name);

} // namespace vesk::cli
