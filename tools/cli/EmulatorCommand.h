#pragma once

#include "CommandLine.h"

#include <QTextStream>

namespace vesk::cli {

// vesk emulator health | faults | fault SPEC | clear | reset [--listen HOST:PORT]
int emulatorCommand(const CommandLine& line, QTextStream& out, QTextStream& err);

} // namespace vesk::cli
