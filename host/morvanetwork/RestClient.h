#pragma once

#include "Http.h"

#include <morva/Log4Qt.h>

#include <QObject>

#include <memory>

/// The host's synchronous HTTP client.
///
/// send() blocks the calling thread until the exchange is over; it needs no
/// event loop and no QCoreApplication. One client keeps one connection alive
/// across its calls. The client itself is not thread-safe: calls on one client
/// must not overlap (the client library takes care of that for its calls).
///
/// A call's reply is always its own: a kept connection is used again only if
/// nothing arrived on it while it was idle and it has been idle for less than
/// maxIdleMs; otherwise a new one is opened. A request that may have reached
/// the server is never sent again by the client: if the connection dies after
/// the request went out, the exchange is a network failure whose message says
/// so, and the caller decides.
///
/// Settings are read from Config when the client is made:
///
///     "Network:timeoutMs"        whole exchange, default 15000
///     "Network:connectTimeoutMs" default 5000
///     "Network:caFile"           a CA bundle trusted in addition to the system's
///     "Network:maxBodyBytes"     largest reply body accepted, before and after
///                                decoding, default 4 MiB
///     "Network:acceptEncoding"   codings offered for replies: "gzip" (default),
///                                "deflate", a list of both, or "none"
///     "Network:maxIdleMs"        a connection idle for longer is not used again,
///                                default 4000 (below common servers' keep-alive)
///     "Network:proxy"            proxy URL; none by default. The environment's
///                                http_proxy and the like are never used.
///     "Network:noProxy"          hosts reached without the proxy (libcurl's list)
///
/// TLS peers are always verified.
///
/// A network condition never throws: it is reported in the Response (see
/// http::Response::Failure). Each exchange writes one line to the logger at
/// info level (method, URL, status, milliseconds, sizes) and the bodies at
/// debug level, with PINs, tokens and card numbers masked.
class RestClient : public QObject {
    Q_OBJECT

public:
    /// How the client exchanges: the "Network:" keys of Config, as values.
    struct Settings {
        int timeoutMs = 15000;                           ///< the whole exchange, in milliseconds
        int connectTimeoutMs = 5000;                     ///< connection set-up, in milliseconds
        QString caFile;                                  ///< an extra CA bundle; empty: none
        qint64 maxBodyBytes = 4 * 1024 * 1024;           ///< largest reply body accepted
        QString acceptEncoding = QStringLiteral("gzip"); ///< codings offered for replies
        int maxIdleMs = 4000; ///< a connection idle for longer is not used again
        QString proxy;        ///< proxy URL; empty: none
        QString noProxy;      ///< hosts reached without the proxy

        /// The settings from the host's Config singleton, made if need be;
        /// a value that its key cannot take is warned about (logger
        /// "morvanetwork") and its default is used.
        static Settings fromConfig();
    };

    /// A client with the settings of Config (Settings::fromConfig()).
    RestClient();
    /// A client with the given settings; values that would make it wait for
    /// ever or refuse every reply are replaced by the defaults.
    explicit RestClient(const Settings& settings);
    ~RestClient() override;

    /// The logger of the exchanges' lines; kept, not owned. Each service of
    /// the library gives its client the service's logger when it is made.
    void setLogger(const Log4Qt::Logger* logger);
    /// The logger given by setLogger(); null before.
    const Log4Qt::Logger* logger() const;
    /// The settings in force.
    const Settings& settings() const;

    /// Performs one exchange, blocking the calling thread until it is over
    /// or its timeout has passed. Never throws for a network condition.
    virtual void send(const http::Request& request);
    /// The response to the last send(): its status and body, or how it failed.
    virtual http::Response response();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
