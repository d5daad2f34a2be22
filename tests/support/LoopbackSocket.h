#pragma once

#include <cstddef>
#include <string>

namespace vesk::test {

// A TCP socket bound to 127.0.0.1 on a port of the system's choosing, which
// it writes to *port. Throws std::runtime_error when that fails.
int boundLoopbackSocket(int* port, const char* who);

// The length that a request's headers announce for its body, 0 if none.
std::size_t announcedLength(const std::string& head);

} // namespace vesk::test
