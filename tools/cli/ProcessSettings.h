#pragma once

#include "CommandLine.h"

#include <QString>

namespace vesk::cli {

// What the options of every command change in this process, checked whole
// before anything is changed:
// - --config FILE names the INI file that Config reads when it is made (it
//   is made once per process, so it must not exist yet, unless it read the
//   same file);
// - --url SERVICE=URL sets the service's base URL in Config before its
//   client is made (a client made already keeps its URL, so a different one
//   is an error);
// - --verbose turns on the info and debug lines of the services' loggers.
// False, with what is wrong in `error`, when an option is malformed or
// cannot take effect any more.
bool applyProcessSettings(const CommandLine& line, bool applyUrls, QString* error);

} // namespace vesk::cli
