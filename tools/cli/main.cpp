// vesk: the back-office services from the command line, through the library.

#include "Cli.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char* argv[]) {
    // `vesk demo` starts the emulator, whose SQL driver is a plugin that Qt
    // finds through the application.
    QCoreApplication app(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    arguments.removeFirst();

    QTextStream out(stdout);
    QTextStream err(stderr);
    QTextStream in(stdin);
    return vesk::cli::runCli(arguments, out, err, in);
}
