#pragma once

#include "Fault.h"

#include <QJsonObject>
#include <QList>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <random>
#include <vector>

namespace vesk::emulator {

// The fault rules in force, shared by the HTTP workers and the admin API.
// Thread-safe.
//
// Each call of an operation goes through the rules in the order they were
// added; the first that fires decides the call's fault. A rule with
// conditions ("where") considers only calls whose body meets them all. A
// "times" rule fires for the next N such calls, then stays listed, spent. A
// "fraction" rule draws for every such call from its own PRNG
// (64-bit Mersenne Twister seeded with the rule's seed), so the same calls in
// the same order fire alike on every run.
class FaultRules {
public:
    struct Entry {
        FaultRule rule;
        qint64 fired = 0;
        qint64 remaining = -1; // calls left of a "times" rule; -1 for the others
    };

    void add(const FaultRule& rule);
    // A delay rule for the calls that no rule hits; it is not listed, counted
    // or cleared, and draws from its own generator.
    void setLatency(const std::optional<FaultRule>& latency);
    int clear(); // how many rules there were
    QList<Entry> list() const;
    int active() const; // the rules that are not spent

    // The fault for this call of `operation` with this request body, if a
    // rule fires.
    std::optional<Fault> take(const QString& operation, const QByteArray& body = QByteArray());
    // The same, for a body that its caller has parsed already (an object; empty if it is not one).
    std::optional<Fault> take(const QString& operation, const QJsonObject& body);

    // Waits, at most `timeout`, until the rules have fired `count` times in all.
    bool waitFired(qint64 count, std::chrono::milliseconds timeout) const;

    // Whether a draw from a rule's generator fires for `fraction`: the top 53
    // bits of the draw, as a number in [0, 1), below `fraction`.
    static bool fires(std::mt19937_64& generator, double fraction);

private:
    struct Live {
        Entry entry;
        std::mt19937_64 generator;
    };

    mutable std::mutex mutex_;
    mutable std::condition_variable firedChanged_;
    std::vector<Live> rules_;
    std::optional<Live> latency_;
    qint64 firedInAll_ = 0;
};

} // namespace vesk::emulator
