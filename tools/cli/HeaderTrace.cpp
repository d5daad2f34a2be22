#include "HeaderTrace.h"

#include <masking/SecretMasking.h>

#include <QUrl>

namespace vesk::cli {
namespace {

bool carriesCredentials(const QByteArray& name) {
    const QByteArray lower = name.toLower();
    for (const char* word :
         {"authorization", "cookie", "token", "api-key", "apikey", "secret", "password", "session"})
        if (lower.contains(word))
            return true;
    return false;
}

QString headerLine(const char* direction, const QByteArray& name, const QByteArray& value) {
    return QString::fromLatin1(direction) + QString::fromLatin1(name) + QStringLiteral(": ") +
           QString::fromLatin1(shownHeaderValue(name, value));
}

} // namespace

QByteArray shownHeaderValue(const QByteArray& name, const QByteArray& value) {
    return carriesCredentials(name) ? QByteArrayLiteral("***") : value;
}

QStringList requestHeaderLines(const http::Request& request, const RestClient::Settings& settings) {
    const QUrl& url = request.url;
    QString target = url.path(QUrl::FullyEncoded);
    if (url.hasQuery())
        target += QLatin1Char('?') + masking::maskUrl(url).section(QLatin1Char('?'), 1);
    QStringList lines{
        QStringLiteral("> %1 %2 HTTP/1.1").arg(QString::fromLatin1(request.method), target),
        QStringLiteral("> Host: %1").arg(url.adjusted(QUrl::RemoveUserInfo).authority())};
    if (!request.body.isEmpty()) {
        lines << QStringLiteral("> Content-Type: application/json")
              << QStringLiteral("> Content-Length: %1").arg(request.body.size());
    }
    if (!settings.acceptEncoding.isEmpty())
        lines << QStringLiteral("> Accept-Encoding: %1").arg(settings.acceptEncoding);
    for (auto it = request.headers.begin(); it != request.headers.end(); ++it)
        lines << headerLine("> ", it.key(), it.value());
    return lines;
}

QStringList replyHeaderLines(const http::Response& response) {
    if (response.statusCode == 0)
        return {QStringLiteral("< (no whole reply: %1)").arg(response.error.text())};
    QStringList lines{QStringLiteral("< HTTP %1").arg(response.statusCode)};
    for (auto it = response.headers.begin(); it != response.headers.end(); ++it)
        if (!it.key().startsWith(':')) // the transport's report, no header of the reply
            lines << headerLine("< ", it.key(), it.value());
    return lines;
}

} // namespace vesk::cli
