#include "ServedConnection.h"

#include "StopSignal.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>

#include <dirent.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vesk::emulator {

namespace {

// The numeric address and the port of a socket address, as cpp-httplib gives a request's.
bool addressOf(const sockaddr_storage& address, socklen_t length, std::string* host, int* port) {
    char name[NI_MAXHOST];
    char service[NI_MAXSERV];
    if (::getnameinfo(reinterpret_cast<const sockaddr*>(&address), length, name, sizeof(name),
                      service, sizeof(service), NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return false;
    *host = name;
    *port = std::atoi(service);
    return true;
}

// An IP socket of this process whose own port is `localPort`. Read from
// the address as it is: a scan asks this of every descriptor.
bool hasLocalPort(int fd, int localPort) {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    if (::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return false;
    if (address.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port) == localPort;
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6&>(address).sin6_port) == localPort;
    return false;
}

bool isConnection(int fd, int localPort, const std::string& peerAddress, int peerPort) {
    if (!hasLocalPort(fd, localPort))
        return false;
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    if (::getpeername(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return false;
    std::string host;
    int port = 0;
    return addressOf(address, length, &host, &port) && port == peerPort && host == peerAddress;
}

// A connection accepted on `localPort` (the listening socket has no peer).
bool isServedOn(int fd, int localPort) {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    return hasLocalPort(fd, localPort) &&
           ::getpeername(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0;
}

// Calls `visit` with each descriptor of the process until it returns true;
// the descriptor it stopped at, or -1.
template <class Visit>
int findDescriptor(Visit visit) {
    DIR* descriptors = ::opendir("/proc/self/fd");
    if (!descriptors)
        return -1;
    int found = -1;
    while (const dirent* entry = ::readdir(descriptors)) {
        char* end = nullptr;
        const long fd = std::strtol(entry->d_name, &end, 10);
        if (end == entry->d_name || *end != '\0' || fd == ::dirfd(descriptors))
            continue;
        if (visit(int(fd))) {
            found = int(fd);
            break;
        }
    }
    ::closedir(descriptors);
    return found;
}

} // namespace

ServedConnection ServedConnection::find(int localPort, const std::string& peerAddress,
                                        int peerPort) {
    return ServedConnection(
        findDescriptor([&](int fd) { return isConnection(fd, localPort, peerAddress, peerPort); }));
}

ServedConnection ServedConnection::ofThisWorker(int localPort, const std::string& peerAddress,
                                                int peerPort) {
    // A worker serves one connection at a time; the descriptor it found last
    // is checked again (a connection's addresses are unique), not looked for.
    thread_local int last = -1;
    if (last < 0 || !isConnection(last, localPort, peerAddress, peerPort))
        last = find(localPort, peerAddress, peerPort).fd_;
    return ServedConnection(last);
}

int ServedConnection::endReadingAll(int localPort) {
    int ended = 0;
    findDescriptor([&](int fd) {
        if (isServedOn(fd, localPort) && ::shutdown(fd, SHUT_RD) == 0)
            ++ended;
        return false;
    });
    return ended;
}

bool ServedConnection::clientGone() const {
    if (fd_ < 0)
        return false;
    pollfd watched{fd_, POLLRDHUP, 0};
    return ::poll(&watched, 1, 0) > 0 &&
           (watched.revents & (POLLRDHUP | POLLHUP | POLLERR | POLLNVAL)) != 0;
}

bool ServedConnection::send(const QByteArray& bytes) const {
    if (fd_ < 0)
        return false;
    // A client that stops reading cannot hold the worker for longer than this.
    const timeval limit{5, 0};
    ::setsockopt(fd_, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit));
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t sent =
            ::send(fd_, bytes.constData() + done, size_t(bytes.size() - done), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        done += sent;
    }
    return true;
}

ServedConnection::Waited ServedConnection::waitIdle(int ms, const StopSignal& stop) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                              deadline - std::chrono::steady_clock::now())
                              .count();
        if (left <= 0)
            return Waited::TimedOut;
        // POLLIN is not asked for: more requests from the client are no reason to stop.
        pollfd watched[2] = {{stop.fd(), POLLIN, 0}, {fd_, POLLRDHUP, 0}};
        const int result = ::poll(watched, fd_ >= 0 ? 2 : 1, int(std::min<long long>(left, 60000)));
        if (result < 0 && errno != EINTR)
            return Waited::Stopped;
        if (result <= 0)
            continue;
        if (watched[0].revents)
            return Waited::Stopped;
        if (watched[1].revents & (POLLRDHUP | POLLHUP | POLLERR | POLLNVAL))
            return Waited::ClientGone;
    }
}

void ServedConnection::release() {
    if (fd_ < 0)
        return;
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (null < 0 || ::dup2(null, fd_) < 0)
        ::shutdown(fd_, SHUT_RDWR); // ends the exchange at least, with FIN
    if (null >= 0)
        ::close(null);
    fd_ = -1;
}

void ServedConnection::close() {
    release();
}

void ServedConnection::reset() {
    if (fd_ < 0)
        return;
    const linger abort{1, 0};
    ::setsockopt(fd_, SOL_SOCKET, SO_LINGER, &abort, sizeof(abort));
    release();
}

} // namespace vesk::emulator
