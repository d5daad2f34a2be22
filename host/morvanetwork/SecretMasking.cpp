#include "SecretMasking.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QLocale>
#include <QUrlQuery>
#include <QVariant>

namespace morva::network {

namespace {

enum class Secret { None, Hidden, Card };

Secret secretOf(const QString& key) {
    static const QStringList hidden{QStringLiteral("pinCode"), QStringLiteral("token"),
                                    QStringLiteral("hash")};
    static const QStringList cards{QStringLiteral("card"),         QStringLiteral("cardNumber"),
                                   QStringLiteral("cardPan"),      QStringLiteral("discCardId"),
                                   QStringLiteral("discountCard"), QStringLiteral("presentCard")};
    if (hidden.contains(key))
        return Secret::Hidden;
    if (cards.contains(key))
        return Secret::Card;
    return Secret::None;
}

const QString stars = QStringLiteral("***");

QString maskText(const QString& text, Secret secret) {
    if (secret == Secret::Card && text.size() > 4)
        return stars + text.right(4);
    return stars;
}

// A number as written in JSON: integers in full, other numbers in their
// shortest exact form.
QString numberText(const QJsonValue& value) {
    const QVariant variant = value.toVariant();
    if (variant.userType() == QMetaType::LongLong)
        return QString::number(variant.toLongLong());
    return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
}

QJsonValue maskValue(const QJsonValue& value, Secret secret);

QJsonObject maskObject(const QJsonObject& object) {
    QJsonObject masked;
    for (auto it = object.begin(); it != object.end(); ++it)
        masked.insert(it.key(), maskValue(it.value(), secretOf(it.key())));
    return masked;
}

QJsonArray maskArray(const QJsonArray& array, Secret secret) {
    QJsonArray masked;
    for (const QJsonValue& element : array)
        masked.append(maskValue(element, secret));
    return masked;
}

// `secret` is what the key that holds the value asks for.
QJsonValue maskValue(const QJsonValue& value, Secret secret) {
    switch (value.type()) {
    case QJsonValue::Object:
        return maskObject(value.toObject());
    case QJsonValue::Array:
        return maskArray(value.toArray(), secret);
    case QJsonValue::String:
        return secret == Secret::None ? value : QJsonValue(maskText(value.toString(), secret));
    case QJsonValue::Double:
        return secret == Secret::None ? value : QJsonValue(maskText(numberText(value), secret));
    default:
        return value;
    }
}

} // namespace

QString maskSecrets(const QByteArray& body) {
    if (body.isEmpty())
        return QStringLiteral("<empty>");
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError || !(document.isObject() || document.isArray()))
        return QStringLiteral("<%1 bytes, not JSON>").arg(body.size());
    const QJsonDocument masked = document.isObject()
                                     ? QJsonDocument(maskObject(document.object()))
                                     : QJsonDocument(maskArray(document.array(), Secret::None));
    return QString::fromUtf8(masked.toJson(QJsonDocument::Compact));
}

QString maskUrl(const QUrl& url) {
    QUrl shown = url;
    if (shown.hasQuery()) {
        QUrlQuery query(shown);
        bool changed = false;
        QList<QPair<QString, QString>> items = query.queryItems(QUrl::FullyDecoded);
        for (auto& [key, value] : items) {
            const Secret secret = secretOf(key);
            if (secret != Secret::None) {
                value = maskText(value, secret);
                changed = true;
            }
        }
        if (changed) {
            query.setQueryItems(items);
            shown.setQuery(query);
        }
    }
    return shown.toString(QUrl::RemoveUserInfo);
}

} // namespace morva::network
