// vesk: the back-office services from the command line, through the library.

#include "Cli.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char* argv[]) {
    // `vesk demo` starts the emulator, whose SQL driver is a plugin that Qt
    // finds through the application.
    QCoreApplication app(argc, argv);
    // The library's and the transport's log lines carry vesk's prefix too, so
    // that everything on standard error reads as vesk's.
    qSetMessagePattern(QStringLiteral("vesk: %{if-warning}warning: %{endif}%{if-critical}error: "
                                      "%{endif}%{if-fatal}error: %{endif}%{category}: %{message}"));
    QStringList arguments = QCoreApplication::arguments();
    arguments.removeFirst();

    QTextStream out(stdout);
    QTextStream err(stderr);
    QTextStream in(stdin);
    return vesk::cli::runCli(arguments, out, err, in);
}
