#include "FaultServer.h"

#include "LoopbackSocket.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <zlib.h>

#include <chrono>
#include <stdexcept>

namespace vesk::test {

namespace {

// The longest that any single wait of the server lasts.
constexpr int waitLimitMs = 10000;

std::string lower(std::string text) {
    for (char& c : text)
        c = char(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return text;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    const std::size_t last = text.find_last_not_of(" \t");
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

} // namespace

FaultServer::FaultServer(Script script)
    : script_(std::move(script)) {
    listener_ = boundLoopbackSocket(&port_, "FaultServer");
    int pipeFds[2];
    if (::listen(listener_, 16) != 0 || ::pipe2(pipeFds, O_CLOEXEC) != 0) {
        ::close(listener_);
        throw std::runtime_error("FaultServer: cannot listen");
    }
    wakeRead_ = pipeFds[0];
    wakeWrite_ = pipeFds[1];
    acceptor_ = std::thread([this] { acceptLoop(); });
}

FaultServer::~FaultServer() {
    stopping_ = true;
    const char wake = 'x';
    [[maybe_unused]] const ssize_t written = ::write(wakeWrite_, &wake, 1);
    changed_.notify_all();
    acceptor_.join();
    std::vector<std::thread> servers;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        servers.swap(servers_);
    }
    for (std::thread& server : servers)
        server.join();
    ::close(listener_);
    ::close(wakeRead_);
    ::close(wakeWrite_);
}

QString FaultServer::url(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1").arg(port_) + path;
}

std::vector<FaultServer::Request> FaultServer::received() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return received_;
}

void FaultServer::openGate() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        gateOpen_ = true;
    }
    changed_.notify_all();
}

bool FaultServer::waitAfterGate(int ms) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::milliseconds(ms), [this] {
        return afterGateDone_ > 0 || stopping_;
    }) && afterGateDone_ > 0;
}

bool FaultServer::waitGate() {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::milliseconds(waitLimitMs), [this] {
        return gateOpen_ || stopping_;
    }) && !stopping_;
}

FaultServer::Answer FaultServer::echo(const Request& request) {
    Answer answer;
    answer.bytes = reply(200, "{\"echo\": " + (request.body.empty() ? "null" : request.body) + "}");
    return answer;
}

std::string FaultServer::reply(int status, const std::string& body,
                               const std::string& extraHeaders) {
    return "HTTP/1.1 " + std::to_string(status) +
           " Whatever\r\nContent-Type: application/json\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n" + extraHeaders + "\r\n" + body;
}

std::string FaultServer::gzip(const std::string& data) {
    z_stream stream{};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, uLong(data.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = uInt(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

void FaultServer::acceptLoop() {
    while (!stopping_) {
        pollfd fds[2] = {{listener_, POLLIN, 0}, {wakeRead_, POLLIN, 0}};
        if (::poll(fds, 2, waitLimitMs) <= 0 || (fds[1].revents & POLLIN))
            continue;
        const int fd = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0)
            continue;
        const int connection = connections_++;
        std::lock_guard<std::mutex> lock(mutex_);
        servers_.emplace_back([this, fd, connection] { serve(fd, connection); });
    }
}

bool FaultServer::waitReadable(int fd, int ms) const {
    pollfd fds[2] = {{fd, POLLIN, 0}, {wakeRead_, POLLIN, 0}};
    return ::poll(fds, 2, ms) > 0 && !(fds[1].revents & POLLIN) && !stopping_;
}

bool FaultServer::readRequest(int fd, std::string& buffer, Request& request) {
    std::size_t headEnd;
    while ((headEnd = buffer.find("\r\n\r\n")) == std::string::npos ||
           buffer.size() < headEnd + 4 + announcedLength(buffer.substr(0, headEnd + 2))) {
        if (!waitReadable(fd, waitLimitMs))
            return false;
        char chunk[4096];
        const ssize_t got = ::recv(fd, chunk, sizeof chunk, 0);
        if (got <= 0)
            return false;
        buffer.append(chunk, std::size_t(got));
    }
    const std::string head = buffer.substr(0, headEnd + 2);
    const std::size_t length = announcedLength(head);
    request.body = buffer.substr(headEnd + 4, length);
    buffer.erase(0, headEnd + 4 + length);

    std::size_t lineEnd = head.find("\r\n");
    const std::string requestLine = head.substr(0, lineEnd);
    const std::size_t space = requestLine.find(' ');
    request.method = requestLine.substr(0, space);
    request.target = requestLine.substr(space + 1, requestLine.rfind(' ') - space - 1);
    while (lineEnd + 2 < head.size()) {
        const std::size_t next = head.find("\r\n", lineEnd + 2);
        const std::string line = head.substr(lineEnd + 2, next - lineEnd - 2);
        const std::size_t colon = line.find(':');
        if (colon != std::string::npos)
            request.headers[lower(line.substr(0, colon))] = trimmed(line.substr(colon + 1));
        lineEnd = next;
    }
    return true;
}

bool FaultServer::writeAll(int fd, const std::string& bytes, std::size_t piece, int pauseMs) {
    std::size_t done = 0;
    while (done < bytes.size() && !stopping_) {
        const std::size_t size = piece ? std::min(piece, bytes.size() - done) : bytes.size() - done;
        const ssize_t sent = ::send(fd, bytes.data() + done, size, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        done += std::size_t(sent);
        if (piece && pauseMs > 0 && done < bytes.size() && waitReadable(wakeRead_, pauseMs))
            return false;
    }
    return done == bytes.size();
}

void FaultServer::serve(int fd, int connection) {
    std::string buffer;
    for (int index = 0; !stopping_; ++index) {
        Request request;
        if (!readRequest(fd, buffer, request))
            break;
        request.connection = connection;
        request.index = index;
        ++requests_;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            received_.push_back(request);
        }
        const Answer answer = script_(request);
        bool open = writeAll(fd, answer.bytes, answer.dripBytes, answer.pauseMs);
        if (open && (!answer.afterGate.empty() || answer.closeAfterGate)) {
            open = waitGate() && writeAll(fd, answer.afterGate, 0, 0);
            if (answer.closeAfterGate) {
                ::shutdown(fd, SHUT_WR);
                open = false;
            }
            {
                std::lock_guard<std::mutex> lock(mutex_);
                ++afterGateDone_;
            }
            changed_.notify_all();
        }
        if (!open)
            break;
        if (answer.then == Answer::Then::Close)
            break;
        if (answer.then == Answer::Then::Reset) {
            const linger hard{1, 0};
            ::setsockopt(fd, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
            break;
        }
        if (answer.then == Answer::Then::Stall) {
            // Until the client goes away or the server stops.
            char byte;
            while (waitReadable(fd, waitLimitMs) && ::recv(fd, &byte, 1, 0) > 0) {
            }
            break;
        }
    }
    ::close(fd);
}

} // namespace vesk::test
