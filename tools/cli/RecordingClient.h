#pragma once

#include <morva/RestClient.h>

#include <mutex>

namespace vesk::cli {

// The host's HTTP client, keeping the last reply it got, so that `vesk call`
// can show the HTTP status and body of a refused call, which the library's
// exceptions do not carry.
class RecordingClient : public RestClient {
    Q_OBJECT

public:
    explicit RecordingClient(const Settings& settings)
        : RestClient(settings) {}

    http::Response response() override;

    // The last reply; a default one before any.
    http::Response last() const;

private:
    mutable std::mutex mutex_;
    http::Response last_;
};

} // namespace vesk::cli
