// The direct reader of reply bodies against Qt's reader, on any bytes: the
// map, to the last variant type, and the shape must be Qt's.

#include "support/SameVariant.h"

#include <vesk/json/ReplyJson.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray body(reinterpret_cast<const char*>(data), qsizetype(size));
    const vesk::json::Reply qt = vesk::json::readReplyWithQt(body);
    const vesk::json::Reply read = vesk::json::readReply(body);
    if (read.shape != qt.shape || !vesk::test::sameVariant(read.object, qt.object))
        __builtin_trap();
    return 0;
}
