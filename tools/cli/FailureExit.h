#pragma once

#include <vesk/CallOutcome.h>

#include <morva/Http.h>

namespace vesk::cli {

// The exit status of a call that ended as `failure` (ExitCodes.h): one table
// from the library's kinds of failure to the numbers a script reads. The
// transport's `reply` tells a connection that the server closed without a
// word (52) from one that broke (56).
int exitCodeOf(CallOutcome::Failure failure, const http::Response& reply = http::Response());

} // namespace vesk::cli
