#include "RepeatGuard.h"

#include "ServiceError.h"
#include "Store.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

namespace vesk::emulator {

namespace {

QByteArray compact(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

HttpFront::Answer otherBody(const QString& operation, const QString& cheque, const QString& guid) {
    const QString named =
        guid.isEmpty() ? cheque : QStringLiteral("%1 (guid %2)").arg(cheque, guid);
    return {409,
            QJsonObject{{QStringLiteral("code"), code::otherBody},
                        {QStringLiteral("userMsg"),
                         QStringLiteral("Cheque %1 was already sent to %2 with a different "
                                        "body: a repeat must be the same request")
                             .arg(named, operation)}},
            QStringLiteral("refused: same cheque, different body")};
}

} // namespace

QByteArray RepeatGuard::digest(const QVariantMap& body) {
    // QJsonObject keeps its members sorted, so the text does not depend on their order.
    return QCryptographicHash::hash(compact(QJsonObject::fromVariantMap(body)),
                                    QCryptographicHash::Sha256)
        .toHex();
}

HttpFront::Operation RepeatGuard::once(const QString& name, const Identification& by,
                                       HttpFront::Operation operation) {
    return [this, name, by, operation = std::move(operation)](const QVariant& body) {
        const QVariantMap members = body.toMap();
        const QString cheque = members.value(by.chequeKey).toString();
        if (cheque.isEmpty())
            return operation(body);
        const QString guid =
            by.guidKey.isEmpty() ? QString() : members.value(by.guidKey).toString();
        const QByteArray bodyDigest = digest(members);
        // One transaction around the look-up, the operation and the record:
        // of two tills that race with the same cheque, one does it, the
        // other gets its answer.
        return store_.transaction([&] {
            if (const std::optional<Store::AnsweredCall> first =
                    store_.answeredCall(name, cheque, guid)) {
                if (first->bodyDigest != bodyDigest)
                    return otherBody(name, cheque, guid);
                return HttpFront::Answer{200, QJsonDocument::fromJson(first->reply).object(),
                                         QStringLiteral("replayed")};
            }
            HttpFront::Answer answer = operation(body);
            if (answer.status == 200)
                store_.saveAnsweredCall({name, cheque, guid, bodyDigest, compact(answer.object)});
            return answer;
        });
    };
}

HttpFront::Operation RepeatGuard::releasing(const QString& guarded, const QString& chequeKey,
                                            HttpFront::Operation operation) {
    return [this, guarded, chequeKey, operation = std::move(operation)](const QVariant& body) {
        return store_.transaction([&] {
            HttpFront::Answer answer = operation(body);
            if (answer.status == 200)
                store_.dropAnsweredCalls(guarded, body.toMap().value(chequeKey).toString());
            return answer;
        });
    };
}

} // namespace vesk::emulator
