#include "OrderedJson.h"

#include <vesk/records/Members.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

namespace vesk::cli {
namespace {

// A value that holds no record, as Qt writes it.
QString plain(const QVariant& value) {
    const QByteArray wrapped =
        QJsonDocument(QJsonArray{QJsonValue::fromVariant(value)}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(wrapped.mid(1, wrapped.size() - 2)); // [value]
}

class Writer {
public:
    QString text;
    bool markFractions = false;

    void object(const QVariantMap& object, const QMetaObject* record, int depth) {
        if (object.isEmpty()) {
            text += QStringLiteral("{}");
            return;
        }
        text += QStringLiteral("{\n");
        QStringList keys;
        QList<const QMetaObject*> entries;
        for (const records::Member& member :
             record ? records::membersOf(*record) : QList<records::Member>()) {
            const QString key = QString::fromLatin1(member.key);
            if (object.contains(key)) {
                keys << key;
                entries << member.entry;
            }
        }
        for (auto it = object.keyBegin(); it != object.keyEnd(); ++it)
            if (!keys.contains(*it)) {
                keys << *it;
                entries << nullptr;
            }
        for (qsizetype i = 0; i < keys.size(); ++i) {
            indent(depth + 1);
            text += plain(keys[i]) + QStringLiteral(": ");
            value(object.value(keys[i]), entries[i], depth + 1);
            text += i + 1 < keys.size() ? QStringLiteral(",\n") : QStringLiteral("\n");
        }
        indent(depth);
        text += QLatin1Char('}');
    }

private:
    void indent(int depth) { text += QString(depth * 4, QLatin1Char(' ')); }

    void value(const QVariant& value, const QMetaObject* entry, int depth) {
        if (value.typeId() == QMetaType::QVariantMap) {
            object(value.toMap(), entry, depth);
        } else if (value.typeId() == QMetaType::QVariantList) {
            const QVariantList list = value.toList();
            if (list.isEmpty()) {
                text += QStringLiteral("[]");
                return;
            }
            text += QStringLiteral("[\n");
            for (qsizetype i = 0; i < list.size(); ++i) {
                indent(depth + 1);
                this->value(list[i], entry, depth + 1);
                text += i + 1 < list.size() ? QStringLiteral(",\n") : QStringLiteral("\n");
            }
            indent(depth);
            text += QLatin1Char(']');
        } else {
            const QString written = plain(value);
            text += written;
            if (markFractions && value.typeId() == QMetaType::Double &&
                !written.contains(QLatin1Char('.')) && !written.contains(QLatin1Char('e')))
                text += QStringLiteral(".0");
        }
    }
};

} // namespace

QString orderedJson(const QVariantMap& object, const QMetaObject& record, bool markFractions) {
    Writer writer;
    writer.markFractions = markFractions;
    writer.object(object, &record, 0);
    return writer.text + QLatin1Char('\n');
}

} // namespace vesk::cli
