#include "RecordExample.h"

#include "OrderedJson.h"

#include <vesk/records/Members.h>

namespace vesk::cli {
namespace {

// The start of a business day: a date-time that every service reads.
const QString exampleDateTime = QStringLiteral("2026-01-01T09:00:00.000");

QVariant placeholder(const records::Member& member) {
    using records::JsonType;
    switch (member.type) {
    case JsonType::Integer:
        return 0;
    case JsonType::Number:
        return 0.0;
    case JsonType::Boolean:
        return false;
    case JsonType::String:
        return QString(QLatin1String(""));
    case JsonType::StringList:
        return QVariantList();
    case JsonType::DateTime:
        return exampleDateTime;
    case JsonType::List:
        return QVariantList{recordExample(*member.entry)};
    }
    return QVariant();
}

} // namespace

QVariantMap recordExample(const QMetaObject& record) {
    QVariantMap example;
    for (const records::Member& member : records::membersOf(record))
        example.insert(QString::fromLatin1(member.key), placeholder(member));
    return example;
}

QString recordExampleJson(const QMetaObject& record) {
    return orderedJson(recordExample(record), record, true);
}

} // namespace vesk::cli
