#include "RawServer.h"

#include "LoopbackSocket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace vesk::test {

namespace {

// The longest that any single wait of the server lasts.
constexpr int waitLimitMs = 10000;

} // namespace

RawServer::RawServer(std::string reply, Then then)
    : reply_(std::move(reply))
    , then_(then) {
    listener_ = boundLoopbackSocket(&port_, "RawServer");
    int pipeFds[2];
    if (::listen(listener_, 16) != 0 || ::pipe2(pipeFds, O_CLOEXEC) != 0) {
        ::close(listener_);
        throw std::runtime_error("RawServer: cannot listen");
    }
    wakeRead_ = pipeFds[0];
    wakeWrite_ = pipeFds[1];
    thread_ = std::thread([this] { run(); });
}

RawServer::~RawServer() {
    stopping_ = true;
    const char wake = 'x';
    [[maybe_unused]] const ssize_t written = ::write(wakeWrite_, &wake, 1);
    thread_.join();
    ::close(listener_);
    ::close(wakeRead_);
    ::close(wakeWrite_);
}

int RawServer::port() const {
    return port_;
}

QString RawServer::url(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1").arg(port_) + path;
}

int RawServer::connections() const {
    return connections_;
}

bool RawServer::waitFor(int fd, short events) const {
    pollfd fds[2] = {{fd, events, 0}, {wakeRead_, POLLIN, 0}};
    const int ready = ::poll(fds, 2, waitLimitMs);
    if (ready <= 0 || stopping_ || fds[1].revents != 0)
        return false;
    return fds[0].revents != 0;
}

void RawServer::run() {
    while (!stopping_) {
        if (!waitFor(listener_, POLLIN))
            continue; // a bounded wait that ended: look at stopping_ again
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            continue;
        ++connections_;
        answer(connection);
        ::close(connection);
    }
}

void RawServer::answer(int connection) {
    // The request: its headers, then the body that they announce.
    std::string request;
    std::size_t wanted = std::string::npos;
    char buffer[4096];
    while (request.size() < wanted) {
        if (!waitFor(connection, POLLIN))
            return;
        const ssize_t got = ::recv(connection, buffer, sizeof buffer, 0);
        if (got <= 0)
            return;
        request.append(buffer, std::size_t(got));
        const std::size_t headEnd = request.find("\r\n\r\n");
        if (wanted == std::string::npos && headEnd != std::string::npos)
            wanted = headEnd + 4 + announcedLength(request.substr(0, headEnd + 2));
    }

    std::size_t sent = 0;
    while (sent < reply_.size()) {
        if (!waitFor(connection, POLLOUT))
            return;
        const ssize_t put =
            ::send(connection, reply_.data() + sent, reply_.size() - sent, MSG_NOSIGNAL);
        if (put <= 0)
            return;
        sent += std::size_t(put);
    }

    if (then_ == Then::Stall) {
        // Silent until the client closes its end, the server stops, or the
        // wait runs out; whatever the client sends meanwhile is dropped.
        while (waitFor(connection, POLLIN)) {
            if (::recv(connection, buffer, sizeof buffer, 0) <= 0)
                return;
        }
    }
}

int closedPort() {
    int port = 0;
    ::close(boundLoopbackSocket(&port, "closedPort"));
    return port;
}

} // namespace vesk::test
