#pragma once

#include <QString>
#include <QTextStream>
#include <QtGlobal>

namespace vesk::demo {

struct Options {
    bool external = false; // use an emulator already listening instead of starting one in-process
    QString host = QStringLiteral("127.0.0.1");
    quint16 port = 55555; // 0 with an in-process emulator: any free port
};

// Runs one whole sale through the library, printing a readable trace and a receipt to `out`.
// Returns 0 when every step behaved as the seed data says it must, non-zero otherwise (saying
// which step failed and why).
//
// The service clients are process singletons: the first run configures their base URLs, and a
// later run in the same process serves on the address they were made for.
int runWholeSale(const Options& options, QTextStream& out);

} // namespace vesk::demo
