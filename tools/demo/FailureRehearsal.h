#pragma once

#include "WholeSale.h"

#include <QTextStream>

namespace vesk::demo {

// Walks a till through the failures whose fate it must decide, against the
// emulator: a commit whose reply is cut after the back office booked it, a
// reservation whose connection is reset after the stock was taken, a refused
// call, and a call that never left. For each it prints the call's outcome,
// what the till does, and what came of it. Returns 0 when each behaved as
// the emulator's rules say (the commit and the reservation applied once),
// non-zero otherwise.
int rehearseFailures(const Options& options, QTextStream& out);

} // namespace vesk::demo
