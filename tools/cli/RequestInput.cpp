#include "RequestInput.h"

#include "JsonSyntaxError.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace vesk::cli {
namespace {

// More than any request needs, and the transport's limit for a body: input
// that never ends (such as /dev/zero) is refused, not read until memory runs out.
constexpr qint64 maxRequestSize = 64 * 1024 * 1024;

// What a JSON value that is not an object is, for the message.
QString describe(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::String:
        return QStringLiteral("a string");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::Bool:
        return QStringLiteral("a boolean");
    case QJsonValue::Null:
        return QStringLiteral("null");
    default:
        return QStringLiteral("an object");
    }
}

// A document holds an object or an array only; a single other value (42,
// "text", null) parses as the one element of an array around it.
std::optional<QJsonValue> singleValue(const QByteArray& text) {
    QJsonParseError parse;
    const QJsonDocument wrapped = QJsonDocument::fromJson('[' + text + ']', &parse);
    if (parse.error != QJsonParseError::NoError || wrapped.array().size() != 1)
        return std::nullopt;
    return wrapped.array().first();
}

} // namespace

std::optional<QVariantMap> readRequest(const QString& source, QTextStream& in, QString* error) {
    if (source.isNull())
        return QVariantMap();

    QByteArray text;
    QString origin;
    if (source == QLatin1String("-")) {
        text = in.read(maxRequestSize + 1).toUtf8();
        origin = QStringLiteral("standard input");
    } else if (source.startsWith(QLatin1Char('@'))) {
        const QString fileName = source.mid(1);
        QFile file(fileName);
        if (fileName.isEmpty() || !file.open(QIODevice::ReadOnly)) {
            *error = QStringLiteral("cannot read the request file \"%1\": %2")
                         .arg(fileName, fileName.isEmpty() ? QStringLiteral("no file name")
                                                           : file.errorString());
            return std::nullopt;
        }
        text = file.read(maxRequestSize + 1);
        origin = QStringLiteral("\"%1\"").arg(fileName);
    } else {
        text = source.toUtf8();
        origin = QStringLiteral("the argument");
    }

    if (text.size() > maxRequestSize) {
        *error = QStringLiteral("the request in %1 is larger than %2 MiB")
                     .arg(origin)
                     .arg(maxRequestSize / (1024 * 1024));
        return std::nullopt;
    }
    if (text.trimmed().isEmpty()) {
        *error = QStringLiteral("the request in %1 is empty: expected a JSON object").arg(origin);
        return std::nullopt;
    }
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(text, &parse);
    if (parse.error != QJsonParseError::NoError) {
        if (const std::optional<QJsonValue> value = singleValue(text)) {
            *error = QStringLiteral("the request in %1 must be a JSON object, not %2")
                         .arg(origin, describe(*value));
            return std::nullopt;
        }
        // Qt's error names a guess at the mistake ("missing comma" where a
        // value is missing); a second parser tells what was expected where.
        const std::optional<JsonSyntaxError> syntax = findJsonSyntaxError(text);
        *error = syntax ? QStringLiteral("the request in %1 is not valid JSON: %2")
                              .arg(origin, syntax->text())
                        : QStringLiteral("the request in %1 is not valid JSON: %2 at offset %3")
                              .arg(origin, parse.errorString())
                              .arg(parse.offset);
        return std::nullopt;
    }
    if (!document.isObject()) {
        *error = QStringLiteral("the request in %1 must be a JSON object, not %2")
                     .arg(origin, describe(document.array()));
        return std::nullopt;
    }
    return document.object().toVariantMap();
}

} // namespace vesk::cli
