#pragma once

#include <QStringList>
#include <QTextStream>

namespace vesk::cli {

// The whole of `vesk`: `arguments` without the program's name; results go to
// `out`, messages and the usage after a mistake to `err`, and `vesk call ... -`
// reads its request from `in`. Returns the exit status (ExitCodes.h).
//
// The service clients and Config are made once per process: a second run in
// the same process cannot point a client elsewhere or read another
// configuration file, and says so.
int runCli(const QStringList& arguments, QTextStream& out, QTextStream& err, QTextStream& in);

} // namespace vesk::cli
