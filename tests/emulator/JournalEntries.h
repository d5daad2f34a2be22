#pragma once

#include <emulator/journal/Journal.h>

namespace vesk::emulator::test {

// 2026-11-29T09:00:00.000Z: entries made by entry() arrive a second apart from here.
constexpr qint64 firstArrival = 1795942800000;

// A journal entry as the front would add it, the n-th second after firstArrival.
inline JournalEntry entry(qint64 n, const char* operation, const char* body, int status = 200,
                          std::optional<int> code = std::nullopt) {
    JournalEntry made;
    made.seq = n;
    made.arrivedMs = firstArrival + 1000 * (n - 1);
    made.operation = QString::fromLatin1(operation);
    made.body = QByteArray(body);
    made.status = status;
    made.code = code;
    made.ms = 2;
    made.done = true;
    return made;
}

} // namespace vesk::emulator::test
