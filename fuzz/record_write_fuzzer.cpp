// Record writes from arbitrary variants: a JSON text, or a variant tree built
// from the bytes with the types a host could put there (numbers of every
// width, text, lists, maps, null, date-times), written into every reply
// record, read back and written again.

#include "FuzzInput.h"
#include "VariantInput.h"

#include <QDateTime>
#include <QJsonObject>
#include <QVariantList>
#include <QVariantMap>

#include <cmath>
#include <cstring>
#include <limits>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    QVariant in;
    if (data[0] & 1) {
        in = QJsonDocument::fromJson(vesk::fuzz::rest(data, size, 2)).toVariant();
    } else {
        vesk::fuzz::Bytes bytes(data + 2, size - 2);
        in = vesk::fuzz::variant(bytes, 0);
    }
    vesk::fuzz::visitType<vesk::fuzz::Responses>(data[1], [&](auto* type) {
        using Record = std::remove_pointer_t<decltype(type)>;
        const Record record = serder::deserialize<Record>(in);
        const Record again = serder::deserialize<Record>(serder::serialize(record));
        (void)(record == again);
    });
    return 0;
}
