// vesk-emulator: the back office on one address, until SIGINT or SIGTERM.

#include "CommandLine.h"
#include "Emulator.h"
#include "LogFilter.h"

#include <vesk/version.h>

#include <QCoreApplication>
#include <QLoggingCategory>

#include <csignal>
#include <cstdio>

#include <pthread.h>

namespace {

constexpr int exitUsage = 64; // EX_USAGE

} // namespace

int main(int argc, char* argv[]) {
    // SIGINT and SIGTERM are taken by sigwait() below, never delivered: block
    // them before any thread starts, so that every thread inherits the mask.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

    QCoreApplication app(argc, argv); // for the SQL driver plugin's lookup
    QString error;
    const std::optional<vesk::emulator::CommandLine> line =
        vesk::emulator::parseCommandLine(QCoreApplication::arguments(), &error);
    if (!line) {
        std::fprintf(stderr, "vesk-emulator: %s\n\n%s", qPrintable(error),
                     qPrintable(vesk::emulator::emulatorUsage()));
        return exitUsage;
    }
    if (line->help) {
        std::fputs(qPrintable(vesk::emulator::emulatorUsage()), stdout);
        return 0;
    }
    if (line->version) {
        std::printf("vesk-emulator %s (libVeskIface %s)\n", VESK_VERSION_STRING, vesk::version());
        return 0;
    }
    // One line per request, whatever rules the shell sets for the client's
    // loggers; only rules that name the emulator's own categories count.
    vesk::emulator::installEmulatorLogFilter(vesk::emulator::processLoggingRules());

    vesk::emulator::Emulator emulator(line->options);
    if (!emulator.start(&error)) {
        std::fprintf(stderr, "vesk-emulator: %s\n", qPrintable(error));
        return 1;
    }
    std::printf("vesk-emulator listening on %s\n", qPrintable(emulator.baseUrl()));
    for (const char* service : {"disc", "loyalty", "sales"})
        std::printf("  %-8s %s\n", service,
                    qPrintable(emulator.serviceUrl(QString::fromLatin1(service))));
    std::printf("state: %s\n", line->options.databaseFile.isEmpty()
                                   ? "in memory"
                                   : qPrintable(line->options.databaseFile));
    std::printf("admin: %s/_emulator/ (health, faults, reset)\n", qPrintable(emulator.baseUrl()));
    for (const vesk::emulator::FaultRule& rule : line->options.faults)
        std::printf("fault: %s\n", qPrintable(vesk::emulator::faultSpec(rule)));
    std::printf("Ctrl-C to stop\n");
    std::fflush(stdout);

    int received = 0;
    sigwait(&stopSignals, &received);
    std::printf("\n%s: stopping\n", received == SIGINT ? "SIGINT" : "SIGTERM");
    emulator.stop();
    return 0;
}
