#include "Serder.h"

#include <QMetaProperty>
#include <QVector>

namespace serder::details {

struct Strategy::Description {
    const QMetaObject* type = nullptr;
    bool skipNull = false;
    QVector<QMetaProperty> properties; // the base's first, in declared order
    QVector<QString> keys;             // property names, made once
};

Strategy::Strategy() = default;

Strategy::Strategy(QSharedPointer<const Description> description)
    : d(std::move(description)) {}

Strategy Strategy::create(const QMetaObject& type) {
    auto description = QSharedPointer<Description>::create();
    description->type = &type;
    const int skipNull = type.indexOfClassInfo("serder:skipNull");
    description->skipNull = skipNull >= 0 && qstrcmp(type.classInfo(skipNull).value(), "true") == 0;
    for (int i = 0; i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        description->properties.append(property);
        description->keys.append(QString::fromLatin1(property.name()));
    }
    return Strategy(description);
}

const QMetaObject* Strategy::metaObject() const {
    return d ? d->type : nullptr;
}

// The strategy describes its own type; asked for another (a caller's mistake,
// or a default-made strategy), it describes that type on the spot rather than
// read the wrong properties.
const Strategy::Description& Strategy::describe(const QMetaObject& type, Strategy& scratch) const {
    if (d && d->type == &type)
        return *d;
    scratch = create(type);
    return *scratch.d;
}

void Strategy::serialize(QVariant* out, const void* record, const QMetaObject& type) const {
    Strategy scratch;
    const Description& description = describe(type, scratch);
    QVariantMap map;
    for (qsizetype i = 0; i < description.properties.size(); ++i) {
        QVariant value = description.properties[i].readOnGadget(record);
        if (description.skipNull && value.isNull())
            continue;
        map.insert(description.keys[i], std::move(value));
    }
    *out = std::move(map);
}

void Strategy::deserialize(void* record, const QVariant& in, const QMetaObject& type) const {
    Strategy scratch;
    const Description& description = describe(type, scratch);
    const QVariantMap map = in.toMap();
    if (map.isEmpty())
        return;
    for (qsizetype i = 0; i < description.properties.size(); ++i) {
        const auto found = map.constFind(description.keys[i]);
        if (found != map.constEnd())
            description.properties[i].writeOnGadget(record, *found);
    }
}

} // namespace serder::details
