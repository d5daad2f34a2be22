#include "ContentDecoding.h"

#include <QList>

#include <zlib.h>

#include <limits>

namespace morva::network {
namespace {

// zlib's window bits for each stream format it reads.
constexpr int gzipFormat = 15 + 16;
constexpr int zlibFormat = 15;
constexpr int rawDeflateFormat = -15;

QList<QByteArray> codingsOf(const QByteArray& header) {
    QList<QByteArray> codings;
    for (const QByteArray& part : header.split(',')) {
        const QByteArray coding = part.trimmed().toLower();
        if (!coding.isEmpty())
            codings << coding;
    }
    return codings;
}

// RFC 1950: a zlib stream starts with a deflate method byte and a check sum
// over the first two bytes. Servers that say "deflate" send either that or a
// bare deflate stream.
bool hasZlibHeader(const QByteArray& data) {
    if (data.size() < 2)
        return false;
    const unsigned first = uchar(data[0]);
    const unsigned second = uchar(data[1]);
    return (first & 0x0f) == 8 && (first * 256 + second) % 31 == 0;
}

class Inflater {
public:
    explicit Inflater(int format) { ok_ = inflateInit2(&stream_, format) == Z_OK; }
    ~Inflater() {
        if (ok_)
            inflateEnd(&stream_);
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    // Inflates all of `in`; gzip may hold several members, one after the other.
    DecodedBody run(const QByteArray& in, const char* name, bool members, qint64 maxBytes) {
        DecodedBody result;
        if (!ok_)
            return fail(DecodedBody::Outcome::Corrupt,
                        QStringLiteral("the %1 decoder did not start").arg(QLatin1String(name)));
        if (in.size() > qsizetype(std::numeric_limits<uInt>::max()))
            return fail(DecodedBody::Outcome::OverLimit, QString());
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.constData()));
        stream_.avail_in = uInt(in.size());

        QByteArray& out = result.body;
        out.reserve(qsizetype(qMin<qint64>(maxBytes, qint64(in.size()) * 4 + 64)));
        char buffer[16384];
        for (;;) {
            stream_.next_out = reinterpret_cast<Bytef*>(buffer);
            stream_.avail_out = uInt(sizeof buffer);
            const int code = inflate(&stream_, Z_NO_FLUSH);
            const qsizetype produced = qsizetype(sizeof buffer - stream_.avail_out);
            if (qint64(out.size()) + produced > maxBytes)
                return fail(DecodedBody::Outcome::OverLimit, QString());
            out.append(buffer, produced);

            if (code == Z_STREAM_END) {
                if (stream_.avail_in == 0)
                    return result;
                if (!members)
                    return fail(DecodedBody::Outcome::Corrupt,
                                QStringLiteral("data follows the end of the %1 stream")
                                    .arg(QLatin1String(name)));
                inflateReset(&stream_);
            } else if ((code == Z_OK || code == Z_BUF_ERROR) && stream_.avail_in == 0) {
                // All input is read and the stream has not ended.
                if (code == Z_BUF_ERROR || stream_.avail_out != 0)
                    return fail(DecodedBody::Outcome::Truncated,
                                QStringLiteral("the %1 data ends early").arg(QLatin1String(name)));
            } else if (code != Z_OK) {
                const QString why = stream_.msg ? QString::fromLatin1(stream_.msg)
                                                : QStringLiteral("code %1").arg(code);
                return fail(
                    DecodedBody::Outcome::Corrupt,
                    QStringLiteral("the %1 data is corrupt (%2)").arg(QLatin1String(name), why));
            }
        }
    }

private:
    static DecodedBody fail(DecodedBody::Outcome outcome, const QString& problem) {
        DecodedBody result;
        result.outcome = outcome;
        result.problem = problem;
        return result;
    }

    z_stream stream_{};
    bool ok_ = false;
};

DecodedBody undo(const QByteArray& coding, const QByteArray& body, qint64 maxBytes) {
    if (coding == "gzip" || coding == "x-gzip")
        return Inflater(gzipFormat).run(body, "gzip", true, maxBytes);
    if (coding == "deflate")
        return Inflater(hasZlibHeader(body) ? zlibFormat : rawDeflateFormat)
            .run(body, "deflate", false, maxBytes);
    DecodedBody result;
    result.outcome = DecodedBody::Outcome::Unsupported;
    result.problem = QStringLiteral("the content encoding \"%1\" is not supported")
                         .arg(QString::fromLatin1(coding));
    return result;
}

} // namespace

DecodedBody decodeContent(const QByteArray& contentEncoding, QByteArray body, qint64 maxBytes) {
    QList<QByteArray> codings = codingsOf(contentEncoding);
    codings.removeAll(QByteArrayLiteral("identity"));

    DecodedBody result;
    // A reply without a body (HEAD, 204, 304) carries the coding's name only.
    if (body.isEmpty() && !codings.isEmpty()) {
        for (const QByteArray& coding : codings) {
            if (coding != "gzip" && coding != "x-gzip" && coding != "deflate")
                return undo(coding, body, maxBytes);
        }
        return result;
    }
    // The codings were applied in the order listed: undo them last first.
    for (auto it = codings.crbegin(); it != codings.crend(); ++it) {
        DecodedBody step = undo(*it, body, maxBytes);
        if (step.outcome != DecodedBody::Outcome::Decoded)
            return step;
        body = std::move(step.body);
    }
    result.body = std::move(body);
    return result;
}

QByteArray acceptEncodingFor(const QString& configured) {
    QList<QByteArray> accepted;
    for (const QByteArray& coding : codingsOf(configured.toLatin1())) {
        if (coding == "none" || coding == "identity")
            continue;
        if (coding != "gzip" && coding != "deflate")
            return QByteArray();
        if (!accepted.contains(coding))
            accepted << coding;
    }
    return accepted.isEmpty() ? QByteArray("identity") : accepted.join(", ");
}

} // namespace morva::network
