#include "InProcess.h"

#include <cli/Cli.h>

#include <QTextStream>

namespace vesk::cli::test {

CliRun runInProcess(const QStringList& arguments, const QString& input) {
    CliRun run;
    QString in = input;
    QTextStream outStream(&run.out);
    QTextStream errStream(&run.err);
    QTextStream inStream(&in);
    run.exitCode = runCli(arguments, outStream, errStream, inStream);
    outStream.flush();
    errStream.flush();
    return run;
}

} // namespace vesk::cli::test
