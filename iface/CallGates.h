#pragma once

#include <morva/Log4Qt.h>
#include <morva/RestClient.h>

#include <QSharedPointer>
#include <QString>

#include <memory>
#include <mutex>

namespace vesk::detail {

// What the library keeps about each RestClient that carries its calls.
//
// A client's send() and response() make one exchange and a host's own client
// is not known to be thread-safe, so calls on one client take its gate's lock
// for the whole exchange: calls of one service from several threads run one
// after the other, calls of different services in parallel. The lock is
// re-entrant: a substitute whose send() itself performs a call through the
// same client (or through another service sharing it) proceeds on the thread
// that already holds it, instead of waiting for itself forever.
//
// A client is known by the shared references through which calls reach it,
// not by its address alone: when a client is destroyed while a service or a
// prepared request still holds a reference to it, those references are
// remembered as dead, and calls through them fail cleanly instead of
// reaching freed memory. A new client that the allocator puts at the same
// address arrives through a reference of its own, and is served.
//
// A client destroyed while no call is in flight goes silently (a test's
// substitute at the test's end, a process-wide one at exit): each service
// that still uses it is told once, on its first call that fails because of
// it. A client destroyed during a call through it is warned about at once.
//
// The gate also knows which services use the client, so that the library's
// own diagnostics of a call go to the logger of the service that made it.
// The client's own logger is the host's business: the library gives it one
// only when a service is made.
struct CallGate {
    std::recursive_mutex exchange; // held from send() to response()
};

class CallGates {
public:
    struct Call {
        std::shared_ptr<CallGate> gate;         // null when destroyed
        const Log4Qt::Logger* logger = nullptr; // where this call's diagnostics go; never null
        bool destroyed = false; // the client is gone: nothing may be sent through it
    };

    // The gate of a call to `url` through `client` (not null).
    static Call enter(const QSharedPointer<RestClient>& client, const QString& url);

    // The logger of a call to `url` made through `client` (null: a client of
    // the call's own): the service's, or "vesk" for a call of no known service.
    static const Log4Qt::Logger* loggerFor(const QSharedPointer<RestClient>& client,
                                           const QString& url);

    // A service client starts or stops using `client`.
    static void bind(const QSharedPointer<RestClient>& client, const void* service,
                     const QString& name, const QString& baseUrl, const Log4Qt::Logger* logger);
    static void unbind(const QSharedPointer<RestClient>& client, const void* service);

    // Warns, once per service and substitute, that a substitute installed in
    // MockFactory after the service was made is not used by it.
    static void warnLateSubstitute(const QSharedPointer<RestClient>& client, const void* service,
                                   const RestClient* substitute);
};

} // namespace vesk::detail
