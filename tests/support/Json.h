#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include <string>

namespace vesk::test {

// A variant map as the compact JSON that would go on the wire (keys sorted).
inline std::string compactJson(const QVariant& map) {
    return QJsonDocument(QJsonObject::fromVariantMap(map.toMap()))
        .toJson(QJsonDocument::Compact)
        .toStdString();
}

// A JSON object text as the variant map that a reply becomes.
inline QVariant replyMap(const char* json) {
    return QJsonDocument::fromJson(QByteArray(json)).object().toVariantMap();
}

} // namespace vesk::test
