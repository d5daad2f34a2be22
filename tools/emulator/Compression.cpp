#include "Compression.h"

#include <QList>

#include <zlib.h>

namespace vesk::emulator {

bool acceptsGzip(const std::string& acceptEncoding) {
    for (const QByteArray& item : QByteArray::fromStdString(acceptEncoding).split(',')) {
        const QList<QByteArray> parts = item.split(';');
        const QByteArray coding = parts.first().trimmed().toLower();
        if (coding != "gzip" && coding != "x-gzip" && coding != "*")
            continue;
        double quality = 1.0;
        for (qsizetype i = 1; i < parts.size(); ++i) {
            const QByteArray parameter = parts[i].trimmed().toLower();
            if (parameter.startsWith("q="))
                quality = parameter.mid(2).toDouble();
        }
        if (quality > 0)
            return true;
    }
    return false;
}

QByteArray gzip(const QByteArray& data) {
    z_stream stream{};
    // 15 window bits plus 16: a gzip header and trailer instead of zlib's.
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        return QByteArray();
    QByteArray out(qsizetype(deflateBound(&stream, uLong(data.size()))), Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = uInt(out.size());
    const int code = deflate(&stream, Z_FINISH);
    out.resize(code == Z_STREAM_END ? qsizetype(stream.total_out) : 0);
    deflateEnd(&stream);
    return out;
}

} // namespace vesk::emulator
