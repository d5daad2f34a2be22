#pragma once

#include "WholeSale.h"

#include <emulator/Emulator.h>

#include <QString>
#include <QTextStream>

#include <memory>
#include <optional>

namespace vesk::demo {

// The emulator that the service clients of this process call: one started
// in this process, or the external one (reset to its seed first).
struct Bench {
    std::unique_ptr<emulator::Emulator> inProcess; // null when external
    QString base;                                  // "http://127.0.0.1:55555"
    bool fresh = true;                             // it holds the seed's state
};

// Starts or finds the emulator, points the clients at it (or checks that
// they point there, when made already) and prints where; nothing, after
// saying why, when that cannot be done.
std::optional<Bench> openBench(const Options& options, QTextStream& out);

} // namespace vesk::demo
