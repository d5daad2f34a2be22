#include "Duration.h"

#include <QRegularExpression>

#include <cmath>

namespace vesk::cli {
namespace {

// "1500 ms" or "2 s" for the bounds in a message.
QString shown(qint64 ms) {
    return ms % 1000 == 0 ? QStringLiteral("%1s").arg(ms / 1000) : QStringLiteral("%1ms").arg(ms);
}

} // namespace

std::optional<qint64> parseDuration(const QString& text, BareUnit bare, qint64 minMs, qint64 maxMs,
                                    QString* error) {
    static const QRegularExpression pattern(QStringLiteral(R"(^(\d+(?:\.\d+)?)(ms|s)?$)"));
    const QString range = QStringLiteral("from %1 to %2").arg(shown(minMs), shown(maxMs));
    const QString bareMeaning =
        bare == BareUnit::Seconds ? QStringLiteral("seconds") : QStringLiteral("milliseconds");
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) {
        *error = QStringLiteral("\"%1\" is not a duration: write 1500ms, 2s or 1.5s (a bare "
                                "number counts %2), %3")
                     .arg(text, bareMeaning, range);
        return std::nullopt;
    }
    const QString unit = match.captured(2);
    const bool seconds =
        unit == QLatin1String("s") || (unit.isEmpty() && bare == BareUnit::Seconds);
    const double value = match.captured(1).toDouble() * (seconds ? 1000.0 : 1.0);
    if (value != std::floor(value)) {
        *error = QStringLiteral("\"%1\" is not a whole number of milliseconds").arg(text);
        return std::nullopt;
    }
    if (value < double(minMs) || value > double(maxMs)) {
        *error = QStringLiteral("\"%1\" is out of range: a duration %2").arg(text, range);
        return std::nullopt;
    }
    return qint64(value);
}

} // namespace vesk::cli
