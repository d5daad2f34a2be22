#pragma once

#include <QMetaType>
#include <QVariant>

#include <cmath>
#include <type_traits>

namespace vesk::records {

// A variant's value as T by Qt's own conversions: a variant of T is taken as
// it stands; anything else is converted into a T that starts as T{} (0,
// false, empty) and keeps that value when Qt cannot convert. Never fails.
template <class T>
T convertVariant(const QVariant& value) {
    const QMetaType target = QMetaType::fromType<T>();
    if (value.metaType() == target)
        return *static_cast<const T*>(value.constData());
    T converted{};
    if (value.isValid())
        QMetaType::convert(value.metaType(), value.constData(), target, &converted);
    return converted;
}

namespace detail {

inline bool isNumber(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

// Whether `converted`, which Qt made from `value`, says what `value` said.
template <class T>
bool sameValue(const QVariant& value, const T& converted) {
    if constexpr (std::is_same_v<T, int>) {
        // Qt wraps integers outside 32 bits and drops fractions.
        if (isNumber(value))
            return value.toDouble() == double(converted);
        return value.metaType().id() == QMetaType::QString;
    } else if constexpr (std::is_same_v<T, double>) {
        if (value.metaType().id() == QMetaType::LongLong)
            return std::fabs(double(value.toLongLong())) <= 9007199254740992.0; // 2^53
        return isNumber(value) || value.metaType().id() == QMetaType::QString;
    } else if constexpr (std::is_same_v<T, bool>) {
        return false; // only a boolean is a boolean
    } else if constexpr (std::is_same_v<T, QString>) {
        return true; // numbers and booleans have a text
    } else if constexpr (std::is_same_v<T, QStringList>) {
        if (value.metaType().id() != QMetaType::QVariantList)
            return false; // text is no list, though Qt makes one of it
        for (const QVariant& element : value.toList()) {
            const int type = element.metaType().id();
            if (type != QMetaType::QString && !isNumber(element) && type != QMetaType::Bool)
                return false;
        }
        return true;
    } else {
        return true;
    }
}

} // namespace detail

// Sets `out` to convertVariant<T>(value) and tells whether that kept what the
// value said: false when Qt could not convert, or converted with a loss (a
// fraction or an integer beyond 32 bits for an int, text for a number or a
// list, a number for a boolean). A null value reads as T{} without a loss.
template <class T>
bool convertInto(const QVariant& value, T& out) {
    const QMetaType target = QMetaType::fromType<T>();
    if (value.metaType() == target) {
        out = *static_cast<const T*>(value.constData());
        return true;
    }
    T converted{};
    const bool converts = value.isValid() && QMetaType::convert(value.metaType(), value.constData(),
                                                                target, &converted);
    const bool kept = value.isNull() || (converts && detail::sameValue(value, converted));
    out = std::move(converted);
    return kept;
}

} // namespace vesk::records
