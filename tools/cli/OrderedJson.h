#pragma once

#include <QMetaObject>
#include <QString>
#include <QVariantMap>

namespace vesk::cli {

// `object`, a record serialised to a variant map, as indented JSON with its
// keys in the record's declared order, entries of lists in their own
// record's order (QJsonObject would sort them). Keys that name no member
// follow, sorted.
QString orderedJson(const QVariantMap& object, const QMetaObject& record);

} // namespace vesk::cli
