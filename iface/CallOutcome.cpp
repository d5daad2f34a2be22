#include "CallOutcome_p.h"

#include <transport/TransportReport.h>

#include <QDebug>
#include <QMap>
#include <QMetaEnum>

#include <memory>
#include <mutex>

namespace vesk {
namespace {

thread_local CallOutcome lastOnThisThread;

struct Observers {
    std::mutex lock;
    std::shared_ptr<const CallObserver> current;
};

// Never destroyed: a call on another thread may end while the process exits.
Observers& observers() {
    static Observers* const instance = new Observers;
    return *instance;
}

template <class Enum>
QString enumName(Enum value) {
    const QMetaEnum meta = QMetaEnum::fromType<Enum>();
    const char* key = meta.valueToKey(int(value));
    return QString::fromLatin1(meta.enumName()) + QLatin1String("::") +
           QString::fromLatin1(key ? key : "?");
}

} // namespace

CallOutcome::CallOutcome(QString url, int httpStatus, Failure failure, Reached reached,
                         std::chrono::milliseconds elapsed, qint64 bytesSent, qint64 bytesReceived)
    : url_(std::move(url))
    , httpStatus_(httpStatus)
    , failure_(failure)
    , reached_(reached)
    , elapsed_(elapsed)
    , bytesSent_(bytesSent)
    , bytesReceived_(bytesReceived) {}

bool CallOutcome::isNetworkFailure() const {
    return (failure_ >= Failure::Refused && failure_ <= Failure::ContentFailure) ||
           failure_ == Failure::ClientDestroyed;
}

QString CallOutcome::name(Failure failure) {
    return enumName(failure);
}

QString CallOutcome::name(Reached reached) {
    return enumName(reached);
}

CallOutcome lastCallOutcome() {
    return lastOnThisThread;
}

CallObserver setCallObserver(CallObserver observer) {
    auto installed = observer ? std::make_shared<const CallObserver>(std::move(observer))
                              : std::shared_ptr<const CallObserver>();
    Observers& o = observers();
    std::shared_ptr<const CallObserver> previous;
    {
        const std::lock_guard<std::mutex> lock(o.lock);
        previous = std::exchange(o.current, std::move(installed));
    }
    return previous ? *previous : CallObserver();
}

QDebug operator<<(QDebug debug, const CallOutcome& outcome) {
    const QDebugStateSaver saver(debug);
    debug.nospace().noquote() << "CallOutcome(POST " << outcome.url() << " -> "
                              << outcome.httpStatus() << ", "
                              << CallOutcome::name(outcome.failure()) << ", "
                              << CallOutcome::name(outcome.reached()) << ", " << outcome.elapsedMs()
                              << " ms, " << outcome.bytesSent() << " B sent, "
                              << outcome.bytesReceived() << " B received)";
    return debug;
}

namespace detail {
namespace {

using Failure = CallOutcome::Failure;
using Reached = CallOutcome::Reached;

// The kind that the transport's report names, or `unknown`.
Failure reportedFailure(const QByteArray& kind, Failure unknown) {
    namespace failure = transport::failure;
    static const QMap<QByteArray, Failure> kinds{
        {failure::refused, Failure::Refused},
        {failure::unresolved, Failure::Unresolved},
        {failure::tls, Failure::TlsFailed},
        {failure::noConnection, Failure::NoConnection},
        {failure::noReply, Failure::NoReply},
        {failure::connectionLost, Failure::ConnectionLost},
        {failure::replyCut, Failure::ReplyCut},
        {failure::replyUndecodable, Failure::ReplyUndecodable},
        {failure::replyOverLimit, Failure::ReplyOverLimit}};
    return kinds.value(kind, unknown);
}

} // namespace

CallOutcome outcomeOf(const QString& url, const http::Response& response, json::Reply::Shape shape,
                      std::chrono::milliseconds elapsed, qint64 bytesSent) {
    const auto made = [&](Failure failure, Reached reached) {
        return CallOutcome(url, response.statusCode, failure, reached, elapsed, bytesSent,
                           response.body.size());
    };
    // In the order in which the call frame decides what to raise.
    if (response.statusCode == 200)
        return made(shape == json::Reply::Shape::Object ? Failure::None : Failure::NotAnObject,
                    Reached::Yes);
    const bool network = response.isNetworkError();
    if (!network && !response.isContentNetworkError())
        return made(Failure::ServiceError, Reached::Yes);

    const Failure failure =
        reportedFailure(response.headers.value(transport::failureHeader),
                        network ? Failure::NetworkFailure : Failure::ContentFailure);
    const QByteArray sent = response.headers.value(transport::sentHeader);
    Reached reached = network ? Reached::Unknown : Reached::Yes;
    if (sent == "no")
        reached = Reached::No;
    else if (failure >= Failure::ReplyCut && failure <= Failure::ReplyOverLimit)
        reached = Reached::Yes; // a reply began: the back office has the request
    return made(failure, reached);
}

void recordOutcome(const CallOutcome& outcome) {
    lastOnThisThread = outcome;
    std::shared_ptr<const CallObserver> observer;
    {
        Observers& o = observers();
        const std::lock_guard<std::mutex> lock(o.lock);
        observer = o.current;
    }
    if (!observer)
        return;
    try {
        (*observer)(outcome);
    } catch (...) {
        // The observer's trouble is not the call's.
    }
}

} // namespace detail
} // namespace vesk
