#pragma once

#include <morva/Log4Qt.h>
#include <morva/RestClient.h>

#include <QString>

#include <memory>
#include <mutex>

namespace vesk::detail {

// What the library keeps about each RestClient that carries its calls.
//
// A client's send() and response() make one exchange and a host's own client
// is not known to be thread-safe, so calls on one client take its gate's lock
// for the whole exchange: calls of one service from several threads run one
// after the other, calls of different services in parallel.
//
// The gate also knows which services use the client. One substitute shared by
// several services gets, for each call, the logger of the service whose base
// URL the call's URL starts with. A substitute destroyed while a service still
// uses it is remembered, so that the service's later calls fail cleanly
// instead of reaching freed memory.
struct CallGate {
    std::mutex exchange; // held from send() to response()
};

class CallGates {
public:
    struct Call {
        std::shared_ptr<CallGate> gate;
        const Log4Qt::Logger* logger = nullptr; // where this call's diagnostics go; never null
        bool switchLogger = false; // the client serves several services: give it `logger`
        bool destroyed = false;    // the client is gone: nothing may be sent through it
    };

    // The gate of a call to `url` through `client`.
    static Call enter(RestClient* client, const QString& url);

    // The logger of a call to `url` made through `client` (null: a client of
    // the call's own): the service's, or "vesk" for a call of no known service.
    static const Log4Qt::Logger* loggerFor(const RestClient* client, const QString& url);

    // A service client starts or stops using `client`.
    static void bind(RestClient* client, const void* service, const QString& name,
                     const QString& baseUrl, const Log4Qt::Logger* logger);
    static void unbind(RestClient* client, const void* service);

    // Warns, once per service and substitute, that a substitute installed in
    // MockFactory after the service was made is not used by it.
    static void warnLateSubstitute(RestClient* client, const void* service,
                                   const RestClient* substitute);
};

} // namespace vesk::detail
