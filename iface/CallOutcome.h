#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>

class QDebug;

namespace vesk {

/// What became of one performed call: where it went, what came back and,
/// when it failed, whether the back office may have acted on it.
///
/// Every performance of a prepared request (getResponseVariant(), and so
/// the typed response() too) makes one, on success and on failure alike,
/// before it returns or throws. The thread that performed the call reads it
/// with vesk::lastCallOutcome(); a host that wants every call, for its own
/// telemetry, installs one observer with vesk::setCallObserver().
///
/// The exceptions stay as they are: an outcome is what a program reads to
/// decide, an exception's message what a person reads.
///
/// Deciding whether to repeat a commit that failed:
/// @code
/// try {
///     loyalty->commitCheque(cheque).response();
/// } catch (const vesk::Exception&) {
///     const vesk::CallOutcome outcome = vesk::lastCallOutcome();
///     switch (outcome.reached()) {
///     case vesk::CallOutcome::Reached::No:
///         // Nothing left the till: send the commit again, or later.
///         break;
///     case vesk::CallOutcome::Reached::Yes:
///         // The back office answered. A service error (outcome.httpStatus(),
///         // e.code()) is its verdict; a reply that came back broken means it
///         // received the commit and may have made it.
///         break;
///     case vesk::CallOutcome::Reached::Unknown:
///         // The request left and nothing came back: the commit may have been
///         // made. Repeat the same request (same cheque, same ids), which a
///         // back office that deduplicates answers with the first result.
///         break;
///     }
/// }
/// @endcode
class CallOutcome {
    Q_GADGET
    Q_PROPERTY(QString url READ url)
    Q_PROPERTY(int httpStatus READ httpStatus)
    Q_PROPERTY(Failure failure READ failure)
    Q_PROPERTY(Reached reached READ reached)
    Q_PROPERTY(qint64 elapsedMs READ elapsedMs)
    Q_PROPERTY(qint64 bytesSent READ bytesSent)
    Q_PROPERTY(qint64 bytesReceived READ bytesReceived)

public:
    /// How the call ended.
    enum class Failure {
        None, ///< status 200 with a JSON object: the call's result
        // Nothing was sent.
        Refused,      ///< the server refused the connection
        Unresolved,   ///< the host name did not resolve
        TlsFailed,    ///< no secure connection (handshake, certificate)
        NoConnection, ///< no connection for another reason (time-out, bad URL, ...)
        // The request was sent.
        NoReply,          ///< no reply within the time-out
        ConnectionLost,   ///< the connection closed or was reset before a reply
        ReplyCut,         ///< a reply began and did not arrive whole
        ReplyUndecodable, ///< a reply that could not be read (framing, encoding)
        ReplyOverLimit,   ///< a reply larger than the transport takes
        // What a transport that says no more reports.
        NetworkFailure, ///< a network failure of no known kind
        ContentFailure, ///< a reply that did not arrive whole, of no known kind
        // A whole reply arrived.
        ServiceError,   ///< a status other than 200: vesk::Exception with its code
        NotAnObject,    ///< status 200 whose body is no JSON object, read as an empty one
        ClientDestroyed ///< the call's HTTP client was gone; nothing was sent
    };
    Q_ENUM(Failure)

    /// Whether the request may have reached the back office.
    enum class Reached {
        No,     ///< nothing was sent
        Yes,    ///< the back office answered, whole or not
        Unknown ///< it was sent and no reply came: it may have arrived
    };
    Q_ENUM(Reached)

    CallOutcome() = default;

    /// The call's URL, as the prepared request held it.
    QString url() const { return url_; }
    /// The HTTP status of a reply that arrived whole; 0 when none did.
    int httpStatus() const { return httpStatus_; }
    /// How the call ended.
    Failure failure() const { return failure_; }
    /// Whether the request may have reached the back office.
    Reached reached() const { return reached_; }
    /// From the start of the exchange to its end.
    std::chrono::milliseconds elapsed() const { return elapsed_; }
    /// elapsed() as a number of milliseconds.
    qint64 elapsedMs() const { return qint64(elapsed_.count()); }
    /// The bytes of the request body sent.
    qint64 bytesSent() const { return bytesSent_; }
    /// The bytes of the reply body received, as the transport handed it over.
    qint64 bytesReceived() const { return bytesReceived_; }

    /// True when the call gave its result: status 200 with a JSON object.
    bool succeeded() const { return failure_ == Failure::None; }
    /// True when the failure happened on the way, not in the back office's
    /// answer: every kind from Refused to ContentFailure, and ClientDestroyed.
    bool isNetworkFailure() const;

    /// "Failure::NoReply" and the like, for logs.
    static QString name(Failure failure);
    /// "Reached::Unknown" and the like, for logs.
    static QString name(Reached reached);

    /// @cond
    // Made by the call frame.
    CallOutcome(QString url, int httpStatus, Failure failure, Reached reached,
                std::chrono::milliseconds elapsed, qint64 bytesSent, qint64 bytesReceived);
    /// @endcond

private:
    QString url_;
    int httpStatus_ = 0;
    Failure failure_ = Failure::None;
    Reached reached_ = Reached::Unknown;
    std::chrono::milliseconds elapsed_{0};
    qint64 bytesSent_ = 0;
    qint64 bytesReceived_ = 0;
};

/// The outcome of the last call performed on the calling thread; a default
/// CallOutcome (empty URL) before the thread's first call.
CallOutcome lastCallOutcome();

/// Called with the outcome of every call, on the thread that performed it,
/// after the exchange and before the call returns or throws.
using CallObserver = std::function<void(const CallOutcome&)>;

/// Installs the one observer of every call (an empty function removes it)
/// and returns the one it replaces. Safe from any thread; a call in flight
/// tells the observer that was installed when it ended. What an observer
/// throws is caught and dropped: the call's own result stands.
CallObserver setCallObserver(CallObserver observer);

/// "CallOutcome(POST http://... -> 200, None, reached Yes, 12 ms, 54 B sent, 311 B received)".
QDebug operator<<(QDebug debug, const CallOutcome& outcome);

} // namespace vesk
