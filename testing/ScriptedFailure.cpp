#include "ScriptedFailure.h"

#include <transport/TransportReport.h>

namespace vesk::testing::detail {
namespace {

using Failure = CallOutcome::Failure;
using Kind = http::Response::Failure;

struct Report {
    Kind kind;
    QByteArray failure; // the pseudo-header's value; empty: the transport says no more
    QByteArray sent;    // "yes", "no"; empty: the transport says no more
    const char* wording;
};

// How the transport words and reports each kind. A transport that names no
// kind (NetworkFailure, ContentFailure) leaves out its pseudo-headers.
Report reportOf(Failure failure) {
    namespace kind = transport::failure;
    switch (failure) {
    case Failure::Refused:
        return {Kind::Network, kind::refused, "no", "Connection refused by %1"};
    case Failure::Unresolved:
        return {Kind::Network, kind::unresolved, "no", "Cannot resolve the host of %1"};
    case Failure::TlsFailed:
        return {Kind::Network, kind::tls, "no", "TLS with %1 failed"};
    case Failure::NoConnection:
        return {Kind::Network, kind::noConnection, "no", "No connection to %1"};
    case Failure::NoReply:
        return {Kind::Network, kind::noReply, "yes", "No reply from %1 within the time-out"};
    case Failure::ConnectionLost:
        return {Kind::Network, kind::connectionLost, "yes",
                "The connection to %1 was lost before the reply: it closed"};
    case Failure::ReplyCut:
        return {Kind::Content, kind::replyCut, "yes",
                "Incomplete reply from %1: the connection broke off before the reply was "
                "complete"};
    case Failure::ReplyUndecodable:
        return {Kind::Content, kind::replyUndecodable, "yes", "Undecodable reply from %1"};
    case Failure::ReplyOverLimit:
        return {Kind::Content, kind::replyOverLimit, "yes",
                "Reply from %1 exceeds the transport's limit"};
    case Failure::NetworkFailure:
        return {Kind::Network, {}, {}, "Network failure on %1"};
    case Failure::ContentFailure:
        return {Kind::Content, {}, {}, "Incomplete reply from %1"};
    default:
        return {Kind::None, {}, {}, nullptr};
    }
}

} // namespace

bool canScript(Failure failure) {
    return reportOf(failure).kind != Kind::None;
}

http::Response scriptedFailure(Failure failure, const QString& message, const QString& url) {
    const Report report = reportOf(failure);
    http::Response response;
    response.failure = report.kind;
    if (!report.failure.isEmpty()) {
        response.headers.insert(transport::failureHeader, report.failure);
        response.headers.insert(transport::sentHeader, report.sent);
    }
    QString text = message;
    if (text.isEmpty()) {
        text = QString::fromLatin1(report.wording).arg(url);
        if (!report.sent.isEmpty())
            text += QLatin1String(report.sent == "yes" ? transport::maybeReceived
                                                       : transport::nothingSent);
    }
    response.error = tr::Tr(text);
    return response;
}

} // namespace vesk::testing::detail
