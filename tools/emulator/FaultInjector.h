#pragma once

#include "Fault.h"
#include "HttpFront.h"

#include <QByteArray>

#include <functional>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

namespace vesk::emulator {

class StopSignal;

// Plays a fault on the exchange that an HTTP handler is serving.
class FaultInjector {
public:
    explicit FaultInjector(const StopSignal& stop)
        : stop_(stop) {}

    // What the client was sent, for the request log.
    struct Played {
        bool replyAsUsual = false; // the handler is to reply as it would without the fault
        int status = 0;            // 0: no reply, or none whole
        int code = 0;              // the "code" of an error reply
        QByteArray body;           // the body sent, whole or in part
        QString note = QString();  // for the log line: what a withheld reply was

        static Played asUsual() {
            Played played;
            played.replyAsUsual = true;
            return played;
        }
    };

    // `perform` carries the operation out, for the faults whose reply is the
    // operation's own and for those played after it (Fault::after).
    Played play(const Fault& fault, const httplib::Request& request, httplib::Response& response,
                const std::function<HttpFront::Answer()>& perform) const;

private:
    const StopSignal& stop_;
};

} // namespace vesk::emulator
