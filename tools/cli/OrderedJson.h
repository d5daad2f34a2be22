#pragma once

#include <QMetaObject>
#include <QString>
#include <QVariantMap>

namespace vesk::cli {

// `object`, a record serialised to a variant map, as indented JSON with its
// keys in the record's declared order, entries of lists in their own
// record's order (QJsonObject would sort them). Keys that name no member
// follow, sorted. With `markFractions`, a double that holds a whole number
// is written as one (0.0), so that a reader sees the member takes fractions.
QString orderedJson(const QVariantMap& object, const QMetaObject& record,
                    bool markFractions = false);

} // namespace vesk::cli
