// Faults aimed by the request's content: tests that share one emulator, each
// breaking the calls of its own cheques, never meet each other's faults.

#include "HttpHelpers.h"

#include <QJsonArray>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace vesk::emulator::test {
namespace {

using AimedFaults = RunningEmulator;

constexpr int callsPerTill = 40;

// What one till's commits met: its own fault, the other's, or none.
struct Met {
    int own = 0;
    int others = 0;
    int none = 0;
};

// A till committing cheques `prefix`-1 ... `prefix`-N; a fault with code
// `ownCode` is its own, one with `otherCode` is the other till's.
Met commitCheques(quint16 port, const std::string& prefix, int ownCode, int otherCode) {
    Met met;
    for (int i = 1; i <= callsPerTill; ++i) {
        const Reply reply = post(port, loyaltyPath("commitCheque"),
                                 R"({"dataId": ")" + prefix + '-' + std::to_string(i) +
                                     R"(", "guid": "G", "token": "none"})");
        const int code = reply.body.value("code").toInt();
        if (reply.status == 503 && code == ownCode)
            ++met.own;
        else if (reply.status == 503 && code == otherCode)
            ++met.others;
        else
            ++met.none;
    }
    return met;
}

TEST_F(AimedFaults, TwoTestsSharingAnEmulatorEachMeetOnlyTheFaultsAimedAtTheirCheques) {
    const quint16 port = emulator->port();
    // Each test adds its own rule through the admin API, aimed at its cheques;
    // A's breaks half of its commits (a "times" rule counts only its cheques).
    ASSERT_EQ(post(port, "/_emulator/faults",
                   R"({"operation": "commitCheque", "fault": "error", "status": 503, "code": 71,
                       "msg": "A's fault", "times": 20, "where": ["$.dataId ~= \"^A-\""]})")
                  .status,
              201);
    ASSERT_EQ(
        post(
            port, "/_emulator/faults",
            R"({"spec": "commitCheque:error=503,code=72,msg=B's fault;where=$.dataId ~= \"^B-\""})")
            .status,
        201);

    Met a;
    Met b;
    std::thread tillA([&] { a = commitCheques(port, "A", 71, 72); });
    std::thread tillB([&] { b = commitCheques(port, "B", 72, 71); });
    tillA.join();
    tillB.join();

    EXPECT_EQ(a.own, 20);
    EXPECT_EQ(a.others, 0);
    EXPECT_EQ(a.none, callsPerTill - 20);
    EXPECT_EQ(b.own, callsPerTill);
    EXPECT_EQ(b.others, 0);
    EXPECT_EQ(b.none, 0);

    const QJsonArray rules = send(port, "GET", "/_emulator/faults").body.value("faults").toArray();
    ASSERT_EQ(rules.size(), 2);
    EXPECT_EQ(rules[0].toObject().value("fired").toInt(), 20);
    EXPECT_EQ(rules[0].toObject().value("remaining").toInt(), 0);
    EXPECT_EQ(rules[1].toObject().value("fired").toInt(), callsPerTill);
    EXPECT_EQ(rules[1].toObject().value("where").toArray(), (QJsonArray{R"($.dataId ~= "^B-")"}));

    // A third cheque meets neither; the journal tells each fault's calls apart.
    const Reply third = post(port, loyaltyPath("commitCheque"),
                             R"({"dataId": "C-1", "guid": "G", "token": "none"})");
    EXPECT_NE(third.status, 503);
    const Reply verified = post(port, "/_emulator/verify",
                                R"({"operation": "commitCheque", "where": ["$.dataId ~= \"^B-\""],
                                    "exactly": 40})");
    EXPECT_EQ(verified.status, 200) << verified.raw;
}

TEST_F(AimedFaults, AResetAimedAtOneBarcodeLeavesTheOthersServed) {
    const quint16 port = emulator->port();
    ASSERT_EQ(post(port, "/_emulator/faults",
                   R"({"spec": "itemInfo:reset;where=$.barcode == \"4601234000024\""})")
                  .status,
              201);
    EXPECT_EQ(post(port, salesPath("itemInfo"), R"({"barcode": "4601234000024"})").status, 0);
    const Reply served = post(port, salesPath("itemInfo"), R"({"barcode": "4601234000017"})");
    EXPECT_EQ(served.status, 200);
    EXPECT_EQ(served.body.value("barcode").toString(), "4601234000017");
}

} // namespace
} // namespace vesk::emulator::test
