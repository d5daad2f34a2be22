#include "HttpServer.h"

#include "ServedConnection.h"
#include "WorkerPool.h"

#include <sys/socket.h>

namespace vesk::emulator {

HttpServer::HttpServer() {
    // Without SO_REUSEPORT (httplib's default on Linux), so that a second
    // emulator on a port in use fails instead of sharing it.
    set_socket_options([](socket_t socket) {
        int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
    set_tcp_nodelay(true);
    // No cap a till could reach (a call a second for thirty years), and one
    // that the Keep-Alive header's "max=" shows as a number any client reads.
    set_keep_alive_max_count(1000000000);
    set_keep_alive_timeout(idleSeconds);
    new_task_queue = [] { return new WorkerPool(workersReady, workerLimit); };
}

int HttpServer::bindAndListen(const std::string& host, int port) {
    const int bound = port == 0 ? bind_to_any_port(host) : (bind_to_port(host, port) ? port : -1);
    if (bound <= 0)
        return -1;
    // The library has listened already, with its own backlog; on Linux,
    // listening again on the socket sets the backlog anew (should it fail,
    // the library's stays).
    ::listen(svr_sock_, listenBacklog);
    port_ = bound;
    return bound;
}

void HttpServer::stopServing() {
    stop();
    // The idle workers wait for a next request in poll(): an end of input
    // wakes them, and they close their connections.
    if (port_ > 0)
        ServedConnection::endReadingAll(port_);
}

} // namespace vesk::emulator
