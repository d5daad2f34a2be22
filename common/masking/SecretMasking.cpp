#include "SecretMasking.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QUrlQuery>

namespace vesk::masking {
namespace {

const QString stars = QStringLiteral("***");

// Lower-case key names of each kind.
const QSet<QString>& hiddenKeys() {
    static const QSet<QString> keys{QStringLiteral("pincode"), QStringLiteral("token"),
                                    QStringLiteral("hash"), QStringLiteral("password")};
    return keys;
}

const QSet<QString>& cardKeys() {
    static const QSet<QString> keys{QStringLiteral("card"),          QStringLiteral("cardnumber"),
                                    QStringLiteral("cardpan"),       QStringLiteral("disccardid"),
                                    QStringLiteral("discountcard"),  QStringLiteral("presentcard"),
                                    QStringLiteral("boutiquecardid")};
    return keys;
}

const QSet<QString>& personalKeys() {
    static const QSet<QString> keys{
        QStringLiteral("fio"),         QStringLiteral("clientfio"),   QStringLiteral("firstname"),
        QStringLiteral("lastname"),    QStringLiteral("middlename"),  QStringLiteral("fullname"),
        QStringLiteral("clientname"),  QStringLiteral("holdername"),  QStringLiteral("phone"),
        QStringLiteral("phonenumber"), QStringLiteral("mobilephone"), QStringLiteral("email"),
        QStringLiteral("e-mail"),      QStringLiteral("birthdate"),   QStringLiteral("birthday"),
        QStringLiteral("dateofbirth")};
    return keys;
}

QString lastFour(const QString& text) {
    return text.size() > 4 ? stars + text.right(4) : stars;
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
    switch (secret) {
    case Secret::Hidden:
    case Secret::Personal:
        return stars;
    case Secret::Card:
        switch (value.type()) {
        case QJsonValue::String:
            return lastFour(value.toString());
        case QJsonValue::Double:
            return lastFour(numberText(value));
        case QJsonValue::Array:
            return maskArray(value.toArray(), Secret::Card);
        case QJsonValue::Object: {
            // Every value inside is a card number as far as the log knows.
            QJsonObject masked;
            const QJsonObject object = value.toObject();
            for (auto it = object.begin(); it != object.end(); ++it)
                masked.insert(it.key(), maskValue(it.value(), Secret::Card));
            return masked;
        }
        default:
            return stars;
        }
    case Secret::None:
        break;
    }
    if (value.isObject())
        return maskObject(value.toObject());
    if (value.isArray())
        return maskArray(value.toArray(), Secret::None);
    return value;
}

QString cut(const QString& text, int maxChars) {
    if (maxChars < 0 || text.size() <= maxChars)
        return text;
    return text.left(maxChars) + QStringLiteral("…");
}

// A body that is not JSON, shown as text as far as that can be done safely.
QString scrubText(const QByteArray& body, int maxChars) {
    QString text;
    const QString decoded = QString::fromUtf8(body.left(qMax(0, maxChars) * 4 + 64));
    for (const QChar c : decoded) {
        if (c == QLatin1Char('\n'))
            text += QStringLiteral("\\n");
        else if (c == QLatin1Char('\r'))
            text += QStringLiteral("\\r");
        else if (c == QLatin1Char('\t'))
            text += QStringLiteral("\\t");
        else if (c.category() == QChar::Other_Control || c == QChar::ReplacementCharacter)
            text += QStringLiteral("\\x%1").arg(c.unicode() & 0xff, 2, 16, QLatin1Char('0'));
        else
            text += c;
    }
    // Card numbers: any long run of digits keeps its last four.
    static const QRegularExpression digits(QStringLiteral("\\d{8,}(\\d{4})"));
    text.replace(digits, stars + QStringLiteral("\\1"));
    // The quoted value after a secret key, as far as a scan can tell.
    static const QRegularExpression quoted(
        QStringLiteral("(\"(?:pinCode|token|hash|password|fio|clientFIO|phone|email|birthDate)\""
                       "\\s*:\\s*)(\"[^\"]*\"?|[^,}\\s]+)"),
        QRegularExpression::CaseInsensitiveOption);
    text.replace(quoted, QStringLiteral("\\1\"***\""));
    return cut(text, maxChars);
}

} // namespace

Secret secretOf(QStringView key) {
    const QString lower = key.toString().toLower();
    if (hiddenKeys().contains(lower))
        return Secret::Hidden;
    if (cardKeys().contains(lower))
        return Secret::Card;
    if (personalKeys().contains(lower))
        return Secret::Personal;
    return Secret::None;
}

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
                value = secret == Secret::Card ? lastFour(value) : stars;
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

QString maskedValue(QStringView key, const QVariant& value) {
    const QJsonValue json = QJsonValue::fromVariant(value);
    const QJsonValue masked = maskValue(json, secretOf(key));
    QString text;
    switch (masked.type()) {
    case QJsonValue::Object:
        text = QString::fromUtf8(QJsonDocument(masked.toObject()).toJson(QJsonDocument::Compact));
        break;
    case QJsonValue::Array:
        text = QString::fromUtf8(QJsonDocument(masked.toArray()).toJson(QJsonDocument::Compact));
        break;
    case QJsonValue::String:
        text = QLatin1Char('"') + masked.toString() + QLatin1Char('"');
        break;
    case QJsonValue::Double:
        text = numberText(masked);
        break;
    case QJsonValue::Bool:
        text = masked.toBool() ? QStringLiteral("true") : QStringLiteral("false");
        break;
    default:
        text = QStringLiteral("null");
        break;
    }
    return cut(text, 80);
}

QString excerpt(const QByteArray& body, int maxChars) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error == QJsonParseError::NoError && (document.isObject() || document.isArray()))
        return cut(maskSecrets(body), maxChars);
    return scrubText(body, maxChars);
}

} // namespace vesk::masking
