#pragma once

#include <QByteArray>
#include <QString>

namespace morva::network {

// Undoes the content codings of a reply body, as named by its
// Content-Encoding header ("gzip", "x-gzip", "deflate", "identity", or a
// comma-separated list of them, applied in the order given).
//
// The whole body must decode: a stream that ends early, corrupt data, data
// after the end of the stream, a coding this client cannot undo, or a
// decoded body over maxBytes is a failure, never a shorter body.
struct DecodedBody {
    enum class Outcome { Decoded, Truncated, Corrupt, Unsupported, OverLimit };

    Outcome outcome = Outcome::Decoded;
    QByteArray body; // the decoded body, when Decoded
    QString problem; // what went wrong, for the others
};

DecodedBody decodeContent(const QByteArray& contentEncoding, QByteArray body, qint64 maxBytes);

// The value of Accept-Encoding for a configured list of codings, or an empty
// array when the list names a coding that decodeContent() cannot undo.
// "none" and an empty list mean "identity".
QByteArray acceptEncodingFor(const QString& configured);

} // namespace morva::network
