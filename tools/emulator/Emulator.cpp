#include "Emulator.h"

#include "AdminApi.h"
#include "DiscountService.h"
#include "FaultRules.h"
#include "HttpFront.h"
#include "Log.h"
#include "LoyaltyService.h"
#include "RepeatGuard.h"
#include "SalesService.h"
#include "SeedData.h"
#include "Store.h"
#include "journal/Journal.h"
#include "metrics/Metrics.h"

#include <QDateTime>
#include <QElapsedTimer>

namespace vesk::emulator {

// What a started emulator holds; destroyed in reverse order, so the server
// stops before the services and the store go.
struct Emulator::Running {
    Store store;
    SeedData seed;
    std::unique_ptr<SalesService> sales;
    std::unique_ptr<DiscountService> discount;
    std::unique_ptr<LoyaltyService> loyalty;
    std::unique_ptr<RepeatGuard> repeats;
    Metrics metrics;
    std::unique_ptr<AdminApi> admin;
    std::unique_ptr<HttpFront> front;
    QElapsedTimer uptime;
    qint64 startedMs = QDateTime::currentMSecsSinceEpoch();
};

Emulator::Emulator(Options options)
    : options_(std::move(options))
    , faults_(std::make_unique<FaultRules>())
    , journal_(std::make_unique<Journal>(
          Journal::Limits{options_.journalEntries, options_.journalBytes})) {}

Emulator::~Emulator() {
    stop();
}

bool Emulator::start(QString* error) {
    const auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        running_.reset();
        return false;
    };
    if (running_)
        return fail(QStringLiteral("the emulator is running already"));

    QString why;
    const std::optional<QByteArray> seedText = SeedData::read(options_.seedFile, &why);
    if (!seedText)
        return fail(QStringLiteral("Bad seed: %1").arg(why));
    const std::optional<SeedData> seed = SeedData::parse(*seedText, &why);
    if (!seed)
        return fail(
            QStringLiteral("Bad seed %1: %2")
                .arg(options_.seedFile.isEmpty() ? QStringLiteral("(shipped)") : options_.seedFile,
                     why));

    running_ = std::make_unique<Running>();
    Store& store = running_->store;
    if (!store.open(options_.databaseFile, &why))
        return fail(why);
    try {
        // A database with a seed keeps its state and its rules; only an empty one takes the seed.
        const QByteArray kept = store.transaction([&] {
            if (!store.hasSeed()) {
                store.loadSeed(*seed, *seedText);
                return *seedText;
            }
            return store.seedText();
        });
        if (!options_.seedFile.isEmpty() && kept != *seedText)
            qCWarning(lcEmulator).noquote()
                << QStringLiteral("--seed %1 is ignored: database %2 keeps the seed it was made "
                                  "with, and its state. To start from %1, give a new --db file "
                                  "(or none).")
                       .arg(options_.seedFile, options_.databaseFile);
        const std::optional<SeedData> rules = SeedData::parse(kept, &why);
        if (!rules)
            return fail(QStringLiteral("The seed kept in database %1 is bad: %2")
                            .arg(options_.databaseFile, why));
        running_->seed = *rules;
    } catch (const StoreError& e) {
        return fail(QStringLiteral("Cannot load the seed into the database: %1")
                        .arg(QString::fromUtf8(e.what())));
    }

    running_->sales = std::make_unique<SalesService>(store, running_->seed);
    running_->discount = std::make_unique<DiscountService>(store, running_->seed);
    running_->loyalty = std::make_unique<LoyaltyService>(store, running_->seed);
    running_->repeats = std::make_unique<RepeatGuard>(store);
    faults_->clear();
    for (const FaultRule& rule : options_.faults)
        faults_->add(rule);
    faults_->setLatency(options_.latency);
    Running* running = running_.get();
    journal_->clear();
    running_->admin = std::make_unique<AdminApi>(
        *faults_, *journal_,
        [this, running] {
            return AdminApi::Health{running->uptime.elapsed(),
                                    running->front ? running->front->requestsServed() : 0,
                                    options_.strictRequests};
        },
        [this](QString* error) { return reset(error); },
        [this, running] {
            const Journal::Totals journal = journal_->totals();
            Metrics::Gauges gauges;
            gauges.journalSize = journal.size;
            gauges.journalBytes = journal.bytes;
            gauges.journalDropped = journal.dropped;
            gauges.faultsActive = faults_->active();
            gauges.databaseJobs = running->store.databaseThread().jobsRun();
            gauges.databaseSeconds =
                double(running->store.databaseThread().busyNanoseconds()) / 1e9;
            gauges.startTimeSeconds = double(running->startedMs) / 1000.0;
            return running->metrics.exposition(gauges);
        });
    running_->front = std::make_unique<HttpFront>(
        *running_->sales, *running_->discount, *running_->loyalty, faults_.get(),
        running_->admin.get(), running_->repeats.get(), journal_.get(), &running_->metrics);
    running_->front->setStrictRequests(options_.strictRequests);
    running_->uptime.start();
    if (!running_->front->start(options_.host, options_.port, &why))
        return fail(why);
    return true;
}

void Emulator::stop() {
    // No request in flight past this point: the admin API's callbacks, which
    // reach into running_, are over before any of it goes.
    if (running_ && running_->front)
        running_->front->stop();
    running_.reset();
}

bool Emulator::reset(QString* error) {
    if (!running_) {
        if (error)
            *error = QStringLiteral("the emulator is not running");
        return false;
    }
    Store& store = running_->store;
    const SeedData& seed = running_->seed;
    try {
        // One transaction on the database thread: operations in flight
        // finish before it or start after it, never see it half done.
        store.transaction([&] {
            const QByteArray text = store.seedText();
            store.clear();
            store.loadSeed(seed, text);
        });
    } catch (const StoreError& e) {
        if (error)
            *error = QString::fromUtf8(e.what());
        return false;
    }
    journal_->clear();
    return true;
}

FaultRules& Emulator::faults() {
    return *faults_;
}

Journal& Emulator::journal() {
    return *journal_;
}

quint16 Emulator::port() const {
    return running_ && running_->front ? running_->front->port() : 0;
}

QString Emulator::baseUrl() const {
    const QString host = options_.host.contains(QLatin1Char(':'))
                             ? QStringLiteral("[%1]").arg(options_.host)
                             : options_.host;
    return QStringLiteral("http://%1:%2").arg(host).arg(port());
}

QString Emulator::serviceUrl(const QString& service) const {
    const QString path = HttpFront::servicePath(service);
    return path.isEmpty() ? QString() : baseUrl() + path;
}

} // namespace vesk::emulator
