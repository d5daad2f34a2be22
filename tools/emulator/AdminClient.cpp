#include "AdminClient.h"

#include "AdminApi.h"

#include <morva/RestClient.h>

#include <QJsonDocument>

namespace vesk::emulator {

namespace {

http::Response exchange(const QString& baseUrl, const QByteArray& method, const QString& resource,
                        const QJsonObject& body) {
    http::Request request;
    request.method = method;
    request.url = QUrl(baseUrl + QLatin1String(AdminApi::prefix) + resource);
    if (method == "POST") {
        request.body = QJsonDocument(body).toJson(QJsonDocument::Compact);
        request.headers.insert("Content-Type", "application/json");
    }
    RestClient client;
    client.send(request);
    return client.response();
}

} // namespace

AdminClient::Text AdminClient::text(const QString& resource) const {
    const http::Response response = exchange(baseUrl_, "GET", resource, QJsonObject());
    if (response.failure != http::Response::Failure::None)
        return {QByteArray(), response.error.text()};
    if (response.statusCode != 200)
        return {QByteArray(), QStringLiteral("HTTP %1: %2")
                                  .arg(response.statusCode)
                                  .arg(QString::fromUtf8(response.body.left(200)))};
    return {response.body, QString()};
}

AdminClient::Result AdminClient::call(const QByteArray& method, const QString& resource,
                                      const QJsonObject& body) const {
    const http::Response response = exchange(baseUrl_, method, resource, body);

    Result result;
    result.status = response.statusCode;
    if (response.failure != http::Response::Failure::None) {
        result.message = response.error.text();
        return result;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(response.body, &parseError);
    result.body = document.object();
    if (response.statusCode >= 200 && response.statusCode < 300 && document.isObject()) {
        result.kind = Result::Kind::Done;
        return result;
    }
    result.kind = Result::Kind::Refused;
    const QString userMsg = result.body.value(QStringLiteral("userMsg")).toString();
    result.message = !userMsg.isEmpty()
                         ? userMsg
                         : QStringLiteral("HTTP %1 with a body that is not the emulator's: %2")
                               .arg(response.statusCode)
                               .arg(QString::fromUtf8(response.body.left(200)));
    return result;
}

} // namespace vesk::emulator
