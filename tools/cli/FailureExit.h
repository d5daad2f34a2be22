#pragma once

#include <vesk/CallOutcome.h>

namespace vesk::cli {

// The exit status of a call that ended as `failure` (ExitCodes.h): one table
// from the library's kinds of failure to the numbers a script reads.
int exitCodeOf(CallOutcome::Failure failure);

} // namespace vesk::cli
