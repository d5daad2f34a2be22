#pragma once

#include <QString>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vesk::test {

// An HTTP/1.1 server on 127.0.0.1 that misbehaves on purpose, byte for byte:
// for the faults a back office or the network between can show a till that an
// HTTP server library will not produce.
//
// Connections are kept alive and served one thread each. For every request
// (headers and the body that Content-Length announces) the script says what
// to answer: bytes to write, then what to do with the connection. Every wait
// is bounded, and the destructor ends all serving at once.
class FaultServer {
public:
    struct Request {
        std::string method;
        std::string target; // as on the request line
        std::string body;
        std::map<std::string, std::string> headers; // names in lower case
        int connection = 0;                         // 0 for the first accepted
        int index = 0;                              // of the request on its connection
    };

    struct Answer {
        enum class Then {
            KeepAlive, // read the next request
            Close,     // close the connection (FIN)
            Reset,     // reset it (RST)
            Stall,     // say nothing more until the client goes
        };
        std::string bytes; // written at once
        Then then = Then::KeepAlive;
        // Written after the test opens the gate, before `then`.
        std::string afterGate;
        // Close the connection once the gate opens (after afterGate).
        bool closeAfterGate = false;
        // The reply is written in pieces of this many bytes, pauseMs apart.
        std::size_t dripBytes = 0;
        int pauseMs = 0;
    };

    using Script = std::function<Answer(const Request&)>;

    explicit FaultServer(Script script);
    ~FaultServer();
    FaultServer(const FaultServer&) = delete;
    FaultServer& operator=(const FaultServer&) = delete;

    int port() const { return port_; }
    QString url(const QString& path = QStringLiteral("/")) const;

    int connections() const { return connections_.load(); } // accepted so far
    int requests() const { return requests_.load(); }       // read so far
    std::vector<Request> received() const;

    // Lets the answers that wait for the gate go on.
    void openGate();
    // Waits (at most `ms`) until something that waited for the gate is done.
    bool waitAfterGate(int ms = 5000);

    // The healthy answer: 200 with {"echo": <the request's body>}.
    static Answer echo(const Request& request);
    // A whole reply with a Content-Length and the given extra header lines.
    static std::string reply(int status, const std::string& body,
                             const std::string& extraHeaders = std::string());
    // The data as one gzip member.
    static std::string gzip(const std::string& data);

private:
    void acceptLoop();
    void serve(int fd, int connection);
    bool readRequest(int fd, std::string& buffer, Request& request);
    bool writeAll(int fd, const std::string& bytes, std::size_t piece, int pauseMs);
    bool waitReadable(int fd, int ms) const;
    bool waitGate();

    Script script_;
    int listener_ = -1;
    int wakeRead_ = -1;
    int wakeWrite_ = -1;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    std::atomic<int> connections_{0};
    std::atomic<int> requests_{0};
    std::thread acceptor_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool gateOpen_ = false;
    int afterGateDone_ = 0;
    std::vector<Request> received_;
    std::vector<std::thread> servers_;
};

} // namespace vesk::test
