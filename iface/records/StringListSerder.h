#pragma once

#include "Conversion.h"

#include <morva/Serder.h>

#include <QStringList>

namespace serder {

// String lists map to a variant holding the list; any other variant is
// converted by Qt, and one that does not convert gives an empty list.
template <>
struct default_serder_type<QList<QString>> {
    static QVariant serialize(const QList<QString>& list) { return QVariant(list); }
    static QList<QString> deserialize(const QVariant& variant) {
        return vesk::records::convertVariant<QList<QString>>(variant);
    }
};

} // namespace serder
