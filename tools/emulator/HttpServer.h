#pragma once

#include <httplib.h>

#include <string>

namespace vesk::emulator {

// cpp-httplib's server, set up for a store's tills arriving together and
// keeping their connections:
// - the listening socket's accept queue holds every till of a burst (the
//   library listens with a backlog of 5, and a connection that finds the
//   queue full waits a second for its SYN to be sent again);
// - a connection serves any number of requests, and stays open while idle
//   for idleSeconds;
// - each open connection has a worker of its own (WorkerPool);
// - stopServing() does not wait for idle connections to time out.
class HttpServer : public httplib::Server {
public:
    // Longer than a client keeps an idle connection for reuse (libcurl: 118 s),
    // so that the server is not the one to close it under a request in flight.
    static constexpr int idleSeconds = 300;
    // As deep as the system lets it be (net.core.somaxconn caps it).
    static constexpr int listenBacklog = 4096;
    // Workers ready from the start, so that a store's burst of tills does not
    // wait for threads to be made, and at most: connections beyond the limit
    // wait for one to close.
    static constexpr size_t workersReady = 64;
    static constexpr size_t workerLimit = 1024;

    HttpServer();

    // Binds `host`:`port` (0: a free port) and listens with listenBacklog.
    // The port bound, or -1.
    int bindAndListen(const std::string& host, int port);

    // Stops accepting and ends the connections that wait for their next
    // request, so that the workers can be joined at once. A reply being
    // written still goes out.
    void stopServing();

private:
    int port_ = -1;
};

} // namespace vesk::emulator
