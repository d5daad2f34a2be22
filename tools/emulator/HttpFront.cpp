#include "HttpFront.h"

#include "AdminApi.h"
#include "Compression.h"
#include "DiscountService.h"
#include "FaultInjector.h"
#include "FaultRules.h"
#include "HttpServer.h"
#include "LoyaltyService.h"
#include "RepeatGuard.h"
#include "RequestLog.h"
#include "SalesService.h"
#include "ServedConnection.h"
#include "ServiceError.h"
#include "StopSignal.h"
#include "journal/Journal.h"
#include "metrics/Metrics.h"

#include <morva/Serder.h>

#include <requestcheck/RequestCheck.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>

#include <pthread.h>

namespace vesk::emulator {

namespace {

const char* const discPath = "/api/axapta/ExchangeData_Disc/";
const char* const loyaltyPath = "/api/axapta/ExchangeData_Loyalty/";
const char* const salesPath = "/api/axapta/ExchangeData_Sales/";

constexpr size_t maxBodyBytes = 8 * 1024 * 1024;

// Replies shorter than this go out as they are: compressing a few hundred
// bytes costs the server more than it saves on the wire.
constexpr qsizetype compressFromBytes = 1024;

// Sets a JSON reply, gzip-compressed when it is large and the client takes
// gzip. The media type carries its charset, which also keeps the HTTP
// library from compressing on its own (it would pick brotli, slow to make).
// Returns the body before compression, for the log.
QByteArray replyJson(const httplib::Request& request, httplib::Response& response, int status,
                     const QJsonObject& object) {
    static const char* const mediaType = "application/json; charset=utf-8";
    response.status = status;
    const QByteArray body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (body.size() >= compressFromBytes &&
        acceptsGzip(request.get_header_value("Accept-Encoding"))) {
        response.set_header("Content-Encoding", "gzip");
        response.set_content(gzip(body).toStdString(), mediaType);
        return body;
    }
    response.set_content(body.toStdString(), mediaType);
    return body;
}

QByteArray replyError(const httplib::Request& request, httplib::Response& response, int status,
                      int code, const QString& userMsg) {
    return replyJson(
        request, response, status,
        QJsonObject{{QStringLiteral("code"), code}, {QStringLiteral("userMsg"), userMsg}});
}

int codeOf(const HttpFront::Answer& answer) {
    return answer.status == 200 ? 0 : answer.object.value(QStringLiteral("code")).toInt();
}

// Why a reply that the handler has made will not reach the client, if it
// will not: checked just before it is written.
QString undelivered(const httplib::Request& request) {
    const ServedConnection connection = ServedConnection::ofThisWorker(
        request.local_port, request.remote_addr, request.remote_port);
    return connection.clientGone() ? QStringLiteral("client closed") : QString();
}

// An admin request with its query: "where" may repeat, so it is a list.
AdminRequest adminRequest(const httplib::Request& request) {
    AdminRequest admin{request.method, request.path, QByteArray::fromStdString(request.body), {}};
    QJsonArray where;
    for (const auto& [name, value] : request.params) {
        if (name == "where")
            where.append(QString::fromStdString(value));
        else
            admin.query.insert(QString::fromStdString(name), QString::fromStdString(value));
    }
    if (!where.isEmpty())
        admin.query.insert(QStringLiteral("where"), where);
    return admin;
}

QString methodAndPath(const httplib::Request& request) {
    return QString::fromStdString(request.method + ' ' + request.path);
}

// An operation and the record its body fills.
struct OperationRoute {
    HttpFront::Operation operation;
    const QMetaObject* request;
};

// One operation: the body as the service's request record, its reply as the answer's object.
template <class Service, class Request, class Response>
OperationRoute operation(Service& service, Response (Service::*method)(const Request&)) {
    return {[&service, method](const QVariant& body) {
                const QVariant reply =
                    serder::serialize((service.*method)(serder::deserialize<Request>(body)));
                return HttpFront::Answer{200, QJsonObject::fromVariantMap(reply.toMap())};
            },
            &Request::staticMetaObject};
}

QStringList findingsIn(const QVariantMap& body, const QMetaObject& record) {
    QStringList findings;
    for (const check::RequestProblem& problem : check::checkRequest(body, record))
        findings.append(problem.text());
    return findings;
}

} // namespace

QString HttpFront::servicePath(const QString& service) {
    if (service == QLatin1String("disc"))
        return QString::fromLatin1(discPath);
    if (service == QLatin1String("loyalty"))
        return QString::fromLatin1(loyaltyPath);
    if (service == QLatin1String("sales"))
        return QString::fromLatin1(salesPath);
    return QString();
}

HttpFront::HttpFront(SalesService& sales, DiscountService& discount, LoyaltyService& loyalty,
                     FaultRules* faults, const AdminApi* admin, RepeatGuard* repeats,
                     Journal* journal, Metrics* metrics)
    : faults_(faults)
    , admin_(admin)
    , journal_(journal)
    , metrics_(metrics)
    , stop_(std::make_unique<StopSignal>())
    , injector_(std::make_unique<FaultInjector>(*stop_)) {
    addRoutes(sales, discount, loyalty, repeats);
}

HttpFront::~HttpFront() {
    stop();
}

void HttpFront::addRoutes(SalesService& sales, DiscountService& discount, LoyaltyService& loyalty,
                          RepeatGuard* repeats) {
    const auto add = [this](const char* base, const char* name, OperationRoute route) {
        operations_.emplace(std::string(base) + name,
                            Route{std::move(route.operation), route.request});
    };
    // The calls that take effect once per cheque, and the one that lets a cheque go.
    const auto once = [repeats](const char* name, const RepeatGuard::Identification& by,
                                OperationRoute route) {
        if (repeats)
            route.operation = repeats->once(QLatin1String(name), by, std::move(route.operation));
        return route;
    };
    const auto releasing = [repeats](const char* guarded, const char* chequeKey,
                                     OperationRoute route) {
        if (repeats)
            route.operation = repeats->releasing(QLatin1String(guarded), QLatin1String(chequeKey),
                                                 std::move(route.operation));
        return route;
    };
    const RepeatGuard::Identification byChequeId{QStringLiteral("chequeId"), QString()};
    const RepeatGuard::Identification byDataId{QStringLiteral("dataId"), QString()};
    const RepeatGuard::Identification byDataIdAndGuid{QStringLiteral("dataId"),
                                                      QStringLiteral("guid")};

    add(salesPath, "itemInfo", operation(sales, &SalesService::itemInfo));
    add(salesPath, "reserveCheque",
        once("reserveCheque", byChequeId, operation(sales, &SalesService::reserveCheque)));
    add(salesPath, "unreserveCheque",
        releasing("reserveCheque", "chequeId", operation(sales, &SalesService::unreserveCheque)));

    add(discPath, "discCalc", operation(discount, &DiscountService::discCalc));
    add(discPath, "discCalcPay", operation(discount, &DiscountService::discCalcPay));
    add(discPath, "getPublicityList", operation(discount, &DiscountService::getPublicityList));

    add(loyaltyPath, "processId", operation(loyalty, &LoyaltyService::processId));
    add(loyaltyPath, "processPin", operation(loyalty, &LoyaltyService::processPin));
    add(loyaltyPath, "getCardBalance", operation(loyalty, &LoyaltyService::getCardBalance));
    add(loyaltyPath, "calcBonusAmount", operation(loyalty, &LoyaltyService::calcBonusAmount));
    add(loyaltyPath, "calcAndReserveBonusPay",
        once("calcAndReserveBonusPay", byDataId,
             operation(loyalty, &LoyaltyService::calcAndReserveBonusPay)));
    add(loyaltyPath, "checkPin", operation(loyalty, &LoyaltyService::checkPin));
    add(loyaltyPath, "commitCheque",
        once("commitCheque", byDataIdAndGuid, operation(loyalty, &LoyaltyService::commitCheque)));
    add(loyaltyPath, "getParkingInfo", operation(loyalty, &LoyaltyService::getParkingInfo));
    add(loyaltyPath, "cashierAdditionalInfo",
        operation(loyalty, &LoyaltyService::cashierAdditionalInfo));
    add(loyaltyPath, "chequeAdditionalInfo",
        operation(loyalty, &LoyaltyService::chequeAdditionalInfo));
}

HttpFront::ParsedBody::ParsedBody(const QByteArray& body)
    : document(QJsonDocument::fromJson(body, &error)) {}

HttpFront::Answer HttpFront::answer(const std::string& path, const QByteArray& body,
                                    const ParsedBody& parsed) const {
    const auto error = [](int status, int code, const QString& userMsg) {
        return Answer{status, QJsonObject{{QStringLiteral("code"), code},
                                          {QStringLiteral("userMsg"), userMsg}}};
    };
    const auto op = operations_.find(path);
    if (op == operations_.end())
        return error(404, code::unknownPath,
                     QStringLiteral("No operation at %1").arg(QString::fromStdString(path)));
    const QJsonParseError& parseError = parsed.error;
    const QJsonDocument& document = parsed.document;
    if (body.isEmpty())
        return error(400, code::badBody,
                     QStringLiteral("The body is empty: a JSON object is expected"));
    if (parseError.error != QJsonParseError::NoError)
        return error(400, code::badBody,
                     QStringLiteral("The body is not JSON: %1 at offset %2")
                         .arg(parseError.errorString())
                         .arg(parseError.offset));
    if (!document.isObject())
        return error(400, code::badBody, QStringLiteral("The body is JSON but not an object"));
    const QVariantMap request = document.object().toVariantMap();
    const QStringList findings = findingsIn(request, *op->second.request);
    if (strict_ && !findings.isEmpty()) {
        Answer refused = error(422, code::doesNotFit,
                               QStringLiteral("The request does not fit %1: %2")
                                   .arg(QLatin1String(op->second.request->className()),
                                        findings.join(QStringLiteral("; "))));
        refused.findings = findings;
        return refused;
    }
    Answer answered = [&] {
        try {
            return op->second.operation(request);
        } catch (const ServiceError& e) {
            return error(e.status(), e.code(), e.userMsg());
        } catch (const std::exception& e) {
            return error(
                500, code::internal,
                QStringLiteral("The emulator failed: %1").arg(QString::fromUtf8(e.what())));
        }
    }();
    answered.findings = findings;
    return answered;
}

void HttpFront::serveOperation(const std::string& path, const QString& name,
                               const httplib::Request& request, httplib::Response& response) {
    QElapsedTimer timer;
    timer.start();
    const qint64 arrivedMs = QDateTime::currentMSecsSinceEpoch();
    RequestRecord record{name};
    const QByteArray body = QByteArray::fromStdString(request.body);
    logBody(name, "request", body);

    const ParsedBody parsed(body);
    const std::optional<Fault> fault =
        faults_ ? faults_->take(name, parsed.document.object()) : std::nullopt;
    if (fault) {
        record.fault = faultName(*fault);
        if (metrics_)
            metrics_->recordFault(fault->kind);
    }
    // In the journal before anything goes out: a fault may break the
    // connection, and the client may ask the journal, before this handler ends.
    const qint64 seq =
        journal_ ? journal_->add(JournalEntry::arrived(arrivedMs, name, body, record.fault)) : 0;
    QStringList findings;
    const auto perform = [&] {
        Answer answered = answer(path, body, parsed);
        findings = answered.findings;
        return answered;
    };
    FaultInjector::Played played = FaultInjector::Played::asUsual();
    if (fault)
        played = injector_->play(*fault, request, response, perform);
    if (played.replyAsUsual) {
        const Answer answered = perform();
        played = {false, answered.status, codeOf(answered),
                  replyJson(request, response, answered.status, answered.object), answered.note};
    }
    if (played.status == 0 && played.body.isEmpty())
        logNoReply(name);
    else
        logBody(name, "reply", played.body);
    record.status = played.status;
    if (played.status > 0 && played.status != 200)
        record.code = played.code;
    if (played.status > 0)
        record.undelivered = undelivered(request);
    record.note = played.note;
    record.ms = timer.elapsed();
    ++served_;
    logRequest(record);
    if (metrics_)
        metrics_->recordRequest(name, record.status, timer.nsecsElapsed() / 1000);
    if (!findings.isEmpty())
        logFindings(name, findings);
    if (journal_)
        journal_->complete(seq, record.status, record.code, record.ms, record.note, findings);
}

void HttpFront::serveOther(const httplib::Request& request, httplib::Response& response) {
    QElapsedTimer timer;
    timer.start();
    RequestRecord record{methodAndPath(request)};
    const QString path = QString::fromStdString(request.path);
    if (admin_ && AdminApi::isAdminPath(request.path)) {
        // An admin call is logged by its path and status: its refusals' codes
        // only repeat the status.
        if (metrics_)
            metrics_->recordAdminRequest();
        const Answer answered = admin_->answer(adminRequest(request));
        if (answered.rawType.isEmpty()) {
            replyJson(request, response, answered.status, answered.object);
        } else {
            response.status = answered.status;
            response.set_content(answered.rawBody.toStdString(), answered.rawType.toStdString());
        }
    } else {
        if (operations_.count(request.path))
            replyError(request, response, 405, code::wrongMethod,
                       QStringLiteral("%1 takes POST only").arg(path));
        else
            replyError(request, response, 404, code::unknownPath,
                       QStringLiteral("No operation at %1").arg(path));
        record.code = response.status;
        ++served_;
    }
    record.status = response.status;
    record.undelivered = undelivered(request);
    record.ms = timer.elapsed();
    logRequest(record);
}

bool HttpFront::start(const QString& host, quint16 port, QString* error) {
    if (server_) {
        if (error)
            *error = QStringLiteral("the server is running already");
        return false;
    }
    auto server = std::make_unique<HttpServer>();
    server->set_payload_max_length(maxBodyBytes);

    for (const auto& entry : operations_) {
        const std::string path = entry.first;
        const QString name = QString::fromStdString(path.substr(path.rfind('/') + 1));
        server->Post(
            path, [this, path, name](const httplib::Request& request, httplib::Response& response) {
                serveOperation(path, name, request, response);
            });
    }
    const auto other = [this](const httplib::Request& request, httplib::Response& response) {
        serveOther(request, response);
    };
    server->Post(".*", other);
    server->Get(".*", other);
    server->Put(".*", other);
    server->Patch(".*", other);
    server->Delete(".*", other);
    server->Options(".*", other);
    // Failures that httplib answers itself (a body over the limit, a request
    // it cannot read) get the same kind of body as the operations' errors.
    server->set_error_handler(httplib::Server::HandlerWithResponse(
        [](const httplib::Request& request, httplib::Response& response) {
            if (!response.body.empty())
                return httplib::Server::HandlerResponse::Unhandled;
            const int status = response.status;
            replyError(
                request, response, status, status,
                status == 413
                    ? QStringLiteral("The body is larger than 8 MiB")
                    : QStringLiteral("The request could not be read (HTTP status %1)").arg(status));
            logRequest(RequestRecord{methodAndPath(request), status, status});
            return httplib::Server::HandlerResponse::Handled;
        }));
    server->set_exception_handler([](const httplib::Request& request, httplib::Response& response,
                                     std::exception_ptr) {
        replyError(request, response, 500, code::internal, QStringLiteral("The emulator failed"));
    });

    const int bound = server->bindAndListen(host.toStdString(), port);
    if (bound <= 0) {
        if (error)
            *error = QStringLiteral("cannot listen on %1:%2 (is the port in use, or the address "
                                    "not this machine's?)")
                         .arg(host)
                         .arg(port);
        return false;
    }
    port_ = static_cast<quint16>(bound);
    server_ = std::move(server);
    stop_->lower();
    thread_ = std::thread([this] {
        // A client that goes while its reply is written must not end the
        // process: the workers, made by this thread, inherit the mask and
        // get EPIPE instead of SIGPIPE.
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
        server_->listen_after_bind();
    });
    // stop() reaches only a server whose accept loop has begun; requests
    // that come before wait in the listening socket's backlog.
    while (!server_->is_running())
        std::this_thread::yield();
    return true;
}

void HttpFront::stop() {
    if (!server_)
        return;
    stop_->raise(); // the workers' waits end, so that the pool can be joined at once
    server_->stopServing();
    if (thread_.joinable())
        thread_.join();
    server_.reset();
}

} // namespace vesk::emulator
