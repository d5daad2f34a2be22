#pragma once

#include "../Fault.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <atomic>

namespace vesk::emulator {

// What the emulator counts for /_emulator/metrics, in the Prometheus text
// format. Recording is a few relaxed atomic additions, no lock, so that a
// load test pays nothing for it.
class Metrics {
public:
    // The latency buckets' upper bounds, in seconds.
    static constexpr std::array<double, 13> buckets{0.001, 0.0025, 0.005, 0.01, 0.025, 0.05, 0.1,
                                                    0.25,  0.5,    1,     2.5,  5,     10};

    // A request of an operation (a name of operationNames()): its status
    // (0: no reply) and how long it took.
    void recordRequest(const QString& operation, int status, qint64 microseconds);
    void recordFault(Fault::Kind kind);
    void recordAdminRequest();

    // What the metrics read from elsewhere when they are asked for.
    struct Gauges {
        qint64 journalSize = 0;
        qint64 journalBytes = 0;
        qint64 journalDropped = 0;
        int faultsActive = 0;
        qint64 databaseJobs = 0;
        double databaseSeconds = 0;
        double startTimeSeconds = 0; // since the epoch
    };
    // The exposition, version 0.0.4.
    QByteArray exposition(const Gauges& gauges) const;

    static constexpr const char* contentType = "text/plain; version=0.0.4; charset=utf-8";

private:
    static constexpr int operations = 16;
    static constexpr int statusClasses = 6; // none, 1xx ... 5xx
    static constexpr int faultKinds = 9;
    // A new kind needs its place here and in Metrics.cpp's list, or it goes uncounted.
    static_assert(int(Fault::Kind::Stall) + 1 == faultKinds, "a fault kind the metrics miss");

    struct Operation {
        std::array<std::atomic<qint64>, statusClasses> byStatus{};
        std::array<std::atomic<qint64>, buckets.size() + 1> byBucket{}; // the last: above all
        std::atomic<qint64> microseconds{0};
    };
    std::array<Operation, operations> operations_{};
    std::array<std::atomic<qint64>, faultKinds> faults_{};
    std::atomic<qint64> admin_{0};
};

} // namespace vesk::emulator
