#include "FakeBackOffice.h"

#include "OperationNames.h"
#include "ScriptedFailure.h"

#include <vesk/disc/Api.h>
#include <vesk/loyalty/Api.h>
#include <vesk/sales/Api.h>

#include <morva/MockFactory.h>

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>

namespace vesk::testing {

// One scripted answer, made into a Response for each call that it answers.
struct FakeBackOffice::Reply {
    int status = 200;
    QByteArray body;
    std::optional<CallOutcome::Failure> failure;
    QString message;
    int remaining = 1; // calls left to answer; -1: every call
    int answered = 0;
    quint64 id = 0; // how its Script finds it again
};

struct FakeBackOffice::Private {
    mutable std::mutex lock;
    // By script key (see the keys below). A key whose replies are used up
    // stays, so that its next call is told so.
    QHash<QString, std::deque<Reply>> scripts;
    QList<ReceivedRequest> received;
    QList<ReceivedRequest> unexpected;
    quint64 lastId = 0;
    quint64 resets = 0;
    QHash<QString, Reply> lastOfKey; // as scripted, for times() and always()
    // A call's send() and response() come on one thread; calls of several
    // services may be between the two at once.
    std::unordered_map<std::thread::id, http::Response> pending;
};

namespace {

QString operationKey(const QString& service, const QString& operation) {
    return QStringLiteral("operation:%1/%2").arg(service, operation);
}

QString urlKey(const QUrl& url) {
    return QStringLiteral("url:") + url.toString();
}

QString pathKey(const QString& path) {
    return QStringLiteral("path:") + path;
}

http::Response reply(int status, const QByteArray& body) {
    http::Response response;
    response.statusCode = status;
    response.body = body;
    return response;
}

// "sales itemInfo", or the URL's operation when no service has it.
QString callName(const FakeBackOffice::ReceivedRequest& call) {
    if (call.service.isEmpty())
        return QStringLiteral("the URL's operation \"%1\", of no known service")
            .arg(call.operation);
    return QStringLiteral("%1 %2").arg(call.service, call.operation);
}

QString hint(const FakeBackOffice::ReceivedRequest& call) {
    if (call.service.isEmpty())
        return QStringLiteral("onUrl(\"%1\")").arg(call.url);
    return QStringLiteral("on(\"%1\", \"%2\")").arg(call.service, call.operation);
}

template <class Api>
void refuseIfMadeWithAnother(const RestClient* fake) {
    const Api* made = Singleton<Api>::instance;
    if (made && made->restClient().data() != fake) {
        throw std::logic_error(
            QStringLiteral("FakeBackOffice::install(): %1 was made before with another HTTP "
                           "client, which it keeps; call install() before the first use of a "
                           "service client")
                .arg(QString::fromLatin1(Api::service.className))
                .toStdString());
    }
}

} // namespace

UnexpectedCall::UnexpectedCall(const QString& message)
    : std::logic_error(message.toStdString()) {}

FakeBackOffice::Script::Script(FakeBackOffice* fake, QString key)
    : fake_(fake)
    , key_(std::move(key)) {}

FakeBackOffice::Script& FakeBackOffice::Script::add(const Reply& reply) {
    Private& d = *fake_->d;
    const std::lock_guard<std::mutex> lock(d.lock);
    d.scripts[key_].push_back(reply);
    d.scripts[key_].back().id = lastId_ = ++d.lastId;
    d.lastOfKey[key_] = d.scripts[key_].back();
    resets_ = d.resets;
    return *this;
}

// The reply scripted last answers `count` calls in all (-1: every call).
// Calls may have taken it meanwhile: one that was used up comes back, at
// the head, for the calls that it has left.
FakeBackOffice::Script& FakeBackOffice::Script::repeatLast(int count, const char* name) {
    Private& d = *fake_->d;
    const std::lock_guard<std::mutex> lock(d.lock);
    if (lastId_ == 0) {
        throw std::logic_error(
            QStringLiteral("FakeBackOffice: %1() follows the reply that it repeats")
                .arg(QLatin1String(name))
                .toStdString());
    }
    if (resets_ != d.resets)
        return *this; // reset meanwhile: the reply is gone with the rest
    auto& replies = d.scripts[key_];
    const auto it = std::find_if(replies.begin(), replies.end(),
                                 [this](const Reply& reply) { return reply.id == lastId_; });
    if (it != replies.end()) {
        it->remaining = count < 0 ? -1 : count - it->answered;
    } else if ((count < 0 || count > 1) && d.lastOfKey.value(key_).id == lastId_) {
        Reply used = d.lastOfKey.value(key_);
        used.answered = 1;
        used.remaining = count < 0 ? -1 : count - 1;
        replies.push_front(used);
    }
    return *this;
}

FakeBackOffice::Script& FakeBackOffice::Script::replyVariant(const QVariant& body) {
    return replyJson(
        QJsonDocument(QJsonObject::fromVariantMap(body.toMap())).toJson(QJsonDocument::Compact));
}

FakeBackOffice::Script& FakeBackOffice::Script::replyJson(const QByteArray& body, int httpStatus) {
    Reply reply;
    reply.status = httpStatus;
    reply.body = body;
    return add(reply);
}

FakeBackOffice::Script& FakeBackOffice::Script::error(int code, const QString& userMsg,
                                                      int httpStatus) {
    QJsonObject body;
    body.insert(QStringLiteral("code"), code);
    body.insert(QStringLiteral("userMsg"), userMsg);
    return replyJson(QJsonDocument(body).toJson(QJsonDocument::Compact), httpStatus);
}

FakeBackOffice::Script& FakeBackOffice::Script::fail(CallOutcome::Failure failure,
                                                     const QString& message) {
    if (!detail::canScript(failure)) {
        throw std::invalid_argument(
            QStringLiteral("FakeBackOffice: %1 is no failure of the transport; script a service "
                           "error with error() and a reply that is no JSON object with "
                           "replyJson()")
                .arg(CallOutcome::name(failure))
                .toStdString());
    }
    Reply reply;
    reply.status = 0;
    reply.failure = failure;
    reply.message = message;
    return add(reply);
}

FakeBackOffice::Script& FakeBackOffice::Script::times(int count) {
    if (count < 1)
        throw std::invalid_argument("FakeBackOffice: times() takes a count of at least 1");
    return repeatLast(count, "times");
}

FakeBackOffice::Script& FakeBackOffice::Script::always() {
    return repeatLast(-1, "always");
}

FakeBackOffice& FakeBackOffice::install() {
    static std::mutex installing;
    static FakeBackOffice* made = nullptr;
    const std::lock_guard<std::mutex> lock(installing);
    refuseIfMadeWithAnother<disc::Api>(made);
    refuseIfMadeWithAnother<loyalty::Api>(made);
    refuseIfMadeWithAnother<sales::Api>(made);
    RestClient*& installed = MockFactory<RestClient>::mocked;
    if (installed && installed != made) {
        throw std::logic_error("FakeBackOffice::install(): another substitute RestClient is "
                               "installed in MockFactory");
    }
    // Destroyed at exit, after every call: silently.
    static FakeBackOffice instance;
    made = &instance;
    installed = &instance;
    return instance;
}

FakeBackOffice::FakeBackOffice()
    : d(std::make_unique<Private>()) {}

FakeBackOffice::~FakeBackOffice() {
    if (MockFactory<RestClient>::mocked == this)
        MockFactory<RestClient>::mocked = nullptr;
}

FakeBackOffice::Script FakeBackOffice::on(const QString& service, const QString& operation) {
    if (detail::serviceOf(operation) != service || service.isEmpty()) {
        throw std::invalid_argument(
            QStringLiteral("FakeBackOffice::on(\"%1\", \"%2\"): the %1 service has no operation "
                           "%2")
                .arg(service, operation)
                .toStdString());
    }
    return Script(this, operationKey(service, operation));
}

FakeBackOffice::Script FakeBackOffice::on(const QString& operation) {
    const QString service = detail::serviceOf(operation);
    if (service.isEmpty()) {
        throw std::invalid_argument(
            QStringLiteral("FakeBackOffice::on(\"%1\"): no service has an operation %1; script "
                           "its URL with onUrl()")
                .arg(operation)
                .toStdString());
    }
    return Script(this, operationKey(service, operation));
}

FakeBackOffice::Script FakeBackOffice::onUrl(const QString& urlOrPath) {
    if (urlOrPath.startsWith(QLatin1Char('/')))
        return Script(this, pathKey(urlOrPath));
    return Script(this, urlKey(QUrl(urlOrPath, QUrl::TolerantMode)));
}

QList<FakeBackOffice::ReceivedRequest> FakeBackOffice::requests() const {
    const std::lock_guard<std::mutex> lock(d->lock);
    return d->received;
}

QList<FakeBackOffice::ReceivedRequest> FakeBackOffice::requests(const QString& operation) const {
    QList<ReceivedRequest> found;
    const std::lock_guard<std::mutex> lock(d->lock);
    for (const ReceivedRequest& received : d->received) {
        if (received.operation == operation)
            found.append(received);
    }
    return found;
}

QList<FakeBackOffice::ReceivedRequest> FakeBackOffice::unexpectedCalls() const {
    const std::lock_guard<std::mutex> lock(d->lock);
    return d->unexpected;
}

void FakeBackOffice::reset() {
    const std::lock_guard<std::mutex> lock(d->lock);
    d->scripts.clear();
    d->lastOfKey.clear();
    ++d->resets;
    d->received.clear();
    d->unexpected.clear();
}

void FakeBackOffice::send(const http::Request& request) {
    ReceivedRequest call;
    call.operation = request.url.path().section(QLatin1Char('/'), -1);
    call.service = detail::serviceOf(call.operation);
    call.url = request.url.toString();
    call.body = QJsonDocument::fromJson(request.body).object().toVariantMap();
    call.json = request.body;

    const QString keys[] = {urlKey(request.url), pathKey(request.url.path()),
                            operationKey(call.service, call.operation)};
    std::optional<Reply> reply;
    bool scripted = false;
    {
        const std::lock_guard<std::mutex> lock(d->lock);
        d->received.append(call);
        for (const QString& key : keys) {
            const auto it = d->scripts.find(key);
            if (it == d->scripts.end())
                continue;
            scripted = true;
            if (it->empty())
                continue;
            Reply& head = it->front();
            ++head.answered;
            reply = head;
            if (head.remaining > 0 && --head.remaining == 0)
                it->pop_front();
            break;
        }
        if (!reply) {
            d->unexpected.append(call);
        } else {
            d->pending[std::this_thread::get_id()] =
                reply->failure ? detail::scriptedFailure(*reply->failure, reply->message, call.url)
                               : testing::reply(reply->status, reply->body);
        }
    }
    if (reply)
        return;
    if (scripted) {
        throw UnexpectedCall(
            QStringLiteral("FakeBackOffice: the replies scripted for %1 are used up (POST %2)")
                .arg(callName(call), call.url));
    }
    throw UnexpectedCall(
        QStringLiteral("FakeBackOffice: no reply scripted for %1 (POST %2); script one with %3")
            .arg(callName(call), call.url, hint(call)));
}

http::Response FakeBackOffice::response() {
    const std::lock_guard<std::mutex> lock(d->lock);
    const auto it = d->pending.find(std::this_thread::get_id());
    if (it == d->pending.end()) {
        http::Response none;
        none.failure = http::Response::Failure::Network;
        none.error = tr::Tr(QStringLiteral("FakeBackOffice: response() without a send() on this "
                                           "thread"));
        return none;
    }
    http::Response response = std::move(it->second);
    d->pending.erase(it);
    return response;
}

} // namespace vesk::testing
