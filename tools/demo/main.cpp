// vesk-demo: one whole sale through the library, against an emulator started
// in this process or one already listening.

#include "WholeSale.h"

#include <emulator/CommandLine.h>

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

constexpr int exitUsage = 64; // EX_USAGE

const char* const usage =
    "Usage: vesk-demo [--external] [--listen HOST:PORT] [--help]\n"
    "Runs one whole sale through the library's clients and prints its trace and receipt.\n"
    "\n"
    "  --external          use the emulator listening at HOST:PORT instead of starting one\n"
    "  --listen HOST:PORT  where the emulator is or is started (default 127.0.0.1:55555;\n"
    "                      port 0 without --external: any free port)\n"
    "  --help              this text\n";

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv); // for the SQL driver plugin's lookup
    vesk::demo::Options options;
    const QStringList arguments = QCoreApplication::arguments();
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        QString error;
        if (argument == QLatin1String("--help")) {
            std::fputs(usage, stdout);
            return 0;
        } else if (argument == QLatin1String("--external")) {
            options.external = true;
        } else if (argument == QLatin1String("--listen") && i + 1 < arguments.size()) {
            if (!vesk::emulator::parseListenAddress(arguments[++i], &options.host, &options.port,
                                                    &error)) {
                std::fprintf(stderr, "vesk-demo: --listen: %s\n\n%s", qPrintable(error), usage);
                return exitUsage;
            }
        } else {
            std::fprintf(stderr, "vesk-demo: unexpected argument: %s\n\n%s", qPrintable(argument),
                         usage);
            return exitUsage;
        }
    }
    QTextStream out(stdout);
    return vesk::demo::runWholeSale(options, out);
}
