#pragma once

#include <morva/RestClient.h>

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

namespace vesk {

/// One call, ready to be performed: the endpoint's absolute URL, the request
/// record as a variant map and the service's HTTP client. Operations of the
/// service clients return it without touching the network; the call happens
/// when the host asks for the reply.
///
/// A value: copies share the HTTP client. Its properties `url` and `body`
/// are readable and writable through the meta-object.
class PreparedRequestBase {
    Q_GADGET
    Q_PROPERTY(QVariant url READ vesk_readUrl WRITE vesk_writeUrl)
    Q_PROPERTY(QVariant body READ vesk_readBody WRITE vesk_writeBody)

public:
    QString url;   ///< the endpoint's absolute URL
    QVariant body; ///< a QVariantMap; null until set, posted as {}
    /// the service's HTTP client; empty: each performance makes its own
    QSharedPointer<RestClient> client;

    /// Posts the body as a compact JSON object and returns the reply object
    /// as a QVariantMap when the status is 200 (an empty, non-JSON or
    /// non-object reply gives an empty map). Each call is a new exchange.
    /// May be called from any thread, also on one prepared request from
    /// several threads at once: calls that share a client are performed
    /// one after the other on it, the others in parallel.
    /// @throws vesk::NetworkException when the transport failed: no reply, or
    ///         a reply cut short.
    /// @throws vesk::Exception for any status but 200, with the reply's
    ///         "code" and "userMsg".
    QVariant getResponseVariant() const;

private:
    QVariant vesk_readUrl() const;
    void vesk_writeUrl(const QVariant& value);
    QVariant vesk_readBody() const;
    void vesk_writeBody(const QVariant& value);
};

} // namespace vesk
