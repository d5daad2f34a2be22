#pragma once

#include <httplib.h>

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vesk::test {

struct RecordedRequest {
    std::string method;
    std::string path;
    std::string body;
    std::multimap<std::string, std::string> headers;
    int remotePort = 0; // the client's port: one value per TCP connection
};

// An HTTP server on 127.0.0.1 for tests, on a port of the system's choosing.
// It serves on its own threads from the constructor's return to the
// destructor, records every request, and answers each from the handler of
// its exact path, else with the reply given to replyToAll(), else with 404.
// Handlers may be added while it serves. Connections are kept alive for as
// long as the client wants (up to a second of idleness between requests).
class LoopbackServer {
public:
    using Handler = std::function<void(const httplib::Request&, httplib::Response&)>;

    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    int port() const;
    QString
    url(const QString& path = QStringLiteral("/")) const; // "http://127.0.0.1:<port>" + path

    // The handler of requests to exactly this path, whatever their method.
    void onPost(const std::string& path, Handler handler);
    // The reply to requests that no handler takes.
    void replyToAll(int status, std::string body, std::string contentType = "application/json");

    std::vector<RecordedRequest> requests() const; // all requests so far, in order

private:
    void serve(const httplib::Request& request, httplib::Response& response);

    httplib::Server server_;
    int port_ = -1;
    std::thread thread_;

    mutable std::mutex mutex_;
    std::map<std::string, Handler> handlers_;
    bool hasDefault_ = false;
    int defaultStatus_ = 404;
    std::string defaultBody_;
    std::string defaultContentType_;
    std::vector<RecordedRequest> requests_;
};

} // namespace vesk::test
