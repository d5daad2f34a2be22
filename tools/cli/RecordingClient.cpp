#include "RecordingClient.h"

namespace vesk::cli {

http::Response RecordingClient::response() {
    http::Response got = RestClient::response();
    const std::lock_guard<std::mutex> lock(mutex_);
    last_ = got;
    return got;
}

http::Response RecordingClient::last() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_;
}

} // namespace vesk::cli
