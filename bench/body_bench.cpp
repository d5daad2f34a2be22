// Where a call's time goes, beside what the same work costs done by hand, in
// one run: the CPU path of a discount calculation (record -> body -> JSON,
// reply JSON -> map -> record) against hand-written Qt JSON code and a
// hand-written fast-JSON writer and reader, and a performed call against raw
// libcurl posting the same bytes to the same server. 1, 20 and 200 lines.
// The run ends with the ratios that matter.

#include "Cheques.h"

#include "support/SubstituteApi.h"

#include <vesk/json/CompactJson.h>
#include <vesk/json/ReplyJson.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>
#include <curl/curl.h>
#include <httplib.h>

#include <cstdio>
#include <map>
#include <string>
#include <thread>

namespace {

using namespace vesk;

// Answers every request with the same reply, as a back office would, and
// never sends it compressed.
class ReplyServer {
public:
    explicit ReplyServer(QByteArray body)
        : body_(body.toStdString()) {
        server_.set_tcp_nodelay(true);
        server_.Post(".*", [this](const httplib::Request&, httplib::Response& response) {
            response.set_content(body_, "application/json; charset=utf-8");
        });
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running())
            std::this_thread::yield();
    }
    ~ReplyServer() {
        server_.stop();
        thread_.join();
    }
    QString base() const { return QStringLiteral("http://127.0.0.1:%1/disc/").arg(port_); }

private:
    std::string body_;
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};

// A substitute that hands back a fixed reply: the call without the network.
class Replay : public RestClient {
public:
    explicit Replay(QByteArray body)
        : RestClient(Settings()) {
        reply_.statusCode = 200;
        reply_.body = std::move(body);
    }
    void send(const http::Request& request) override { benchmark::DoNotOptimize(request.body); }
    http::Response response() override { return reply_; }

private:
    http::Response reply_;
};

QByteArray bodyOf(const disc::DiscCalcRequest& request) {
    return QJsonDocument(QJsonObject::fromVariantMap(serder::serialize(request).toMap()))
        .toJson(QJsonDocument::Compact);
}

// --- the library's steps ---------------------------------------------------

void library_recordToMap(benchmark::State& state) {
    const auto request = bench::cheque(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(serder::serialize(request));
}

// The body map to the bytes sent, as getResponseVariant() writes them.
void library_mapToJson(benchmark::State& state) {
    const QVariantMap map = serder::serialize(bench::cheque(int(state.range(0)))).toMap();
    for (auto _ : state)
        benchmark::DoNotOptimize(json::compactJson(map));
}

void qt_mapToJson(benchmark::State& state) {
    const QVariantMap map = serder::serialize(bench::cheque(int(state.range(0)))).toMap();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact));
}

// The reply's bytes to the map, as getResponseVariant() reads them.
void library_jsonToMap(benchmark::State& state) {
    const QByteArray json = bench::reply(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(json::readReply(json));
}

void library_mapToRecord(benchmark::State& state) {
    const QVariant map = QJsonDocument::fromJson(bench::reply(int(state.range(0)))).toVariant();
    for (auto _ : state)
        benchmark::DoNotOptimize(serder::deserialize<disc::DiscCalcResponse>(map));
}

// The reply's bytes to the variant map, as getResponseVariant() gives it.
void library_getResponseVariant(benchmark::State& state) {
    auto* replay = new Replay(bench::reply(int(state.range(0))));
    PreparedRequestBase call;
    call.url = QStringLiteral("http://127.0.0.1:55555/disc/discCalc");
    call.client = QSharedPointer<RestClient>(replay);
    for (auto _ : state)
        benchmark::DoNotOptimize(call.getResponseVariant());
}

void qt_fromJsonToVariantMap(benchmark::State& state) {
    const QByteArray json = bench::reply(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(json).object().toVariantMap());
}

// Prepare, write the body, read the reply into the typed record: all of a
// call but the network.
void library_cpuPath(benchmark::State& state) {
    Replay replay(bench::reply(int(state.range(0))));
    const auto api = test::apiOver<disc::Api>(replay);
    const auto request = bench::cheque(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(api->discCalc(request).response());
}

void qtJson_cpuPath(benchmark::State& state) {
    const auto request = bench::cheque(int(state.range(0)));
    const QByteArray reply = bench::reply(int(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::qtjson::write(request));
        benchmark::DoNotOptimize(bench::qtjson::read(reply));
    }
}

void fastJson_cpuPath(benchmark::State& state) {
    const auto request = bench::cheque(int(state.range(0)));
    const std::string reply = bench::reply(int(state.range(0))).toStdString();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::fastjson::write(request));
        benchmark::DoNotOptimize(bench::fastjson::read(reply));
    }
}

// --- over the loopback address -----------------------------------------------

