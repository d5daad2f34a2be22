#pragma once

#include <morva/RestClient.h>

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

namespace vesk {

// One call, ready to be performed: the endpoint's absolute URL, the request
// record as a variant map and the service's HTTP client. Operations of the
// service clients return it without touching the network; the call happens
// when the host asks for the reply.
class PreparedRequestBase {
    Q_GADGET
    Q_PROPERTY(QVariant url READ vesk_readUrl WRITE vesk_writeUrl)
    Q_PROPERTY(QVariant body READ vesk_readBody WRITE vesk_writeBody)

public:
    QString url;
    QVariant body;                     // a QVariantMap; null until set, posted as {}
    QSharedPointer<RestClient> client; // empty: each performance makes its own

    // Posts the body as a compact JSON object and returns the reply object as
    // a QVariantMap when the status is 200 (an unparsable reply gives an
    // empty map). Otherwise throws vesk::NetworkException when the transport
    // failed, or vesk::Exception with the reply's "code" and "userMsg".
    // Each call is a new exchange. Calls sharing a client may come from any
    // thread: the library performs them one at a time on that client.
    QVariant getResponseVariant() const;

private:
    QVariant vesk_readUrl() const;
    void vesk_writeUrl(const QVariant& value);
    QVariant vesk_readBody() const;
    void vesk_writeBody(const QVariant& value);
};

} // namespace vesk
