#include "Messages.h"

#include "ExitCodes.h"

namespace vesk::cli {

// One line on what is wrong and where to read more, not the whole usage,
// which would push the line itself off the screen.
int usageError(QTextStream& err, const QString& why, const QString& command) {
    error(err) << why << '\n'
               << (command.isEmpty()
                       ? QStringLiteral("Try 'vesk --help' for more information.\n")
                       : QStringLiteral("Try 'vesk help %1' for more information.\n").arg(command));
    return exitCode::usage;
}

} // namespace vesk::cli
