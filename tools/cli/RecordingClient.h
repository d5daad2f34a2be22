#pragma once

#include <morva/RestClient.h>

#include <QTextStream>

#include <mutex>

namespace vesk::cli {

// The host's HTTP client, keeping the last reply it got, so that `vesk call`
// can show the HTTP status and body of a refused call, which the library's
// exceptions do not carry; and, for --verbose, showing the headers.
class RecordingClient : public RestClient {
    Q_OBJECT

public:
    explicit RecordingClient(const Settings& settings)
        : RestClient(settings) {}

    void send(const http::Request& request) override;
    http::Response response() override;

    // From now on, writes each exchange's request and reply headers to
    // `trace` (HeaderTrace.h), flushed at once so that they stand in order
    // with the transport's log lines. One thread's client only.
    void showHeadersOn(QTextStream* trace) { trace_ = trace; }

    // The last reply; a default one before any.
    http::Response last() const;

private:
    mutable std::mutex mutex_;
    http::Response last_;
    QTextStream* trace_ = nullptr;
};

} // namespace vesk::cli
