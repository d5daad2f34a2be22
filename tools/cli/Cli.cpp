#include "Cli.h"

#include "BenchCommand.h"
#include "CommandLine.h"
#include "Commands.h"
#include "EmulatorCommand.h"
#include "ExitCodes.h"
#include "Messages.h"
#include "ProcessSettings.h"

#include <vesk/version.h>

#include <exception>

namespace vesk::cli {
namespace {

int run(const CommandLine& line, QTextStream& out, QTextStream& err, QTextStream& in) {
    if (line.version) {
        out << "vesk " << VESK_VERSION_STRING << " (libVeskIface " << vesk::version() << ")\n";
        return exitCode::success;
    }
    if (line.help) {
        out << usage(line.command);
        return exitCode::success;
    }
    if (line.command == QLatin1String("help")) {
        out << usage(line.arguments.value(0));
        return exitCode::success;
    }

    const bool demo = line.command == QLatin1String("demo");
    QString why;
    if (!applyProcessSettings(line, !demo, &why))
        return usageError(err, why, line.command);
    if (demo && !line.urls.isEmpty())
        warning(err) << "the demo points the clients at its emulator; --url is ignored\n";

    if (line.command == QLatin1String("call"))
        return callCommand(line, out, err, in);
    if (line.command == QLatin1String("ops"))
        return opsCommand(line, out);
    if (line.command == QLatin1String("record"))
        return recordCommand(line, out, err);
    if (line.command == QLatin1String("openapi"))
        return openApiCommand(line, out, err);
    if (line.command == QLatin1String("emulator"))
        return emulatorCommand(line, out, err);
    if (line.command == QLatin1String("bench"))
        return benchCommand(line, out, err, in);
    return demoCommand(line, out, err);
}

} // namespace

int runCli(const QStringList& arguments, QTextStream& out, QTextStream& err, QTextStream& in) {
    QString why;
    QString command;
    const std::optional<CommandLine> line = parseCommandLine(arguments, &why, &command);
    if (!line)
        return usageError(err, why, command);
    try {
        return run(*line, out, err, in);
    } catch (const std::exception& e) {
        // The library reports its failures as vesk::Exception, which the
        // commands handle; anything else is a fault, reported, not a crash.
        error(err) << QString::fromUtf8(e.what()) << '\n';
        return exitCode::failure;
    }
}

} // namespace vesk::cli
