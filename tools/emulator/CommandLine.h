#pragma once

#include "Emulator.h"

#include <QStringList>

#include <optional>

namespace vesk::emulator {

// The command line of vesk-emulator:
//     vesk-emulator [--listen HOST:PORT] [--db FILE] [--seed FILE] [--fault SPEC]...
//                   [--strict-requests] [--journal-size N] [--journal-bytes N]
//                   [--help | --version]
struct CommandLine {
    Options options;
    bool help = false;
    bool version = false;
};

// `arguments` as main() gets them, the program's name first. nullopt, with
// what is wrong in `error`, on bad usage.
std::optional<CommandLine> parseCommandLine(const QStringList& arguments, QString* error);

// "127.0.0.1:55555", "localhost:0", "[::1]:8080". False, with what is wrong
// in `error`, unless it is a host and a port from 0 to 65535.
bool parseListenAddress(const QString& text, QString* host, quint16* port, QString* error);

QString emulatorUsage();

} // namespace vesk::emulator
