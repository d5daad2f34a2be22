#pragma once

#include "CommandLine.h"

#include <emulator/AdminClient.h>

#include <QTextStream>

namespace vesk::cli {

// vesk emulator health | faults | fault SPEC | clear | reset | journal [count | clear]
//                | verify CALL... [--listen HOST:PORT]
int emulatorCommand(const CommandLine& line, QTextStream& out, QTextStream& err);

// What an admin call that was not done tells the user, and the exit status:
// the emulator refused (2), or none answered (3).
int adminFailure(const emulator::AdminClient::Result& result, const QString& base,
                 QTextStream& err);

} // namespace vesk::cli
