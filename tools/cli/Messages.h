#pragma once

#include <QString>
#include <QTextStream>

namespace vesk::cli {

// The starts of every line vesk writes on standard error, so that a person
// or a script tells its messages from a program's around it.
inline QTextStream& error(QTextStream& err) {
    return err << "vesk: error: ";
}
inline QTextStream& warning(QTextStream& err) {
    return err << "vesk: warning: ";
}

// A usage error: one line, then where to read more (the usage of `command`,
// or the general one when it is empty). Returns exitCode::usage.
int usageError(QTextStream& err, const QString& why, const QString& command = QString());

} // namespace vesk::cli
