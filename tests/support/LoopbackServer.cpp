#include "LoopbackServer.h"

#include <stdexcept>

namespace vesk::test {

namespace {

// Headers that the server adds to a request for its handlers; the client never
// sent them.
bool addedByServer(const std::string& name) {
    return name == "REMOTE_ADDR" || name == "REMOTE_PORT" || name == "LOCAL_ADDR" ||
           name == "LOCAL_PORT";
}

} // namespace

LoopbackServer::LoopbackServer() {
    server_.set_keep_alive_max_count(100000);
    server_.set_keep_alive_timeout(1);
    // The reply's headers and body go out in separate writes; without this the
    // body of a reply on a kept-alive connection waits for the client's
    // delayed acknowledgement.
    server_.set_tcp_nodelay(true);
    const auto serve = [this](const httplib::Request& request, httplib::Response& response) {
        this->serve(request, response);
    };
    server_.Get(".*", serve);
    server_.Post(".*", serve);
    server_.Put(".*", serve);
    server_.Patch(".*", serve);
    server_.Delete(".*", serve);
    server_.Options(".*", serve);

    // The socket listens from here on: a client that connects now waits in
    // the backlog until the serving thread accepts it.
    port_ = server_.bind_to_any_port("127.0.0.1");
    if (port_ <= 0)
        throw std::runtime_error("LoopbackServer: cannot bind 127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    // stop() only reaches a server that has started its accept loop.
    while (!server_.is_running())
        std::this_thread::yield();
}

LoopbackServer::~LoopbackServer() {
    server_.stop();
    thread_.join();
}

int LoopbackServer::port() const {
    return port_;
}

QString LoopbackServer::url(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1").arg(port_) + path;
}

void LoopbackServer::onPost(const std::string& path, Handler handler) {
    const std::lock_guard<std::mutex> lock(mutex_);
    handlers_[path] = std::move(handler);
}

void LoopbackServer::replyToAll(int status, std::string body, std::string contentType) {
    const std::lock_guard<std::mutex> lock(mutex_);
    hasDefault_ = true;
    defaultStatus_ = status;
    defaultBody_ = std::move(body);
    defaultContentType_ = std::move(contentType);
}

std::vector<RecordedRequest> LoopbackServer::requests() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return requests_;
}

void LoopbackServer::serve(const httplib::Request& request, httplib::Response& response) {
    RecordedRequest recorded;
    recorded.method = request.method;
    recorded.path = request.path;
    recorded.body = request.body;
    for (const auto& [name, value] : request.headers) {
        if (!addedByServer(name))
            recorded.headers.emplace(name, value);
    }
    recorded.remotePort = request.remote_port;

    Handler handler;
    int status = 404;
    std::string body;
    std::string contentType;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        requests_.push_back(std::move(recorded));
        const auto it = handlers_.find(request.path);
        if (it != handlers_.end()) {
            handler = it->second;
        } else if (hasDefault_) {
            status = defaultStatus_;
            body = defaultBody_;
            contentType = defaultContentType_;
        }
    }
    if (handler) {
        handler(request, response);
        return;
    }
    response.status = status;
    if (!body.empty())
        response.set_content(body, contentType.c_str());
}

} // namespace vesk::test
