#include "RecordMembers.h"

#include "Operations.h"

#include <QMetaClassInfo>
#include <QMetaObject>
#include <QMetaProperty>
#include <QVariant>

#include <memory>

namespace vesk::cli {
namespace {

// A record made by its meta-type, destroyed by it.
struct Destroy {
    QMetaType type;
    void operator()(void* record) const { type.destroy(record); }
};
using RecordPointer = std::unique_ptr<void, Destroy>;

// Every property of a record is declared as a QVariant, so the member's kind
// has to be read from the values that the property gives:
//
// - A default-made record's plain members read as a variant of their own
//   type (0, false, an empty string or list), while its optional members are
//   absent and read as a null variant.
// - An optional member is therefore first made present by writing a probe,
//   the text "1", which every kind accepts (a number or a boolean converts
//   it, a list of records takes a text as an empty list); reading it back
//   gives a variant of the member's type.
//
// The entries of a list of records are maps made by the entry type's
// strategy, which does not say which type that is, so a list of records is
// reported as "list" only.
QString kindOf(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::Int:
        return QStringLiteral("integer");
    case QMetaType::Double:
        return QStringLiteral("number");
    case QMetaType::Bool:
        return QStringLiteral("boolean");
    case QMetaType::QString:
        return QStringLiteral("string");
    case QMetaType::QStringList:
        return QStringLiteral("string list");
    case QMetaType::QVariantList:
        return QStringLiteral("list");
    case QMetaType::QDateTime:
        return QStringLiteral("date-time");
    case QMetaType::QVariantMap:
        return QStringLiteral("record");
    default:
        // No record has such a member; name the type rather than guess.
        return value.isValid() ? QString::fromLatin1(value.typeName()) : QStringLiteral("unknown");
    }
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

} // namespace

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
    const QMetaObject* meta = record.metaObject();
    const RecordPointer made(record.create(), Destroy{record});
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        QVariant value = property.readOnGadget(made.get());
        const bool optional = value.isNull();
        if (optional) {
            property.writeOnGadget(made.get(), QVariant(QStringLiteral("1")));
            value = property.readOnGadget(made.get());
        }
        members.append({QString::fromLatin1(property.name()), kindOf(value), optional});
    }
    return members;
}

} // namespace vesk::cli
