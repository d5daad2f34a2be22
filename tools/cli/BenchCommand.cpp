#include "BenchCommand.h"

#include "BenchScenario.h"
#include "Commands.h"
#include "ExitCodes.h"
#include "Messages.h"
#include "Operations.h"
#include <requestcheck/Suggestion.h>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include <unistd.h>

namespace vesk::cli {
namespace {

using Clock = std::chrono::steady_clock;

// What the workers gather, each in its own, merged at the end.
struct Tally {
    std::vector<qint64> microseconds;   // of every call
    std::map<QString, qint64> failures; // by kind
    qint64 sales = 0;
    qint64 failedSales = 0;

    void add(const BenchCall& call) {
        microseconds.push_back(call.microseconds);
        if (call.failed())
            ++failures[call.kind()];
    }
    void merge(const Tally& other) {
        microseconds.insert(microseconds.end(), other.microseconds.begin(),
                            other.microseconds.end());
        for (const auto& [kind, count] : other.failures)
            failures[kind] += count;
        sales += other.sales;
        failedSales += other.failedSales;
    }
};

// The value below which `fraction` of the sorted values lie (nearest rank).
double percentileMs(const std::vector<qint64>& sorted, double fraction) {
    if (sorted.empty())
        return 0;
    const std::size_t rank = std::size_t(std::ceil(fraction * double(sorted.size())));
    return double(sorted[std::clamp<std::size_t>(rank, 1, sorted.size()) - 1]) / 1000.0;
}

QString milliseconds(double ms) {
    return QString::number(ms, 'f', ms < 10 ? 2 : 1);
}

struct Run {
    const Operation* operation = nullptr; // null: the whole-sale scenario
    QVariantMap request;
    int concurrency = 4;
    qint64 count = 0; // calls, or sales of the scenario; 0: until the duration
    double durationS = 0;
};

} // namespace

int benchCommand(const CommandLine& line, QTextStream& out, QTextStream& err, QTextStream& in) {
    Run run;
    run.concurrency = line.concurrency;
    run.count = line.count;
    run.durationS = line.count > 0 ? line.durationS : (line.durationS > 0 ? line.durationS : 10);
    if (line.scenario.isEmpty()) {
        if (line.arguments.size() < 2) {
            return usageError(
                err, QStringLiteral("bench needs SERVICE OPERATION [REQUEST], or --scenario sale"),
                line.command);
        }
        const std::optional<OperationRequest> read = readOperationRequest(line, in, err);
        if (!read)
            return exitCode::usage;
        for (const check::RequestProblem& problem : read->problems)
            warning(err) << problem.text() << '\n';
        run.operation = read->operation;
        run.request = read->request;
    } else if (line.scenario != QLatin1String("sale")) {
        return usageError(
            err,
            QStringLiteral("unknown scenario \"%1\" (the one there is: sale)%2")
                .arg(line.scenario, check::didYouMean(line.scenario, {QStringLiteral("sale")})),
            line.command);
    } else if (!line.arguments.isEmpty()) {
        return usageError(err, QStringLiteral("bench --scenario sale takes no operation"),
                          line.command);
    }
    err.flush();

    // Cheques of this run are new to the back office whatever ran before.
    const QString runId = QString::number(QDateTime::currentMSecsSinceEpoch(), 36);
    const RestClient::Settings settings = RestClient::Settings::fromConfig();
    std::atomic<qint64> started{0};
    std::atomic<qint64> callsDone{0};
    std::atomic<qint64> failed{0};
    const Clock::time_point begin = Clock::now();
    const Clock::time_point deadline =
        run.durationS > 0 ? begin + std::chrono::milliseconds(qint64(run.durationS * 1000))
                          : Clock::time_point::max();

    std::vector<Tally> tallies(std::size_t(run.concurrency));
    std::vector<std::thread> workers;
    for (int w = 0; w < run.concurrency; ++w) {
        workers.emplace_back([&, w] {
            // Each worker is a till of its own: its own client and connection.
            const auto client = QSharedPointer<RecordingClient>::create(settings);
            Tally& tally = tallies[std::size_t(w)];
            const BenchRecorder record = [&](const BenchCall& call) {
                tally.add(call);
                ++callsDone;
                if (call.failed())
                    ++failed;
            };
            while (Clock::now() < deadline) {
                const qint64 index = started++;
                if (run.count > 0 && index >= run.count)
                    break;
                if (run.operation) {
                    record(timeCall([&] { run.operation->perform(run.request, client); }));
                } else {
                    const QString cheque =
                        QStringLiteral("B-%1-%2-%3").arg(runId).arg(w).arg(index);
                    ++tally.sales;
                    if (!runWholeSaleCalls(client, cheque, record))
                        ++tally.failedSales;
                }
            }
        });
    }

    // A live progress line, on a terminal only.
    std::mutex progressLock;
    std::condition_variable progressWake;
    bool finished = false;
    std::thread progress;
    if (::isatty(STDERR_FILENO)) {
        progress = std::thread([&] {
            std::unique_lock<std::mutex> lock(progressLock);
            while (
                !progressWake.wait_for(lock, std::chrono::seconds(1), [&] { return finished; })) {
                const double s = std::chrono::duration<double>(Clock::now() - begin).count();
                std::fprintf(stderr, "\r%6.1f s  %8lld calls  %8.0f/s  %lld failed ", s,
                             static_cast<long long>(callsDone.load()), double(callsDone) / s,
                             static_cast<long long>(failed.load()));
                std::fflush(stderr);
            }
        });
    }
    for (std::thread& worker : workers)
        worker.join();
    {
        const std::lock_guard<std::mutex> lock(progressLock);
        finished = true;
    }
    progressWake.notify_all();
    if (progress.joinable()) {
        progress.join();
        std::fprintf(stderr, "\n");
    }
    const double elapsedS = std::chrono::duration<double>(Clock::now() - begin).count();

    Tally all;
    for (const Tally& tally : tallies)
        all.merge(tally);
    std::sort(all.microseconds.begin(), all.microseconds.end());
    const qint64 calls = qint64(all.microseconds.size());
    qint64 failures = 0;
    for (const auto& [kind, count] : all.failures)
        failures += count;
    const double p50 = percentileMs(all.microseconds, 0.50);
    const double p90 = percentileMs(all.microseconds, 0.90);
    const double p99 = percentileMs(all.microseconds, 0.99);
    const double max = percentileMs(all.microseconds, 1.0);
    const QString what = run.operation
                             ? run.operation->service + QLatin1Char(' ') + run.operation->name
                             : QStringLiteral("scenario sale");

    if (line.json) {
        QJsonObject failureKinds;
        for (const auto& [kind, count] : all.failures)
            failureKinds.insert(kind, count);
        QJsonObject report{
            {QStringLiteral("what"), what},
            {QStringLiteral("concurrency"), run.concurrency},
            {QStringLiteral("seconds"), elapsedS},
            {QStringLiteral("calls"), calls},
            {QStringLiteral("callsPerSecond"), elapsedS > 0 ? double(calls) / elapsedS : 0.0},
            {QStringLiteral("latencyMs"), QJsonObject{{QStringLiteral("p50"), p50},
                                                      {QStringLiteral("p90"), p90},
                                                      {QStringLiteral("p99"), p99},
                                                      {QStringLiteral("max"), max}}},
            {QStringLiteral("failures"), failureKinds},
        };
        if (!run.operation) {
            report.insert(QStringLiteral("sales"), all.sales);
            report.insert(QStringLiteral("failedSales"), all.failedSales);
            report.insert(QStringLiteral("salesPerSecond"),
                          elapsedS > 0 ? double(all.sales) / elapsedS : 0.0);
        }
        out << QString::fromUtf8(QJsonDocument(report).toJson(QJsonDocument::Indented));
    } else {
        out << what << ", " << run.concurrency << (run.concurrency == 1 ? " till" : " tills")
            << ", " << QString::number(elapsedS, 'f', 1) << " s\n";
        out << "  calls       " << calls << " ("
            << QString::number(elapsedS > 0 ? double(calls) / elapsedS : 0, 'f', 1) << "/s)\n";
        if (!run.operation)
            out << "  sales       " << all.sales << " ("
                << QString::number(elapsedS > 0 ? double(all.sales) / elapsedS : 0, 'f', 1)
                << "/s), " << all.failedSales << " not completed\n";
        out << "  latency ms  p50 " << milliseconds(p50) << "  p90 " << milliseconds(p90)
            << "  p99 " << milliseconds(p99) << "  max " << milliseconds(max) << '\n';
        out << "  failures    " << failures << '\n';
        for (const auto& [kind, count] : all.failures)
            out << "    " << kind << ": " << count << '\n';
    }
    return failures == 0 ? exitCode::success : exitCode::failure;
}

} // namespace vesk::cli
