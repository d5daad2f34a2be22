#include "ReplyJson.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace vesk::json {

Reply readReplyWithQt(const QByteArray& body) {
    const QJsonDocument document = QJsonDocument::fromJson(body);
    Reply reply;
    reply.object = document.object().toVariantMap();
    reply.shape = body.isEmpty()        ? Reply::Shape::Empty
                  : document.isObject() ? Reply::Shape::Object
                  : document.isArray()  ? Reply::Shape::Array
                                        : Reply::Shape::NotJson;
    return reply;
}

Reply readReply(const QByteArray& body) {
    Reply reply;
    if (readReplyDirectly(body, reply))
        return reply;
    return readReplyWithQt(body);
}

} // namespace vesk::json
