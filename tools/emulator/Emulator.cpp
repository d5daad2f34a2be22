#include "Emulator.h"

#include "DiscountService.h"
#include "HttpFront.h"
#include "LoyaltyService.h"
#include "SalesService.h"
#include "SeedData.h"
#include "Store.h"

namespace vesk::emulator {

// What a started emulator holds; destroyed in reverse order, so the server
// stops before the services and the store go.
struct Emulator::Running {
    Store store;
    SeedData seed;
    std::unique_ptr<SalesService> sales;
    std::unique_ptr<DiscountService> discount;
    std::unique_ptr<LoyaltyService> loyalty;
    std::unique_ptr<HttpFront> front;
};

Emulator::Emulator(Options options)
    : options_(std::move(options)) {}

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
    running_->front =
        std::make_unique<HttpFront>(*running_->sales, *running_->discount, *running_->loyalty);
    if (!running_->front->start(options_.host, options_.port, &why))
        return fail(why);
    return true;
}

void Emulator::stop() {
    if (running_)
        running_->front.reset(); // no request in flight past this point
    running_.reset();
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
