#include "StopSignal.h"

#include <QtGlobal>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace vesk::emulator {

StopSignal::StopSignal()
    : fd_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

StopSignal::~StopSignal() {
    if (fd_ >= 0)
        ::close(fd_);
}

void StopSignal::raise() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(fd_, &one, sizeof(one));
}

void StopSignal::lower() {
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t read = ::read(fd_, &count, sizeof(count));
}

bool StopSignal::raised() const {
    pollfd signal{fd_, POLLIN, 0};
    return ::poll(&signal, 1, 0) > 0;
}

bool StopSignal::wait(int ms) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd signal{fd_, POLLIN, 0};
        const int result = ::poll(&signal, 1, int(std::max<qint64>(0, left.count())));
        if (result >= 0)
            return result == 0;
        if (errno != EINTR)
            return !raised();
    }
}

} // namespace vesk::emulator
