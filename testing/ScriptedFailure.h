#pragma once

#include <vesk/CallOutcome.h>

#include <morva/Http.h>

namespace vesk::testing::detail {

// Whether the transport can report `failure`: the kinds from Refused to
// ContentFailure.
bool canScript(CallOutcome::Failure failure);

// The Response of a call to `url` that failed as `failure`, reported the way
// the transport reports it (its pseudo-headers, its wording), so that the
// library raises and tells the call's outcome as for a real one. `message`,
// when not empty, replaces the wording.
http::Response scriptedFailure(CallOutcome::Failure failure, const QString& message,
                               const QString& url);

} // namespace vesk::testing::detail
