#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace vesk::cli {

// What a number without a unit counts: timeouts are milliseconds, as the
// configuration's keys are; a bench run's length is seconds, as it always was.
enum class BareUnit { Milliseconds, Seconds };

// A duration as an option takes it: "1500" (in `bare` units), "1500ms", "2s",
// "1.5s". The result in whole milliseconds, from `minMs` to `maxMs`; nullopt,
// with why in `error` ("\"2h\" is not a duration: ..."), for anything else: a
// negative number, another unit, a fraction of a millisecond.
std::optional<qint64> parseDuration(const QString& text, BareUnit bare, qint64 minMs, qint64 maxMs,
                                    QString* error);

} // namespace vesk::cli
