#pragma once

#include <QByteArray>
#include <QVariantMap>

namespace vesk::json {

// The compact JSON text of a request body, byte for byte what
//     QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact)
// gives, without building the QJsonObject. Values of the types that records
// and hosts put in bodies (null, booleans, integers, doubles, text, string
// lists, lists and maps of them) are written directly; a body holding any
// other type is handed to Qt's own writer whole.
QByteArray compactJson(const QVariantMap& map);

// The direct writer alone: false, with `out` undefined, when the map holds a
// value it leaves to Qt. For tests and fuzzers that compare it with Qt's.
bool writeCompactJson(const QVariantMap& map, QByteArray& out);

} // namespace vesk::json
