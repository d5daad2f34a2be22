#pragma once

#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <cstring>

namespace vesk::test {

// Whether two variants are the same value of the same type, all the way
// down: QVariant's own == converts (1 equals 1.0, "1" equals 1), which is
// not what a check of "exactly Qt's result" needs. Doubles compare by their
// bits, so that 0.0 and -0.0 differ.
inline bool sameVariant(const QVariant& a, const QVariant& b) {
    if (a.metaType() != b.metaType())
        return false;
    switch (a.metaType().id()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return true;
    case QMetaType::Double: {
        const double x = a.toDouble();
        const double y = b.toDouble();
        return std::memcmp(&x, &y, sizeof x) == 0;
    }
    case QMetaType::QVariantList: {
        const QVariantList x = a.toList();
        const QVariantList y = b.toList();
        if (x.size() != y.size())
            return false;
        for (qsizetype i = 0; i < x.size(); ++i) {
            if (!sameVariant(x[i], y[i]))
                return false;
        }
        return true;
    }
    case QMetaType::QVariantMap: {
        const QVariantMap x = a.toMap();
        const QVariantMap y = b.toMap();
        if (x.keys() != y.keys())
            return false;
        for (auto it = x.begin(); it != x.end(); ++it) {
            if (!sameVariant(it.value(), y.value(it.key())))
                return false;
        }
        return true;
    }
    default:
        return a == b;
    }
}

} // namespace vesk::test
