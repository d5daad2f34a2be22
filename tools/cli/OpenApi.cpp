#include "OpenApi.h"

#include "Operations.h"

#include <vesk/records/Members.h>
#include <vesk/version.h>

#include <QJsonArray>
#include <QSet>
#include <QUrl>

namespace vesk::cli {
namespace {

// "vesk::disc::LinesEntryRequest" -> "disc.LinesEntryRequest": component
// names allow letters, digits, ".", "-" and "_" only.
QString schemaName(const QMetaObject& record) {
    QString name = QString::fromLatin1(record.className());
    if (name.startsWith(QLatin1String("vesk::")))
        name.remove(0, 6);
    return name.replace(QLatin1String("::"), QLatin1String("."));
}

QJsonObject reference(const QMetaObject& record) {
    return {{QStringLiteral("$ref"), QStringLiteral("#/components/schemas/") + schemaName(record)}};
}

QJsonObject memberSchema(const records::Member& member) {
    switch (member.type) {
    case records::JsonType::Integer:
        return {{QStringLiteral("type"), QStringLiteral("integer")},
                {QStringLiteral("format"), QStringLiteral("int32")}};
    case records::JsonType::Number:
        return {{QStringLiteral("type"), QStringLiteral("number")}};
    case records::JsonType::Boolean:
        return {{QStringLiteral("type"), QStringLiteral("boolean")}};
    case records::JsonType::String:
        return {{QStringLiteral("type"), QStringLiteral("string")}};
    case records::JsonType::StringList:
        return {{QStringLiteral("type"), QStringLiteral("array")},
                {QStringLiteral("items"),
                 QJsonObject{{QStringLiteral("type"), QStringLiteral("string")}}}};
    case records::JsonType::List:
        return {{QStringLiteral("type"), QStringLiteral("array")},
                {QStringLiteral("items"), reference(*member.entry)}};
    case records::JsonType::DateTime:
        // ISO 8601 as Qt writes it: local time unless the value carries a
        // zone, so the offset is optional and "date-time" of RFC 3339 would
        // be too strict. A member that holds no date and time is written as
        // an empty text.
        return {{QStringLiteral("type"), QStringLiteral("string")},
                {QStringLiteral("pattern"),
                 QStringLiteral("^(\\d{4}-\\d{2}-\\d{2}T\\d{2}:\\d{2}:\\d{2}(\\.\\d+)?"
                                "(Z|[+-]\\d{2}:\\d{2})?)?$")}};
    }
    return {};
}

// Adds the record's schema, and those of its entries, to `schemas`.
void addRecordSchema(const QMetaObject& record, QJsonObject& schemas) {
    const QString name = schemaName(record);
    if (schemas.contains(name))
        return;
    QJsonObject properties;
    QJsonArray required;
    QStringList order;
    const QList<records::Member> members = records::membersOf(record);
    schemas.insert(name, QJsonObject()); // reserves the name while entries are added
    for (const records::Member& member : members) {
        const QString key = QString::fromLatin1(member.key);
        properties.insert(key, memberSchema(member));
        order.append(key);
        if (!member.optional)
            required.append(key);
        if (member.entry)
            addRecordSchema(*member.entry, schemas);
    }
    QJsonObject schema{{QStringLiteral("type"), QStringLiteral("object")},
                       {QStringLiteral("title"), QString::fromLatin1(record.className())},
                       {QStringLiteral("properties"), properties},
                       // JSON objects have no order; this one is the order of the bodies.
                       {QStringLiteral("x-vesk-member-order"), QJsonArray::fromStringList(order)}};
    if (!required.isEmpty())
        schema.insert(QStringLiteral("required"), required);
    schemas.insert(name, schema);
}

QJsonObject jsonContent(const QJsonObject& schema) {
    return {{QStringLiteral("application/json"), QJsonObject{{QStringLiteral("schema"), schema}}}};
}

QJsonObject errorSchema() {
    return {{QStringLiteral("type"), QStringLiteral("object")},
            {QStringLiteral("title"), QStringLiteral("Service error")},
            {QStringLiteral("description"),
             QStringLiteral("The body of every reply whose status is not 200. The library raises "
                            "vesk::Exception with its code (0 when absent) and user message.")},
            {QStringLiteral("properties"),
             QJsonObject{{QStringLiteral("code"),
                          QJsonObject{{QStringLiteral("type"), QStringLiteral("integer")}}},
                         {QStringLiteral("userMsg"),
                          QJsonObject{{QStringLiteral("type"), QStringLiteral("string")}}}}}};
}

QJsonObject operationObject(const Operation& operation) {
    const QJsonObject error{{QStringLiteral("$ref"), QStringLiteral("#/components/schemas/Error")}};
    return {
        {QStringLiteral("operationId"), operation.service + QLatin1Char('.') + operation.name},
        {QStringLiteral("tags"), QJsonArray{operation.service}},
        {QStringLiteral("summary"),
         QStringLiteral("vesk::%1::Api::%2").arg(operation.service, operation.name)},
        {QStringLiteral("requestBody"),
         QJsonObject{{QStringLiteral("required"), true},
                     {QStringLiteral("content"), jsonContent(reference(*operation.request))}}},
        {QStringLiteral("responses"),
         QJsonObject{
             {QStringLiteral("200"),
              QJsonObject{
                  {QStringLiteral("description"), QStringLiteral("The call succeeded.")},
                  {QStringLiteral("content"), jsonContent(reference(*operation.response))}}},
             {QStringLiteral("default"),
              QJsonObject{
                  {QStringLiteral("description"), QStringLiteral("The service refused the call.")},
                  {QStringLiteral("content"), jsonContent(error)}}}}},
    };
}

} // namespace

QJsonObject openApiDocument() {
    QJsonObject paths;
    QJsonObject schemas;
    QJsonArray tags;
    QSet<QString> services;
    QString server;
    for (const Operation& operation : operations()) {
        // Each service answers under its own base URL; all defaults share one host.
        const QUrl base(QString::fromLatin1(operation.client->defaultUrl));
        server = base.adjusted(QUrl::RemovePath).toString();
        paths.insert(base.path() + operation.name,
                     QJsonObject{{QStringLiteral("post"), operationObject(operation)}});
        addRecordSchema(*operation.request, schemas);
        addRecordSchema(*operation.response, schemas);
        if (!services.contains(operation.service)) {
            services.insert(operation.service);
            tags.append(QJsonObject{
                {QStringLiteral("name"), operation.service},
                {QStringLiteral("description"),
                 QStringLiteral("vesk::%1::Api; base URL from the configuration key \"%2\", by "
                                "default %3")
                     .arg(operation.service, QString::fromLatin1(operation.client->configKey),
                          QString::fromLatin1(operation.client->defaultUrl))}});
        }
    }
    schemas.insert(QStringLiteral("Error"), errorSchema());
    return {
        {QStringLiteral("openapi"), QStringLiteral("3.1.0")},
        {QStringLiteral("info"),
         QJsonObject{{QStringLiteral("title"), QStringLiteral("Vesk back-office services")},
                     {QStringLiteral("version"), QStringLiteral(VESK_VERSION_STRING)},
                     {QStringLiteral("description"),
                      QStringLiteral("The discount, loyalty and sales services as the Vesk client "
                                     "library calls them: one POST of a JSON object per "
                                     "operation; status 200 carries the response object, any "
                                     "other status the error object. Members listed as "
                                     "required are always written by the library; a reply "
                                     "that lacks one is read as the member's default.")}}},
        {QStringLiteral("servers"), QJsonArray{QJsonObject{{QStringLiteral("url"), server}}}},
        {QStringLiteral("tags"), tags},
        {QStringLiteral("paths"), paths},
        {QStringLiteral("components"), QJsonObject{{QStringLiteral("schemas"), schemas}}},
    };
}

} // namespace vesk::cli
