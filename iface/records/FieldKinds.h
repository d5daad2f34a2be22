#pragma once

// The kinds of record members: for each, the C++ type of the member, how its
// property reads it into a QVariant, how a written QVariant sets it, and how
// two members compare. Record.h names them in VESK_FIELD.

#include "Conversion.h"
#include "Members.h"

#include <morva/Serder.h>

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cmath>
#include <optional>
#include <type_traits>

namespace vesk::field {

// Every kind has: Value, the member's C++ type; read(), the member as a
// variant; write(), which sets the member from a variant and returns whether
// the value fit without loss (the member is set either way; the answer only
// feeds diagnostics); equal(); `expected`, what a fitting value is, for
// those diagnostics; and what membersOf() tells of it: `json`, `optional` and
// entry().

// A plain member of a scalar type: always present, always read as a variant
// of its type (also 0, false or empty); a written value of another type, null
// included, goes through Qt's conversion and may leave 0, false or empty.
template <class T>
struct Plain {
    using Value = T;
    static constexpr const char* expected = std::is_same_v<T, int>           ? "a 32-bit integer"
                                            : std::is_same_v<T, double>      ? "a number"
                                            : std::is_same_v<T, bool>        ? "a boolean"
                                            : std::is_same_v<T, QStringList> ? "a list of strings"
                                                                             : "a string";
    static constexpr records::JsonType json =
        std::is_same_v<T, int>           ? records::JsonType::Integer
        : std::is_same_v<T, double>      ? records::JsonType::Number
        : std::is_same_v<T, bool>        ? records::JsonType::Boolean
        : std::is_same_v<T, QStringList> ? records::JsonType::StringList
                                         : records::JsonType::String;
    static constexpr bool optional = false;
    static constexpr const QMetaObject* entry() { return nullptr; }
    static QVariant read(const T& member) { return QVariant::fromValue(member); }
    static bool write(T& member, const QVariant& value) {
        return records::convertInto<T>(value, member);
    }
    static bool equal(const T& a, const T& b) { return a == b; }
};

// Absolute tolerances of number members: two numbers are equal when they
// differ by strictly less. NaN is equal to nothing.
struct AmountTolerance {
    static constexpr double value = 0.005;
};
struct QuantityTolerance {
    static constexpr double value = 0.0005;
};

template <class Tolerance>
struct NumberWithin : Plain<double> {
    static bool equal(double a, double b) { return std::fabs(a - b) < Tolerance::value; }
};

// A list of records: read as a QVariantList of the entries' maps, written by
// rebuilding the whole list from a variant list (anything else empties it;
// text is no list either, though Qt would iterate its characters).
template <class Entry>
struct List {
    using Value = QList<Entry>;
    static constexpr const char* expected = "a list of objects";
    static constexpr records::JsonType json = records::JsonType::List;
    static constexpr bool optional = false;
    static constexpr const QMetaObject* entry() { return &Entry::staticMetaObject; }

    static QVariant read(const Value& member) {
        const auto& strategy = serder::default_serder_type<Entry>::strategy;
        QVariantList list;
        list.reserve(member.size());
        for (const Entry& entry : member) {
            QVariant map;
            strategy.serialize(&map, &entry, Entry::staticMetaObject);
            list.append(std::move(map));
        }
        return list;
    }

    static bool write(Value& member, const QVariant& value) {
        const auto& strategy = serder::default_serder_type<Entry>::strategy;
        const int type = value.metaType().id();
        const QVariantList list = type == QMetaType::QString || type == QMetaType::QByteArray
                                      ? QVariantList()
                                      : value.toList();
        bool fits = value.isNull() || type == QMetaType::QVariantList;
        Value entries;
        entries.reserve(list.size());
        for (const QVariant& map : list) {
            fits = fits && map.metaType().id() == QMetaType::QVariantMap;
            Entry entry;
            strategy.deserialize(&entry, map, Entry::staticMetaObject);
            entries.append(std::move(entry));
        }
        member = std::move(entries);
        return fits;
    }

    static bool equal(const Value& a, const Value& b) { return a == b; }
};

// An optional member of any kind: absent reads as a null variant (so the key
// is left out of a body), and a null variant written makes it absent.
// Otherwise it is present with the value that the kind's write gives,
// whether or not the conversion succeeded.
template <class Kind>
struct Optional {
    using Value = std::optional<typename Kind::Value>;
    static constexpr const char* expected = Kind::expected;
    static constexpr records::JsonType json = Kind::json;
    static constexpr bool optional = true;
    static constexpr const QMetaObject* entry() { return Kind::entry(); }

    static QVariant read(const Value& member) { return member ? Kind::read(*member) : QVariant(); }
    static bool write(Value& member, const QVariant& value) {
        if (value.isNull()) {
            member.reset();
            return true;
        }
        typename Kind::Value present{};
        const bool fits = Kind::write(present, value);
        member = std::move(present);
        return fits;
    }
    static bool equal(const Value& a, const Value& b) {
        if (!a || !b)
            return !a && !b;
        return Kind::equal(*a, *b);
    }
};

// A date and time kept in a variant. It always reads as a QDateTime variant
// (an invalid QDateTime when it holds nothing convertible); a written text is
// parsed as ISO 8601, anything else is converted with toDateTime().
struct DateTime {
    using Value = QVariant;
    static constexpr const char* expected = "an ISO 8601 date and time";
    static constexpr records::JsonType json = records::JsonType::DateTime;
    static constexpr bool optional = false;
    static constexpr const QMetaObject* entry() { return nullptr; }

    static QVariant read(const Value& member) { return member.toDateTime(); }
    static bool write(Value& member, const QVariant& value) {
        const bool text = value.metaType().id() == QMetaType::QString;
        const QDateTime dateTime =
            text ? QDateTime::fromString(value.toString(), Qt::ISODate) : value.toDateTime();
        member = dateTime;
        return value.isNull() || dateTime.isValid() || (text && value.toString().isEmpty());
    }
    static bool equal(const Value& a, const Value& b) { return a == b; }
};

using Integer = Plain<int>;
using Boolean = Plain<bool>;
using String = Plain<QString>;
using StringList = Plain<QStringList>;
using Number = NumberWithin<AmountTolerance>;
using Quantity = NumberWithin<QuantityTolerance>;
using ExactNumber = Plain<double>;

using OptionalInteger = Optional<Integer>;
using OptionalBoolean = Optional<Boolean>;
using OptionalString = Optional<String>;
using OptionalNumber = Optional<Number>;
using OptionalQuantity = Optional<Quantity>;
template <class Entry>
using OptionalList = Optional<List<Entry>>;

} // namespace vesk::field
