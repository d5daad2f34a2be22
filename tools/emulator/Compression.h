#pragma once

#include <QByteArray>

#include <string>

namespace vesk::emulator {

// Whether an Accept-Encoding header lets the reply be gzip-compressed
// ("gzip", "x-gzip" or "*", with a quality above zero).
bool acceptsGzip(const std::string& acceptEncoding);

// The data as one gzip member.
QByteArray gzip(const QByteArray& data);

} // namespace vesk::emulator
