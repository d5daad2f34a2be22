#include "RecordMembers.h"

#include "Operations.h"

#include <vesk/records/Members.h>

#include <QMetaClassInfo>

namespace vesk::cli {
namespace {

QString kindOf(const records::Member& member) {
    switch (member.type) {
    case records::JsonType::Integer:
        return QStringLiteral("integer");
    case records::JsonType::Number:
        return QStringLiteral("number");
    case records::JsonType::Boolean:
        return QStringLiteral("boolean");
    case records::JsonType::String:
        return QStringLiteral("string");
    case records::JsonType::StringList:
        return QStringLiteral("string list");
    case records::JsonType::List:
        return QStringLiteral("list of ") + QString::fromLatin1(member.entry->className());
    case records::JsonType::DateTime:
        return QStringLiteral("date-time");
    }
    return QString();
}

QStringList qualifiedCandidates(const QString& name) {
    const QString vesk = QStringLiteral("vesk::");
    if (name.startsWith(vesk))
        return {name};
    if (name.contains(QLatin1String("::")))
        return {vesk + name};
    QStringList candidates;
    for (const QString& service : serviceNames())
        candidates.append(vesk + service + QLatin1String("::") + name);
    return candidates;
}

// `record` and the entry records of its lists, at every depth, once each.
void collectRecords(const QMetaObject* record, QList<const QMetaObject*>* found) {
    if (found->contains(record))
        return;
    found->append(record);
    for (const records::Member& member : records::membersOf(*record))
        if (member.entry)
            collectRecords(member.entry, found);
}

} // namespace

QStringList recordNamesLike(const QString& name) {
    QList<const QMetaObject*> found;
    for (const Operation& operation : operations()) {
        collectRecords(operation.request, &found);
        collectRecords(operation.response, &found);
    }
    const QString vesk = QStringLiteral("vesk::");
    QStringList names;
    for (const QMetaObject* record : found) {
        const QString qualified = QString::fromLatin1(record->className());
        const QString written = name.startsWith(vesk) ? qualified
                                : name.contains(QLatin1String("::"))
                                    ? qualified.mid(vesk.size())
                                    : qualified.section(QStringLiteral("::"), -1);
        if (!names.contains(written))
            names.append(written);
    }
    return names;
}

bool isRecord(const QMetaType& type) {
    if (!type.isValid() || !(type.flags() & QMetaType::IsGadget))
        return false;
    const QMetaObject* meta = type.metaObject();
    if (!meta)
        return false;
    const int index = meta->indexOfClassInfo("serder:skipNull");
    return index >= 0 && qstrcmp(meta->classInfo(index).value(), "true") == 0;
}

QList<QMetaType> findRecords(const QString& name) {
    QList<QMetaType> found;
    if (name.isEmpty())
        return found;
    for (const QString& candidate : qualifiedCandidates(name)) {
        const QMetaType type = QMetaType::fromName(candidate.toLatin1());
        if (isRecord(type) && !found.contains(type))
            found.append(type);
    }
    return found;
}

QList<RecordMember> recordMembers(const QMetaType& record) {
    QList<RecordMember> members;
    if (!isRecord(record))
        return members;
    for (const records::Member& member : records::membersOf(*record.metaObject()))
        members.append(
            {QString::fromLatin1(member.key), kindOf(member), member.optional, member.entry});
    return members;
}

} // namespace vesk::cli
