// Calls from several threads at once, as a till makes them from its UI thread
// and its background work: through one service, through services that share
// one substitute client, and the services' first use itself.

#include "support/ConfigScope.h"
#include "support/LoopbackServer.h"
#include "support/SubstituteApi.h"

#include <vesk/vesk.h>

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace vesk {
namespace {

constexpr int threadCount = 8;
constexpr int callsPerThread = 40;

// Runs `body(thread)` on `count` threads that start together.
template <class Body>
void onThreads(int count, Body body) {
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < count; ++t) {
        threads.emplace_back([&, t] {
            ++ready;
            while (ready.load() < count)
                std::this_thread::yield();
            body(t);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

QString barcodeOf(int thread, int call) {
    return QStringLiteral("46%1%2")
        .arg(thread, 3, 10, QLatin1Char('0'))
        .arg(call, 6, 10, QLatin1Char('0'));
}

// A substitute as a host might write one: one exchange at a time, with no
// lock of its own. It answers each request with its own body, and notes the
// logger it had when each request went out.
class EchoClient : public RestClient {
public:
    EchoClient()
        : RestClient(Settings()) {}

    void send(const http::Request& request) override {
        last_ = request;
        std::this_thread::yield(); // widens the window an unguarded caller would race in
        const std::lock_guard<std::mutex> lock(seenLock);
        seen.emplace_back(request.url.path(), logger() ? logger()->name() : QString());
    }
    http::Response response() override {
        http::Response response;
        response.statusCode = 200;
        response.body = last_.body;
        return response;
    }

    std::mutex seenLock;
    std::vector<std::pair<QString, QString>> seen; // path, logger name

private:
    http::Request last_;
};

TEST(ConcurrentCalls, OneServiceFromManyThreadsGivesEachCallerItsOwnReply) {
    test::LoopbackServer server;
    server.onPost("/sales/itemInfo", [](const httplib::Request& request, httplib::Response& reply) {
        const QJsonObject asked =
            QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object();
        const QJsonObject item{{QStringLiteral("barcode"), asked.value(QLatin1String("barcode"))},
                               {QStringLiteral("name"), QStringLiteral("Item")}};
        reply.set_content(QJsonDocument(item).toJson(QJsonDocument::Compact).toStdString(),
                          "application/json");
    });
    test::ConfigScope config({{"Vesk.sales:url", server.url("/sales/")}});

    std::atomic<int> wrong{0};
    onThreads(threadCount, [&](int t) {
        for (int c = 0; c < callsPerThread; ++c) {
            sales::ItemInfoRequest request;
            request.barcode = barcodeOf(t, c);
            const auto& item = sales::Api::getInstance()->itemInfo(request).response();
            if (item.barcode != request.barcode || item.name != QLatin1String("Item"))
                ++wrong;
        }
    });

    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(server.requests().size(), std::size_t(threadCount * callsPerThread));
}

TEST(ConcurrentCalls, ServicesSharingOneSubstituteEachGetTheirOwnRepliesAndLeaveItsLogger) {
    test::ConfigScope config;
    EchoClient substitute;
    const auto disc = test::apiOver<disc::Api>(substitute);
    const auto loyalty = test::apiOver<loyalty::Api>(substitute);
    const auto sales = test::apiOver<sales::Api>(substitute);

    std::atomic<int> wrong{0};
    onThreads(threadCount, [&](int t) {
        for (int c = 0; c < callsPerThread; ++c) {
            const QString id = barcodeOf(t, c);
            switch ((t + c) % 3) {
            case 0: {
                disc::DiscCalcRequest request;
                request.chequeId = id;
                wrong += disc->discCalc(request).response().chequeId != id;
                break;
            }
            case 1: {
                loyalty::ProcessIdRequest request;
                request.discCardId = id;
                wrong += loyalty->processId(request).response().discCardId != id;
                break;
            }
            default: {
                sales::ItemInfoRequest request;
                request.barcode = id;
                wrong += sales->itemInfo(request).response().barcode != id;
                break;
            }
            }
        }
    });

    EXPECT_EQ(wrong.load(), 0);
    ASSERT_EQ(substitute.seen.size(), std::size_t(threadCount * callsPerThread));
    std::set<std::pair<std::string, std::string>> services;
    for (const auto& [path, logger] : substitute.seen)
        services.emplace(path.section(QLatin1Char('/'), 0, -2).toStdString(), logger.toStdString());
    // The logger that the service made last gave it, for every call.
    const std::set<std::pair<std::string, std::string>> expected{
        {"/api/axapta/ExchangeData_Disc", "vesksales"},
        {"/api/axapta/ExchangeData_Loyalty", "vesksales"},
        {"/api/axapta/ExchangeData_Sales", "vesksales"}};
    EXPECT_EQ(services, expected);
}

TEST(ConcurrentCalls, PreparedRequestsCopiedAcrossThreadsShareOneClientSafely) {
    test::ConfigScope config;
    EchoClient substitute;
    const auto sales = test::apiOver<sales::Api>(substitute);
    sales::ItemInfoRequest request;
    request.barcode = QStringLiteral("4601234000017");
    const PreparedRequest<sales::ItemInfoResponse> prepared = sales->itemInfo(request);

    std::atomic<int> wrong{0};
    onThreads(threadCount, [&](int) {
        for (int c = 0; c < callsPerThread; ++c) {
            PreparedRequest<sales::ItemInfoResponse> copy = prepared;
            wrong += copy.response().barcode != request.barcode;
        }
    });

    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(substitute.seen.size(), std::size_t(threadCount * callsPerThread));
}

TEST(ConcurrentCalls, FirstUseOnManyThreadsMakesOneInstance) {
    test::ConfigScope config;
    ASSERT_EQ(Singleton<loyalty::Api>::instance, nullptr);
    std::vector<loyalty::Api*> seen(threadCount);
    onThreads(threadCount, [&](int t) { seen[std::size_t(t)] = loyalty::Api::getInstance(); });

    EXPECT_EQ(std::set<loyalty::Api*>(seen.begin(), seen.end()).size(), 1u);
    EXPECT_EQ(seen.front(), Singleton<loyalty::Api>::instance);
}

} // namespace
} // namespace vesk
