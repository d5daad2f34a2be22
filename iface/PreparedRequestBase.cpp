#include "PreparedRequestBase.h"

#include "CallGates.h"
#include "CallOutcome_p.h"
#include "NetworkException.h"
#include "PreparedRequest.h"
#include "ReplyDiagnostics.h"
#include "records/Conversion.h"
#include "records/Losses.h"
#include "json/CompactJson.h"
#include "json/ReplyJson.h"

#include <chrono>
#include <cmath>
#include <limits>

namespace vesk {

namespace diagnostics = detail::diagnostics;

namespace {

bool isNumber(const QVariant& value) {
    const int type = value.metaType().id();
    return type == QMetaType::LongLong || type == QMetaType::Double;
}

// The "code" of an error reply: a JSON number with no fraction within the
// 32-bit range; anything else (a numeric string included) reads as 0.
int errorCode(const QVariant& value) {
    if (!isNumber(value))
        return 0;
    const double code = value.toDouble();
    if (code != std::trunc(code) || code < std::numeric_limits<int>::min() ||
        code > std::numeric_limits<int>::max())
        return 0;
    return static_cast<int>(code);
}

// A member of the reply object as QJsonValue::toString() reads it: the text
// of a JSON string, else nothing.
QString textOf(const QVariant& value) {
    return value.metaType().id() == QMetaType::QString ? value.toString() : QString();
}

template <class Log>
[[noreturn]] void raise(const http::Response& response, const QVariantMap& reply, const Log& log,
                        const QString& url) {
    if (response.isNetworkError() || response.isContentNetworkError())
        throw NetworkException(response.error);
    const QVariant userMsg = reply.value(QStringLiteral("userMsg"));
    const QVariant codeValue = reply.value(QStringLiteral("code"));
    const QString text = textOf(userMsg);
    const tr::Tr message(text);
    const int code = errorCode(codeValue);
    if (!isNumber(codeValue) || userMsg.metaType().id() != QMetaType::QString)
        diagnostics::errorWithoutServiceFields(log(), url, response, !isNumber(codeValue),
                                               userMsg.metaType().id() != QMetaType::QString, code,
                                               text);
    throw Exception(code, message);
}

// One exchange: the request is released once sent, then the response taken.
http::Response exchange(RestClient& client, const QString& url, const QByteArray& body) {
    {
        http::Request request;
        request.method = QByteArrayLiteral("POST");
        request.url = QUrl(url, QUrl::TolerantMode);
        request.body = body;
        client.send(request);
    }
    return client.response();
}

// Collects what the reply's members lost on their way into a record.
class LossCollector final : public records::LossObserver {
public:
    void lost(const QMetaObject& record, const char* member, const char* expected,
              const QVariant& given, const QVariant& kept) override {
        losses.push_back({&record, member, expected, given, kept});
    }
    std::vector<diagnostics::Loss> losses;
};

} // namespace

QVariant PreparedRequestBase::getResponseVariant() const {
    using Clock = std::chrono::steady_clock;
    // The bytes of QJsonDocument(QJsonObject::fromVariantMap(...)).toJson(Compact).
    const QByteArray sent = json::compactJson(body.toMap());
    const Log4Qt::Logger* logger = nullptr;
    Clock::time_point started;
    const http::Response response = [&] {
        if (!client) {
            const auto own = QSharedPointer<RestClient>::create();
            started = Clock::now();
            return exchange(*own, url, sent);
        }
        const QSharedPointer<RestClient> performer = client;
        // A shared client carries one exchange at a time, whoever calls.
        const detail::CallGates::Call call = detail::CallGates::enter(performer, url);
        if (call.destroyed) {
            detail::recordOutcome(CallOutcome(url, 0, CallOutcome::Failure::ClientDestroyed,
                                              CallOutcome::Reached::No,
                                              std::chrono::milliseconds(0), 0, 0));
            throw NetworkException(tr::Tr(
                QStringLiteral("No connection to %1: the HTTP client of this call was destroyed "
                               "while still in use; nothing was sent")
                    .arg(url)));
        }
        logger = call.logger;
        const std::lock_guard<std::recursive_mutex> exchanging(call.gate->exchange);
        started = Clock::now();
        return exchange(*performer, url, sent);
    }();
    const auto elapsed =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started);
    // Found only when there is something to say.
    const auto log = [&]() -> const Log4Qt::Logger& {
        return logger ? *logger : *detail::CallGates::loggerFor(nullptr, url);
    };

    // What QJsonDocument::fromJson(body).object().toVariantMap() gives.
    json::Reply reply = json::readReply(response.body);
    detail::recordOutcome(detail::outcomeOf(url, response, reply.shape, elapsed, sent.size()));
    if (response.statusCode == 200) {
        if (reply.shape != json::Reply::Shape::Object)
            diagnostics::replyNotAnObject(log(), url, response, reply.shape);
        return std::move(reply.object);
    }
    raise(response, reply.object, log, url);
}

void detail::readReply(const PreparedRequestBase& call, const QVariant& reply, void* record,
                       const serder::details::Strategy& strategy, const QMetaObject& type) {
    LossCollector collector;
    {
        const records::ObservedLosses observing(&collector);
        strategy.deserialize(record, reply, type);
    }
    if (!collector.losses.empty()) {
        diagnostics::membersLost(*detail::CallGates::loggerFor(call.client, call.url), call.url,
                                 collector.losses);
    }
}

QVariant PreparedRequestBase::vesk_readUrl() const {
    return url;
}

void PreparedRequestBase::vesk_writeUrl(const QVariant& value) {
    url = records::convertVariant<QString>(value);
}

QVariant PreparedRequestBase::vesk_readBody() const {
    return body;
}

void PreparedRequestBase::vesk_writeBody(const QVariant& value) {
    body = value.metaType() == QMetaType::fromType<QVariant>()
               ? *static_cast<const QVariant*>(value.constData())
               : value;
}

} // namespace vesk
