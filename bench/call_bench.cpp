// Cost of one performed call over the loopback address: a kept-alive client
// against a fresh client per call (what a prepared request without a client
// does), with the same small reply.

#include <vesk/vesk.h>

#include <httplib.h>

#include <benchmark/benchmark.h>

#include <thread>

namespace {

class Server {
public:
    Server() {
        // Headers and body go out in two writes; without this the second
        // waits for the client's delayed acknowledgement on a kept-alive
        // connection.
        server_.set_tcp_nodelay(true);
        server_.Post("/op", [](const httplib::Request&, httplib::Response& response) {
            response.set_content(R"({"chequeId": "A-1001", "lines": []})", "application/json");
        });
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
    }
    ~Server() {
        server_.stop();
        thread_.join();
    }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/op").arg(port_); }

private:
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

vesk::PreparedRequestBase call(const Server& server) {
    vesk::PreparedRequestBase request;
    request.url = server.url();
    request.body = QVariantMap{{"chequeId", "A-1001"}, {"storeId", "S01"}};
    return request;
}

void callKeptAlive(benchmark::State& state) {
    const Server server;
    auto request = call(server);
    request.client = QSharedPointer<RestClient>::create(RestClient::Settings{});
    for (auto _ : state)
        benchmark::DoNotOptimize(request.getResponseVariant());
}
BENCHMARK(callKeptAlive)->UseRealTime();

void callWithClientPerCall(benchmark::State& state) {
    const Server server;
    const auto request = call(server);
    for (auto _ : state)
        benchmark::DoNotOptimize(request.getResponseVariant());
}
BENCHMARK(callWithClientPerCall)->UseRealTime();

} // namespace
