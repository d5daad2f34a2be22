#include "CompactJson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QStringList>

#include <cmath>
#include <limits>

namespace vesk::json {
namespace {

char hexDigit(unsigned value) {
    return char(value < 10 ? '0' + value : 'a' + value - 10);
}

void appendEscape(QByteArray& out, char16_t unit) {
    const char escape[6] = {'\\',
                            'u',
                            hexDigit(unit >> 12 & 0xf),
                            hexDigit(unit >> 8 & 0xf),
                            hexDigit(unit >> 4 & 0xf),
                            hexDigit(unit & 0xf)};
    out.append(escape, 6);
}

// Qt's escaping: quote, backslash and control characters escaped (the short
// forms where JSON has them), other text as UTF-8, and a UTF-16 unit that
// does not make a character (a lone surrogate) as a \u escape.
void appendString(QByteArray& out, const QString& text) {
    out.append('"');
    const char16_t* unit = reinterpret_cast<const char16_t*>(text.constData());
    const char16_t* const end = unit + text.size();
    while (unit != end) {
        const char16_t u = *unit++;
        if (u < 0x80) {
            if (u >= 0x20 && u != '"' && u != '\\') {
                out.append(char(u));
                continue;
            }
            out.append('\\');
            switch (u) {
            case '"':
                out.append('"');
                break;
            case '\\':
                out.append('\\');
                break;
            case 0x8:
                out.append('b');
                break;
            case 0xc:
                out.append('f');
                break;
            case 0xa:
                out.append('n');
                break;
            case 0xd:
                out.append('r');
                break;
            case 0x9:
                out.append('t');
                break;
            default:
                out.append("u00", 3);
                out.append(hexDigit(u >> 4));
                out.append(hexDigit(u & 0xf));
            }
        } else if (u < 0x800) {
            out.append(char(0xc0 | (u >> 6)));
            out.append(char(0x80 | (u & 0x3f)));
        } else if (u < 0xd800 || u > 0xdfff) {
            out.append(char(0xe0 | (u >> 12)));
            out.append(char(0x80 | ((u >> 6) & 0x3f)));
            out.append(char(0x80 | (u & 0x3f)));
        } else if (u < 0xdc00 && unit != end && *unit >= 0xdc00 && *unit <= 0xdfff) {
            const char32_t c = 0x10000 + ((char32_t(u) - 0xd800) << 10) + (*unit++ - 0xdc00);
            out.append(char(0xf0 | (c >> 18)));
            out.append(char(0x80 | ((c >> 12) & 0x3f)));
            out.append(char(0x80 | ((c >> 6) & 0x3f)));
            out.append(char(0x80 | (c & 0x3f)));
        } else {
            appendEscape(out, u);
        }
    }
    out.append('"');
}

void appendInteger(QByteArray& out, qint64 value) {
    char digits[24];
    const int length = std::snprintf(digits, sizeof digits, "%lld", static_cast<long long>(value));
    out.append(digits, length);
}

// Qt's form. A whole number that a double holds exactly (within +-2^53) is
// stored by Qt as an integer and written with all its digits: 100000, not
// 1e+05, and 0 for -0. Any other double is the shortest text that reads back
// as the same double, in the 'g' style of QByteArray::number; "null" for what
// JSON has no number for.
void appendDouble(QByteArray& out, double value) {
    if (!std::isfinite(value)) {
        out.append("null", 4);
        return;
    }
    constexpr double exactIntegers = 9007199254740992.0; // 2^53
    if (std::fabs(value) <= exactIntegers && std::trunc(value) == value) {
        appendInteger(out, static_cast<qint64>(value));
        return;
    }
    out.append(QByteArray::number(value, 'g', QLocale::FloatingPointShortest));
}

bool appendValue(QByteArray& out, const QVariant& value);

// "[a,b]" with `append` writing each element; false as soon as one fails.
template <class List, class Append>
bool appendArray(QByteArray& out, const List& list, Append append) {
    out.append('[');
    bool first = true;
    for (const auto& element : list) {
        if (!first)
            out.append(',');
        first = false;
        if (!append(element))
            return false;
    }
    out.append(']');
    return true;
}

bool appendMap(QByteArray& out, const QVariantMap& map) {
    out.append('{');
    bool first = true;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        if (!first)
            out.append(',');
        first = false;
        appendString(out, it.key());
        out.append(':');
        if (!appendValue(out, it.value()))
            return false;
    }
    out.append('}');
    return true;
}

bool appendValue(QByteArray& out, const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        out.append("null", 4);
        return true;
    case QMetaType::Bool:
        if (value.toBool())
            out.append("true", 4);
        else
            out.append("false", 5);
        return true;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        appendInteger(out, value.toLongLong());
        return true;
    case QMetaType::ULongLong: {
        const qulonglong n = value.toULongLong();
        if (n <= qulonglong(std::numeric_limits<qint64>::max()))
            appendInteger(out, qint64(n));
        else
            appendDouble(out, double(n));
        return true;
    }
    case QMetaType::Double:
        appendDouble(out, value.toDouble());
        return true;
    case QMetaType::QString:
        appendString(out, *static_cast<const QString*>(value.constData()));
        return true;
    case QMetaType::QStringList:
        return appendArray(out, *static_cast<const QStringList*>(value.constData()),
                           [&out](const QString& text) {
                               appendString(out, text);
                               return true;
                           });
    case QMetaType::QVariantList:
        return appendArray(out, *static_cast<const QVariantList*>(value.constData()),
                           [&out](const QVariant& element) { return appendValue(out, element); });
    case QMetaType::QVariantMap:
        return appendMap(out, *static_cast<const QVariantMap*>(value.constData()));
    default:
        return false; // Qt's own conversion decides
    }
}

} // namespace

bool writeCompactJson(const QVariantMap& map, QByteArray& out) {
    out.clear();
    out.reserve(256);
    return appendMap(out, map);
}

QByteArray compactJson(const QVariantMap& map) {
    QByteArray out;
    if (writeCompactJson(map, out))
        return out;
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
}

} // namespace vesk::json
