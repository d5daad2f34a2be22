#pragma once

#include "CommandLine.h"

#include <QTextStream>

namespace vesk::cli {

// vesk bench [SERVICE OPERATION [JSON | @FILE | -] | --scenario sale]
//            [--concurrency N] [--duration SECONDS | --count N] [--json]
int benchCommand(const CommandLine& line, QTextStream& out, QTextStream& err, QTextStream& in);

} // namespace vesk::cli
