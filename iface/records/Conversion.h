#pragma once

#include <QMetaType>
#include <QVariant>

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

} // namespace vesk::records
