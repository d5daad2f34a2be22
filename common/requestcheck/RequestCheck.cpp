#include "RequestCheck.h"

#include "Suggestion.h"

#include <vesk/records/Members.h>

#include <masking/SecretMasking.h>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <cmath>

namespace vesk::check {
namespace {

using records::JsonType;
using records::Member;

bool isNumber(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

bool isList(const QVariant& value) {
    return value.typeId() == QMetaType::QVariantList;
}

bool isObject(const QVariant& value) {
    return value.typeId() == QMetaType::QVariantMap;
}

// The value as the request wrote it, shortened: 17, "abc", true, a list, an object, null.
QString shown(const QVariant& value) {
    if (isList(value))
        return QStringLiteral("a list");
    if (isObject(value))
        return QStringLiteral("an object");
    if (value.isNull() && !isText(value))
        return QStringLiteral("null");
    QString text = QString::fromUtf8(
        QJsonDocument(QJsonArray{QJsonValue::fromVariant(value)}).toJson(QJsonDocument::Compact));
    text = text.mid(1, text.size() - 2); // [value]
    return text.size() > 40 ? text.left(37) + QStringLiteral("...") : text;
}

// The value as a problem shows it: a secret key's masked as the logs mask
// it, since the emulator logs and keeps these problems.
QString shownFor(const char* key, const QVariant& value) {
    const QString name = QLatin1String(key);
    return masking::secretOf(name) == masking::Secret::None ? shown(value)
                                                            : masking::maskedValue(name, value);
}

QString expected(JsonType type) {
    switch (type) {
    case JsonType::Integer:
        return QStringLiteral("a 32-bit integer");
    case JsonType::Number:
        return QStringLiteral("a number");
    case JsonType::Boolean:
        return QStringLiteral("true or false");
    case JsonType::String:
        return QStringLiteral("text");
    case JsonType::StringList:
        return QStringLiteral("a list of texts");
    case JsonType::List:
        return QStringLiteral("a list of objects");
    case JsonType::DateTime:
        return QStringLiteral("an ISO 8601 date and time");
    }
    return QString();
}

bool fits(const QVariant& value, JsonType type) {
    switch (type) {
    case JsonType::Integer: {
        if (!isNumber(value))
            return false;
        const double number = value.toDouble();
        return number == std::floor(number) && number >= -2147483648.0 && number <= 2147483647.0;
    }
    case JsonType::Number:
        return isNumber(value);
    case JsonType::Boolean:
        return value.typeId() == QMetaType::Bool;
    case JsonType::String:
        return isText(value);
    case JsonType::DateTime:
        return isText(value) &&
               (value.toString().isEmpty() ||
                QDateTime::fromString(value.toString(), Qt::ISODateWithMs).isValid());
    case JsonType::StringList:
    case JsonType::List:
        return isList(value); // the elements are checked one by one
    }
    return false;
}

class Checker {
public:
    QList<RequestProblem> problems;

    void object(const QVariantMap& object, const QMetaObject& record, const QString& path) {
        const QList<Member> members = records::membersOf(record);
        for (auto it = object.begin(); it != object.end(); ++it) {
            const QString where = path + QLatin1Char('.') + it.key();
            const Member* member = find(members, it.key());
            if (!member)
                add(where, QStringLiteral("names no member of %1%2")
                               .arg(QString::fromLatin1(record.className()),
                                    didYouMean(it.key(), keysOf(members))));
            else
                value(it.value(), *member, where);
        }
    }

private:
    static QStringList keysOf(const QList<Member>& members) {
        QStringList keys;
        for (const Member& member : members)
            keys.append(QString::fromLatin1(member.key));
        return keys;
    }

    static const Member* find(const QList<Member>& members, const QString& key) {
        for (const Member& member : members)
            if (key == QLatin1String(member.key))
                return &member;
        return nullptr;
    }

    void add(const QString& path, const QString& problem) { problems.append({path, problem}); }

    void value(const QVariant& value, const Member& member, const QString& path) {
        if (!fits(value, member.type)) {
            add(path, QStringLiteral("%1 is not %2")
                          .arg(shownFor(member.key, value), expected(member.type)));
            return;
        }
        if (member.type != JsonType::List && member.type != JsonType::StringList)
            return;
        const QVariantList list = value.toList();
        for (qsizetype i = 0; i < list.size(); ++i) {
            const QString where = QStringLiteral("%1[%2]").arg(path).arg(i);
            const QVariant& element = list.at(i);
            if (member.type == JsonType::StringList) {
                if (!isText(element))
                    add(where, QStringLiteral("%1 is not text").arg(shownFor(member.key, element)));
            } else if (!isObject(element)) {
                add(where, QStringLiteral("%1 is not an object").arg(shown(element)));
            } else if (member.entry) {
                object(element.toMap(), *member.entry, where);
            }
        }
    }
};

} // namespace

QList<RequestProblem> checkRequest(const QVariantMap& request, const QMetaObject& record) {
    Checker checker;
    checker.object(request, record, QStringLiteral("$"));
    return checker.problems;
}

} // namespace vesk::check
