#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

namespace vesk::emulator {

class AdminApi;
class DiscountService;
class FaultInjector;
class FaultRules;
class HttpServer;
class Journal;
class Metrics;
class LoyaltyService;
class RepeatGuard;
class SalesService;
class StopSignal;

// The HTTP side of the emulator: the sixteen operations as POST routes under
// /api/axapta/ExchangeData_Disc/, .../ExchangeData_Loyalty/ and
// .../ExchangeData_Sales/. A body becomes the operation's request record
// through the library's own strategies (JSON -> QVariantMap ->
// serder::deserialize) and the reply is serder::serialize of the response
// record, as compact JSON with status 200.
//
// Every failure is a JSON object {"code": N, "userMsg": "..."} with a
// non-200 status: the services' refusals with their own status and code; a
// body that is not a JSON object 400; an unknown path 404; another method
// than POST on an operation's path 405; a body over 8 MiB 413; a failure of
// the emulator itself 500. Bad input never stops the server.
//
// With fault rules, each operation's call may misbehave as a rule says
// (FaultInjector); with a repeat guard, a commitCheque, reserveCheque or
// calcAndReserveBonusPay sent again is answered as RepeatGuard says; with an
// admin API, its routes are served under AdminApi::prefix. Every request is
// logged in one line (RequestLog.h), and an operation's kept in the journal
// when there is one.
class HttpFront {
public:
    // The base path of a service ("disc", "loyalty", "sales"), e.g.
    // "/api/axapta/ExchangeData_Sales/"; empty for another name.
    static QString servicePath(const QString& service);

    // `faults`, `admin`, `repeats`, `journal` and `metrics` may be null; they
    // must outlive the front.
    HttpFront(SalesService& sales, DiscountService& discount, LoyaltyService& loyalty,
              FaultRules* faults = nullptr, const AdminApi* admin = nullptr,
              RepeatGuard* repeats = nullptr, Journal* journal = nullptr,
              Metrics* metrics = nullptr);
    ~HttpFront(); // stops
    HttpFront(const HttpFront&) = delete;
    HttpFront& operator=(const HttpFront&) = delete;

    // What an operation's path answers to a request body, as the routes send
    // it: the status and the JSON object. The sockets' side is start()'s.
    struct Answer {
        int status;
        QJsonObject object;
        QString note = QString(); // for the request's log line: "replayed"
        // What in the request its record does not take (check::checkRequest), masked.
        QStringList findings = QStringList();
        // A reply that is not JSON (the metrics' text): its body and media type.
        QByteArray rawBody = QByteArray();
        QByteArray rawType = QByteArray();
    };
    // A request body parsed once, for the fault rules, the check and the operation.
    struct ParsedBody {
        QJsonParseError error{}; // before `document`, which the parse fills with it
        QJsonDocument document;
        explicit ParsedBody(const QByteArray& body);
    };
    Answer answer(const std::string& path, const QByteArray& body, const ParsedBody& parsed) const;

    // Whether a request whose body has keys or values that its record does
    // not take is refused (422, code::doesNotFit) rather than served with
    // its findings logged and journaled. Set before start().
    void setStrictRequests(bool strict) { strict_ = strict; }

    // Binds (port 0: any free port) and serves on background threads.
    bool start(const QString& host, quint16 port, QString* error);
    // Ends the delays and hangs in progress at once, then the serving.
    void stop();
    quint16 port() const { return port_; }
    // Requests answered so far, the admin API's not counted.
    qint64 requestsServed() const { return served_.load(); }

    // An operation as the routes call it: the body as a variant map in, the answer out.
    using Operation = std::function<Answer(const QVariant& body)>;

private:
    void addRoutes(SalesService& sales, DiscountService& discount, LoyaltyService& loyalty,
                   RepeatGuard* repeats);
    void serveOperation(const std::string& path, const QString& name,
                        const httplib::Request& request, httplib::Response& response);
    void serveOther(const httplib::Request& request, httplib::Response& response);

    std::unique_ptr<HttpServer> server_;
    // An operation and the record its body fills.
    struct Route {
        Operation operation;
        const QMetaObject* request;
    };
    std::map<std::string, Route> operations_; // by path
    bool strict_ = false;
    FaultRules* faults_;
    const AdminApi* admin_;
    Journal* journal_;
    Metrics* metrics_;
    std::unique_ptr<StopSignal> stop_;
    std::unique_ptr<FaultInjector> injector_;
    std::atomic<qint64> served_{0};
    std::thread thread_;
    quint16 port_ = 0;
};

} // namespace vesk::emulator
