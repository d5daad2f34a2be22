#pragma once

// What the project's transport tells the library about a failed exchange,
// beyond the fields of http::Response: which kind of failure it was, and
// whether the request had left. It travels in Response::headers under names
// that begin with ':', which no HTTP header can have, so a transport that
// knows nothing of it (a host's own) simply leaves the library to infer what
// it can from the Response alone.
//
// Header-only: the stand-in transport writes these and the library reads
// them, and on a till neither borrows the other's code.

#include <QByteArray>
#include <QMap>

namespace vesk::transport {

// The pseudo-header that names the kind of failure, with one of the values below.
inline const QByteArray failureHeader = QByteArrayLiteral(":failure");
// The pseudo-header that tells whether the request left: "yes" or "no".
inline const QByteArray sentHeader = QByteArrayLiteral(":request-sent");

namespace failure {
// Nothing was sent.
inline const QByteArray refused = QByteArrayLiteral("refused");
inline const QByteArray unresolved = QByteArrayLiteral("unresolved");
inline const QByteArray tls = QByteArrayLiteral("tls");
inline const QByteArray noConnection = QByteArrayLiteral("no-connection");
// The request was sent.
inline const QByteArray noReply = QByteArrayLiteral("no-reply");
inline const QByteArray connectionLost = QByteArrayLiteral("connection-lost");
inline const QByteArray replyCut = QByteArrayLiteral("reply-cut");
inline const QByteArray replyUndecodable = QByteArrayLiteral("reply-undecodable");
inline const QByteArray replyOverLimit = QByteArrayLiteral("reply-over-limit");
} // namespace failure

// With connection-lost: how the connection ended before any reply, "closed"
// by the server without a word, or "reset" (or broken otherwise).
inline const QByteArray connectionEndHeader = QByteArrayLiteral(":connection-end");
namespace connectionEnd {
inline const QByteArray closed = QByteArrayLiteral("closed");
inline const QByteArray reset = QByteArrayLiteral("reset");
} // namespace connectionEnd

// The texts that end a failure's message, one for each side of the line.
inline const char* const nothingSent = "; nothing was sent";
inline const char* const maybeReceived =
    "; the request was sent, so the server may have received it";

} // namespace vesk::transport