// The one-line call, on a service client of its own pointed at the server.
void library_call(benchmark::State& state) {
    const ReplyServer server(bench::reply(int(state.range(0))));
    Config config;
    config.setValue(QStringLiteral("Vesk.disc:url"), server.base());
    Config* const previous = Singleton<Config>::instance;
    Singleton<Config>::instance = &config;
    {
        disc::Api api;
        const auto request = bench::cheque(int(state.range(0)));
        for (auto _ : state)
            benchmark::DoNotOptimize(api.discCalc(request).response());
    }
    Singleton<Config>::instance = previous;
}

size_t collect(char* data, size_t size, size_t count, void* into) {
    static_cast<std::string*>(into)->append(data, size * count);
    return size * count;
}

// The same bytes, with the same headers, on one kept-alive libcurl handle.
void rawCurl_call(benchmark::State& state) {
    const ReplyServer server(bench::reply(int(state.range(0))));
    const QByteArray body = bodyOf(bench::cheque(int(state.range(0))));
    const QByteArray url = (server.base() + QLatin1String("discCalc")).toUtf8();
    CURL* curl = curl_easy_init();
    curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
    headers = curl_slist_append(headers, "Accept-Encoding: gzip");
    headers = curl_slist_append(headers, "Expect:");
    std::string reply;
    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.constData());
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(body.size()));
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &collect);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &reply);
    curl_easy_setopt(curl, CURLOPT_PROXY, "");
    for (auto _ : state) {
        reply.clear();
        if (curl_easy_perform(curl) != CURLE_OK)
            state.SkipWithError("libcurl failed");
        benchmark::DoNotOptimize(reply);
    }
    curl_slist_free_all(headers);
    curl_easy_cleanup(curl);
}

void lines(benchmark::internal::Benchmark* b) {
    b->Arg(1)->Arg(20)->Arg(200);
}

BENCHMARK(library_recordToMap)->Apply(lines);
BENCHMARK(library_mapToJson)->Apply(lines);
BENCHMARK(qt_mapToJson)->Apply(lines);
BENCHMARK(library_jsonToMap)->Apply(lines);
BENCHMARK(library_mapToRecord)->Apply(lines);
BENCHMARK(library_getResponseVariant)->Apply(lines);
BENCHMARK(qt_fromJsonToVariantMap)->Apply(lines);
BENCHMARK(library_cpuPath)->Apply(lines);
BENCHMARK(qtJson_cpuPath)->Apply(lines);
BENCHMARK(fastJson_cpuPath)->Apply(lines);
BENCHMARK(library_call)->Apply(lines)->UseRealTime();
BENCHMARK(rawCurl_call)->Apply(lines)->UseRealTime();

// Keeps each benchmark's time per iteration for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            std::string name = run.benchmark_name();
            const std::string::size_type suffix = name.find("/real_time");
            if (suffix != std::string::npos)
                name.erase(suffix);
            times[name] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
};

void printRatios(const RatioReporter& reporter) {
    struct Ratio {
        const char* what;
        const char* mine;
        const char* reference;
        double goal;
    };
    static const Ratio ratios[] = {
        {"one-line call vs raw libcurl", "library_call/1", "rawCurl_call/1", 1.1},
        {"200-line call vs raw libcurl", "library_call/200", "rawCurl_call/200", 1.5},
        {"200-line CPU path vs Qt JSON by hand", "library_cpuPath/200", "qtJson_cpuPath/200", 0.5},
        {"200-line CPU path vs fast JSON by hand", "library_cpuPath/200", "fastJson_cpuPath/200",
         3.0},
        {"getResponseVariant vs fromJson+toVariantMap, 200 lines", "library_getResponseVariant/200",
         "qt_fromJsonToVariantMap/200", 0.5},
        {"body map to JSON vs Qt's writer, 200 lines", "library_mapToJson/200", "qt_mapToJson/200",
         0.0},
        {"reply JSON to map vs Qt's reader, 200 lines", "library_jsonToMap/200",
         "qt_fromJsonToVariantMap/200", 0.0},
    };
    std::printf("\n%-58s %10s %8s\n", "ratio (time / reference time)", "measured", "goal");
    for (const Ratio& ratio : ratios) {
        const auto mine = reporter.times.find(ratio.mine);
        const auto reference = reporter.times.find(ratio.reference);
        if (mine == reporter.times.end() || reference == reporter.times.end())
            continue; // filtered out of this run
        const double measured = mine->second / reference->second;
        if (ratio.goal > 0)
            std::printf("%-58s %9.2fx %7.2fx\n", ratio.what, measured, ratio.goal);
        else
            std::printf("%-58s %9.2fx %8s\n", ratio.what, measured, "");
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatios(reporter);
    benchmark::Shutdown();
    return 0;
}
