// Without the direct reader (VESK_FAST_REPLY_READER off): every reply is
// read by Qt's reader, and the library needs nothing beyond Qt Core for it.

#include "ReplyJson.h"

namespace vesk::json {

bool directReaderBuilt() {
    return false;
}

bool readReplyDirectly(const QByteArray&, Reply&) {
    return false;
}

} // namespace vesk::json
