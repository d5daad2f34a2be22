#pragma once

#include <QByteArray>
#include <QVariantMap>

namespace vesk::json {

// A reply body read as the call frame reads it: the object is exactly
//     QJsonDocument::fromJson(body).object().toVariantMap()
// (the same variant types, the same answer for duplicate keys, an empty map
// for a body that is empty, not JSON, or not an object), and its shape says
// which of those it was, for diagnostics.
struct Reply {
    enum class Shape { Object, Array, Empty, NotJson };
    QVariantMap object;
    Shape shape = Shape::Empty;
};

// Reads with simdjson, taking each number's text through Qt's own number
// conversion, and hands anything it does not take exactly as Qt would (a
// document with an error, a scalar, a lone surrogate escape, a deep nesting)
// to Qt's reader whole.
Reply readReply(const QByteArray& body);

// The two halves, for tests and fuzzers that compare them: the direct reader
// (false when it leaves the body to Qt, and always false in a build without
// it) and Qt's reader.
bool directReaderBuilt();
bool readReplyDirectly(const QByteArray& body, Reply& out);
Reply readReplyWithQt(const QByteArray& body);

} // namespace vesk::json
