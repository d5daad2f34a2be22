// A store's tills against one emulator: many of them connecting at once, and
// each keeping its connection for as long as it likes.

#include "HttpHelpers.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace vesk::emulator::test {
namespace {

using Clock = std::chrono::steady_clock;

const char* const itemInfoBody = R"({"sectionId": "HALL", "barcode": "4601234000017"})";

// Lets a group of threads go on together, again and again.
class Barrier {
public:
    explicit Barrier(int count)
        : count_(count) {}

    void arriveAndWait() {
        std::unique_lock<std::mutex> lock(mutex_);
        const long long round = round_;
        if (++waiting_ == count_) {
            waiting_ = 0;
            ++round_;
            released_.notify_all();
            return;
        }
        released_.wait(lock, [&] { return round_ != round; });
    }

private:
    std::mutex mutex_;
    std::condition_variable released_;
    const int count_;
    int waiting_ = 0;
    long long round_ = 0;
};

// A till's connection: kept alive between calls, counting the TCP connections
// that it had to open.
struct Till {
    explicit Till(quint16 port)
        : client("127.0.0.1", port) {
        client.set_keep_alive(true);
        client.set_tcp_nodelay(true);
        client.set_connection_timeout(5, 0);
        client.set_read_timeout(5, 0);
        client.set_socket_options([this](socket_t) { ++connectionsOpened; });
    }

    int itemInfo() {
        const httplib::Result result =
            client.Post(salesPath("itemInfo"), itemInfoBody, "application/json");
        return result ? result->status : 0;
    }

    httplib::Client client;
    int connectionsOpened = 0;
};

using ConnectionBurstTest = RunningEmulator;

TEST_F(ConnectionBurstTest, SixtyFourTillsConnectingAtOnceAreEachAnsweredWithin200Ms) {
    constexpr int tills = 64;
    constexpr int rounds = 5;
    // The process's first call pays for set-ups made once (Qt's, the C
    // library's, the database's first statements): not what is measured here.
    ASSERT_EQ(Till(emulator->port()).itemInfo(), 200);
    Barrier barrier(tills);
    // Per round and till: the status and how long the connection and the call took.
    std::vector<std::vector<int>> statuses(rounds, std::vector<int>(tills));
    std::vector<std::vector<long long>> elapsedMs(rounds, std::vector<long long>(tills));
    std::vector<std::thread> threads;
    for (int t = 0; t < tills; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < rounds; ++round) {
                Till till(emulator->port());
                barrier.arriveAndWait(); // all at once
                const Clock::time_point start = Clock::now();
                statuses[round][t] = till.itemInfo();
                elapsedMs[round][t] =
                    std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start)
                        .count();
                // Every till holds its connection until the whole round is served.
                barrier.arriveAndWait();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (int round = 0; round < rounds; ++round) {
        for (int t = 0; t < tills; ++t) {
            EXPECT_EQ(statuses[round][t], 200) << "round " << round << ", till " << t;
            EXPECT_LT(elapsedMs[round][t], 200) << "round " << round << ", till " << t;
        }
    }
}

TEST_F(ConnectionBurstTest, OneConnectionServesThousandsOfRequestsWithoutBeingClosed) {
    constexpr int requests = 2500;
    Till till(emulator->port());
    int answered = 0;
    for (int i = 0; i < requests; ++i)
        answered += till.itemInfo() == 200 ? 1 : 0;
    EXPECT_EQ(answered, requests);
    EXPECT_EQ(till.connectionsOpened, 1);
}

TEST_F(ConnectionBurstTest, StopEndsIdleKeptAliveConnectionsAtOnce) {
    Till idle(emulator->port());
    ASSERT_EQ(idle.itemInfo(), 200); // its connection now waits for the next call
    const Clock::time_point start = Clock::now();
    emulator->stop();
    EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count(),
              500);
}

} // namespace
} // namespace vesk::emulator::test
