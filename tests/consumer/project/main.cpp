// A host program: includes the umbrella header, makes a client and
// serialises a host gadget through the library's strategies.
#include <vesk/vesk.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

int main() {
    const QUrl base = vesk::disc::Api::getInstance()->baseUrl();
    const QVariant message = serder::serialize(tr::Tr(QStringLiteral("7")));
    const QByteArray json =
        QJsonDocument(QJsonObject::fromVariantMap(message.toMap())).toJson(QJsonDocument::Compact);
    std::printf("%s %s\n", qPrintable(base.toString()), json.constData());
    return 0;
}
