#include "RecordingClient.h"

#include "HeaderTrace.h"

namespace vesk::cli {

void RecordingClient::send(const http::Request& request) {
    if (trace_) {
        *trace_ << requestHeaderLines(request, settings()).join(QLatin1Char('\n')) << '\n';
        trace_->flush();
    }
    RestClient::send(request);
}

http::Response RecordingClient::response() {
    http::Response got = RestClient::response();
    if (trace_) {
        *trace_ << replyHeaderLines(got).join(QLatin1Char('\n')) << '\n';
        trace_->flush();
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    last_ = got;
    return got;
}

http::Response RecordingClient::last() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_;
}

} // namespace vesk::cli
