#include "PreparedRequestBase.h"

#include "NetworkException.h"
#include "records/Conversion.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <limits>

namespace vesk {
namespace {

// The "code" of an error reply: a JSON number with no fraction within the
// 32-bit range; anything else (a numeric string included) reads as 0.
int errorCode(const QJsonValue& value) {
    if (!value.isDouble())
        return 0;
    const double code = value.toDouble();
    if (code != std::trunc(code) || code < std::numeric_limits<int>::min() ||
        code > std::numeric_limits<int>::max())
        return 0;
    return static_cast<int>(code);
}

[[noreturn]] void raise(const http::Response& response, const QJsonObject& reply) {
    if (response.isNetworkError() || response.isContentNetworkError())
        throw NetworkException(response.error);
    const tr::Tr message(reply.value(QLatin1String("userMsg")).toString());
    throw Exception(errorCode(reply.value(QLatin1String("code"))), message);
}

} // namespace

QVariant PreparedRequestBase::getResponseVariant() const {
    const QSharedPointer<RestClient> performer =
        client ? client : QSharedPointer<RestClient>::create();

    http::Response response;
    {
        http::Request request;
        request.method = QByteArrayLiteral("POST");
        request.url = QUrl(url, QUrl::TolerantMode);
        request.body =
            QJsonDocument(QJsonObject::fromVariantMap(body.toMap())).toJson(QJsonDocument::Compact);
        performer->send(request);
    }
    response = performer->response();

    const QJsonObject reply = QJsonDocument::fromJson(response.body).object();
    if (response.statusCode == 200)
        return reply.toVariantMap();
    raise(response, reply);
}

QVariant PreparedRequestBase::vesk_readUrl() const {
    return url;
}

void PreparedRequestBase::vesk_writeUrl(const QVariant& value) {
    url = records::convertVariant<QString>(value);
}

QVariant PreparedRequestBase::vesk_readBody() const {
    return body;
}

void PreparedRequestBase::vesk_writeBody(const QVariant& value) {
    body = value.metaType() == QMetaType::fromType<QVariant>()
               ? *static_cast<const QVariant*>(value.constData())
               : value;
}

} // namespace vesk
