#pragma once

#include <QString>

#include <atomic>
#include <string>
#include <thread>

namespace vesk::test {

// A TCP server on 127.0.0.1 that plays a scripted reply, byte for byte, to
// each connection: for the broken replies that an HTTP server library does not
// produce (a connection closed before the answer or in the middle of the body,
// a server that stops answering, a malformed encoding).
//
// For each connection, one at a time: it reads the request up to the end of
// its headers (and the body that its Content-Length announces), writes the
// reply, and then either closes the connection or stalls, keeping it open
// without a word until the client gives up or the server is destroyed. Every
// wait is bounded, and the destructor ends the serving thread at once.
class RawServer {
public:
    enum class Then { Close, Stall };

    RawServer(std::string reply, Then then);
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    int port() const;
    QString
    url(const QString& path = QStringLiteral("/")) const; // "http://127.0.0.1:<port>" + path
    int connections() const;                              // accepted so far

private:
    void run();
    void answer(int connection);
    // Waits until `fd` is ready for `events` or the server is stopping;
    // false on stop, error or timeout.
    bool waitFor(int fd, short events) const;

    const std::string reply_;
    const Then then_;
    int listener_ = -1;
    int wakeRead_ = -1;
    int wakeWrite_ = -1;
    int port_ = 0;
    std::atomic<int> connections_{0};
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

// A port on 127.0.0.1 that was just bound and closed: connecting to it is
// refused.
int closedPort();

} // namespace vesk::test
