#pragma once

// How the call frame makes and hands out a call's outcome.

#include "CallOutcome.h"
#include "json/ReplyJson.h"

#include <morva/Http.h>

namespace vesk::detail {

// The outcome of an exchange that ended with `response`: what a transport
// that reports no more than the Response's own fields tells (a content
// failure means the back office answered; a network failure leaves it
// unknown), made exact by the report of a transport that gives one.
CallOutcome outcomeOf(const QString& url, const http::Response& response, json::Reply::Shape shape,
                      std::chrono::milliseconds elapsed, qint64 bytesSent);

// Keeps `outcome` as the calling thread's last and tells the observer.
void recordOutcome(const CallOutcome& outcome);

} // namespace vesk::detail
