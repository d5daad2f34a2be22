#pragma once

#include <QByteArray>

#include <string>

namespace vesk::emulator {

class StopSignal;

// The connection that an HTTP handler is serving, for the faults that the
// HTTP library cannot play: a reset, a connection closed without a reply or
// in the middle of one, a wait that ends when the client goes.
//
// cpp-httplib does not hand its handlers the socket, so find() looks for it
// among the process's descriptors: the one TCP socket whose own port and
// peer are the request's (a TCP connection's addresses are unique). The
// descriptor stays the library's: to end the connection, its number is made
// to refer to /dev/null instead (dup2), which closes the socket at once and
// leaves the library a descriptor that it can fail to write to and close as
// usual, with no chance of a new connection taking the number meanwhile.
class ServedConnection {
public:
    // The connection from `peerAddress`:`peerPort` to local port
    // `localPort`; invalid if there is none.
    static ServedConnection find(int localPort, const std::string& peerAddress, int peerPort);

    // The same, for the request that this thread serves: the worker keeps
    // what it found for the next requests of the connection.
    static ServedConnection ofThisWorker(int localPort, const std::string& peerAddress,
                                         int peerPort);

    // Shuts down the reading side of every connection to local port
    // `localPort`: a worker waiting for a next request sees the end of input
    // and closes its connection, while a reply being written still goes out.
    // For a server that has closed its listening socket. Returns how many.
    static int endReadingAll(int localPort);

    bool isValid() const { return fd_ >= 0; }

    // Whether the client has closed its side or reset the connection.
    bool clientGone() const;

    // Writes all of `bytes` (never raising SIGPIPE); false if the client went.
    bool send(const QByteArray& bytes) const;

    enum class Waited { TimedOut, ClientGone, Stopped };
    // Waits `ms` for nothing, unless the client closes its side or `stop` is raised first.
    Waited waitIdle(int ms, const StopSignal& stop) const;

    // Closes the connection (FIN after what was sent).
    void close();
    // Resets it: SO_LINGER with a zero timeout, then the close sends RST.
    void reset();

private:
    explicit ServedConnection(int fd)
        : fd_(fd) {}
    void release();

    int fd_ = -1;
};

} // namespace vesk::emulator
