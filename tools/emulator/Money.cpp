#include "Money.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vesk::emulator {

bool isValidAmount(double value) {
    return std::isfinite(value) && value >= 0 && value <= maxAmount;
}

bool isValidQuantity(double qty) {
    return std::isfinite(qty) && qty > 0 && qty <= maxQuantity;
}

Cents toCents(double amount) {
    return std::llround(amount * 100.0);
}

double fromCents(Cents cents) {
    return static_cast<double>(cents) / 100.0;
}

Milli toMilli(double qty) {
    return std::llround(qty * 1000.0);
}

double fromMilli(Milli milli) {
    return static_cast<double>(milli) / 1000.0;
}

Cents percentOf(Cents amount, double percent) {
    return std::llround(static_cast<double>(amount) * percent / 100.0);
}

Cents lineAmount(Cents unit, double qty) {
    return std::llround(static_cast<double>(unit) * qty);
}

QList<Cents> distribute(Cents total, const QList<Cents>& weights) {
    QList<Cents> parts(weights.size(), 0);
    if (weights.isEmpty())
        return parts;
    const Cents sum = std::accumulate(weights.begin(), weights.end(), Cents(0));
    if (sum <= 0) {
        parts[0] = total;
        return parts;
    }
    // total * weight may pass 2^63 for amounts near maxAmount: multiply in 128 bits.
    QList<Cents> remainders(weights.size(), 0);
    Cents given = 0;
    for (qsizetype i = 0; i < weights.size(); ++i) {
        const __int128 product = static_cast<__int128>(total) * std::max<Cents>(weights[i], 0);
        parts[i] = static_cast<Cents>(product / sum);
        remainders[i] = static_cast<Cents>(product % sum);
        given += parts[i];
    }
    QList<qsizetype> order(weights.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](qsizetype a, qsizetype b) { return remainders[a] > remainders[b]; });
    for (qsizetype k = 0; given < total && k < order.size(); ++k) {
        if (weights[order[k]] <= 0)
            continue;
        ++parts[order[k]];
        ++given;
    }
    return parts;
}

QString formatCents(Cents cents) {
    const Cents whole = std::llabs(cents) / 100;
    const Cents fraction = std::llabs(cents) % 100;
    return QStringLiteral("%1%2.%3")
        .arg(cents < 0 ? QStringLiteral("-") : QString())
        .arg(whole)
        .arg(fraction, 2, 10, QLatin1Char('0'));
}

} // namespace vesk::emulator
