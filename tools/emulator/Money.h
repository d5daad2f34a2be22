#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

// Amounts and quantities as the emulator computes them: amounts in whole
// cents, quantities in thousandths, so that sums never drift. The records
// carry doubles; these helpers convert at the edge, checking the range.
namespace vesk::emulator {

using Cents = qint64;
using Milli = qint64;

// The largest amount (in currency units) and quantity that a request may carry.
inline constexpr double maxAmount = 1e9;
inline constexpr double maxQuantity = 1e6;

// Whether a value is a number that toCents/toMilli accept.
bool isValidAmount(double value); // 0 to maxAmount
bool isValidQuantity(double qty); // more than 0, up to maxQuantity

Cents toCents(double amount); // rounded to the nearest cent
double fromCents(Cents cents);
Milli toMilli(double qty); // rounded to the nearest thousandth
double fromMilli(Milli milli);

// `percent` per cent of an amount, rounded to the nearest cent (halves away from zero).
Cents percentOf(Cents amount, double percent);

// The amount of `qty` units at `unit` cents each, rounded to the nearest cent.
Cents lineAmount(Cents unit, double qty);

// Splits `total` into parts proportional to `weights`, each rounded down, the
// cents left over going one each to the parts with the largest remainders
// (the earlier part first on a tie). The parts add up to `total` exactly.
// Zero weights get nothing, unless every weight is zero: then the first part
// takes everything.
QList<Cents> distribute(Cents total, const QList<Cents>& weights);

// "2752.50", "-0.05".
QString formatCents(Cents cents);

} // namespace vesk::emulator
