// The direct JSON writer of request bodies against Qt's writer, on any map:
// where the direct writer takes a map, its bytes must be Qt's, exactly.

#include "VariantInput.h"

#include <vesk/json/CompactJson.h>

#include <QJsonDocument>
#include <QJsonObject>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    vesk::fuzz::Bytes bytes(data, size);
    QVariantMap map;
    while (!bytes.empty())
        map.insert(bytes.text(), vesk::fuzz::variant(bytes, 0));

    const QByteArray qt =
        QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
    QByteArray direct;
    if (vesk::json::writeCompactJson(map, direct) && direct != qt)
        __builtin_trap();
    if (vesk::json::compactJson(map) != qt)
        __builtin_trap();
    return 0;
}
