#pragma once

#include <QString>
#include <QStringList>

namespace vesk::cli::test {

// One run of runCli in the test process.
struct CliRun {
    int exitCode = -1;
    QString out;
    QString err;
};

CliRun runInProcess(const QStringList& arguments, const QString& input = QString());

} // namespace vesk::cli::test
