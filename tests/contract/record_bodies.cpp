// Writes, for every record of the sixteen operations (entries included), the
// body that the library writes for a default-made record and for one with
// every member present, as one JSON object: {"disc.LinesEntryRequest":
// {"default": {...}, "filled": {...}}, ...}. The contract test validates
// each body against the OpenAPI document's schema of its record.
//
// A filled record is made through the records' own strategies from a map
// with a value of its kind for every member, so the body is what a host's
// fully filled record gives on the wire. Exits 1 if a member does not come
// out present.

#include <cli/Operations.h>

#include <vesk/records/Members.h>

#include <morva/Serder.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaType>
#include <QTextStream>

#include <cstdio>

namespace {

using vesk::records::JsonType;
using vesk::records::Member;

QVariantMap filledMap(const QMetaObject& record);

QVariant filledValue(const Member& member) {
    switch (member.type) {
    case JsonType::Integer:
        return 7;
    case JsonType::Number:
        return 12.5;
    case JsonType::Boolean:
        return true;
    case JsonType::String:
        return QStringLiteral("text");
    case JsonType::StringList:
        return QStringList{QStringLiteral("one"), QStringLiteral("two")};
    case JsonType::List:
        return QVariantList{filledMap(*member.entry)};
    case JsonType::DateTime:
        return QStringLiteral("2026-11-23T10:15:00");
    }
    return {};
}

QVariantMap filledMap(const QMetaObject& record) {
    QVariantMap map;
    for (const Member& member : vesk::records::membersOf(record))
        map.insert(QString::fromLatin1(member.key), filledValue(member));
    return map;
}

// The body that the record's strategy writes for a record read from `map`.
QJsonObject body(const QMetaObject& record, const QVariantMap& map) {
    const QMetaType type = record.metaType();
    void* made = type.create();
    const auto strategy = serder::details::Strategy::create(record);
    strategy.deserialize(made, map, record);
    QVariant out;
    strategy.serialize(&out, made, record);
    type.destroy(made);
    return QJsonObject::fromVariantMap(out.toMap());
}

QString schemaName(const QMetaObject& record) {
    return QString::fromLatin1(record.className())
        .mid(6)
        .replace(QLatin1String("::"), QLatin1String("."));
}

bool add(const QMetaObject& record, QJsonObject& bodies) {
    if (bodies.contains(schemaName(record)))
        return true;
    const QJsonObject filled = body(record, filledMap(record));
    bool whole = true;
    for (const Member& member : vesk::records::membersOf(record)) {
        if (!filled.contains(QString::fromLatin1(member.key))) {
            std::fprintf(stderr, "%s: the filled body lacks %s\n", record.className(), member.key);
            whole = false;
        }
        if (member.entry)
            whole = add(*member.entry, bodies) && whole;
    }
    bodies.insert(schemaName(record),
                  QJsonObject{{QStringLiteral("default"), body(record, QVariantMap())},
                              {QStringLiteral("filled"), filled}});
    return whole;
}

} // namespace

int main() {
    QJsonObject bodies;
    bool whole = true;
    for (const vesk::cli::Operation& operation : vesk::cli::operations()) {
        whole = add(*operation.request, bodies) && whole;
        whole = add(*operation.response, bodies) && whole;
    }
    QTextStream(stdout) << QString::fromUtf8(QJsonDocument(bodies).toJson(QJsonDocument::Indented));
    return whole ? 0 : 1;
}
