#include "LoopbackSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace vesk::test {

int boundLoopbackSocket(int* port, const char* who) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        throw std::runtime_error(std::string(who) + ": socket() failed");
    const int yes = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    socklen_t length = sizeof address;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        ::close(fd);
        throw std::runtime_error(std::string(who) + ": cannot bind 127.0.0.1");
    }
    *port = ntohs(address.sin_port);
    return fd;
}

std::size_t announcedLength(const std::string& head) {
    std::string lower;
    lower.reserve(head.size());
    for (char c : head)
        lower += char(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    const std::size_t at = lower.find("\r\ncontent-length:");
    if (at == std::string::npos)
        return 0;
    return std::strtoul(lower.c_str() + at + 17, nullptr, 10);
}

} // namespace vesk::test
