#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <optional>

namespace vesk::cli {

// The command line of `vesk`:
//     vesk [OPTIONS] COMMAND [ARGUMENTS] [OPTIONS]
// Options of every command may stand before or after the command's name; a
// command's own options only after it.
struct CommandLine {
    QString command; // "call", "ops", "record", "openapi", "emulator", "demo" or "help"; empty with
                     // --version alone
    QStringList arguments; // the command's positional arguments
    bool help = false;     // --help: the command's usage instead of the command

    // Options of every command.
    QString configFile; // --config; empty when not given
    QStringList urls;   // each --url SERVICE=URL as given, in order
    QString base;       // --base http://HOST:PORT; empty when not given
    bool verbose = false;
    bool version = false; // --version: the versions instead of the command

    // Options of `call`.
    bool strict = false;      // --strict: refuse a request with problems
    bool lenient = false;     // --lenient: a 200 that is no JSON object is an empty response
    int timeoutMs = 0;        // --timeout DURATION, in ms; 0 when not given
    int connectTimeoutMs = 0; // --connect-timeout DURATION, in ms; 0 when not given
    QString caFile;           // --cacert FILE; empty when not given

    // Option of `ops`, `record` and `bench`.
    bool json = false; // --json
    // Option of `record`.
    bool example = false; // --example: a request body with every member

    // Options of `bench`.
    int concurrency = 4;  // --concurrency N
    double durationS = 0; // --duration DURATION, in seconds; 0 when not given
    qint64 count = 0;     // --count N; 0 when not given
    QString scenario;     // --scenario NAME; empty when not given

    // Options of `emulator journal` and `emulator verify`: which requests.
    QString operation;     // --operation OP; empty: any
    QString status;        // --status 200 | 4xx | none ...; empty: any
    QString since;         // --since TIME; empty: no bound
    QString until;         // --until TIME; empty: no bound
    QStringList where;     // each --where CONDITION, in order
    int limit = 100;       // --limit N: the newest N (0: all)
    bool inOrder = false;  // --in-order: the arguments are calls that happened in this order
    QString countKind;     // "exactly", "atLeast" or "atMost"; empty: at least once
    qint64 countTimes = 1; // --exactly N, --at-least N, --at-most N

    // Options of `demo` (both) and `emulator` (--listen).
    bool external = false;
    bool rehearseFailures = false; // demo --rehearse-failures
    QString listenHost;            // --listen HOST:PORT; empty when not given
    quint16 listenPort = 0;
};

// `arguments` without the program's name. nullopt on bad usage, with what is
// wrong in `error` and, in `command`, the command whose usage applies (empty:
// the general usage).
std::optional<CommandLine> parseCommandLine(const QStringList& arguments, QString* error,
                                            QString* command);

bool isCommand(const QString& name);

// The usage of a command, or the general usage for an empty name.
QString usage(const QString& command = QString());

} // namespace vesk::cli
