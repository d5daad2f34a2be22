#include "CallGates.h"

#include <QHash>
#include <QUrl>
#include <QWeakPointer>

#include <algorithm>
#include <optional>
#include <vector>

namespace vesk::detail {
namespace {

// One shared reference to a client: QWeakPointer compares equal to a
// QSharedPointer exactly when both share one reference count, whatever the
// address they hold. Keeping it keeps that count's storage, so its identity
// cannot pass to a reference made later.
using Reference = QWeakPointer<RestClient>;

bool holds(const std::vector<Reference>& references, const QSharedPointer<RestClient>& client) {
    return std::any_of(references.begin(), references.end(),
                       [&client](const Reference& reference) { return reference == client; });
}

// Drops the references that nobody holds any more: no call can come
// through them again.
void prune(std::vector<Reference>& references) {
    references.erase(std::remove_if(references.begin(), references.end(),
                                    [](const Reference& reference) { return reference.isNull(); }),
                     references.end());
}

struct ServiceUse {
    const void* service = nullptr;
    Reference reference; // the service's own reference to the client
    QString name;        // "vesk::disc::Api"
    QString callPrefix;  // what every URL of its calls starts with
    const Log4Qt::Logger* logger = nullptr;
    const RestClient* warnedLate = nullptr;
};

// A live client.
struct Entry {
    std::shared_ptr<CallGate> gate = std::make_shared<CallGate>();
    std::vector<ServiceUse> services;
    std::vector<Reference> references; // through which calls reached it
};

struct Registry {
    std::mutex lock;
    QHash<const RestClient*, Entry> live;
    std::vector<Reference> dead; // held references to clients destroyed meanwhile
    // Services whose client went while no call was in flight, not yet told:
    // each hears of it on its first call that fails because of it.
    std::vector<ServiceUse> untold;
};

// Never destroyed: clients may outlive the library's statics at exit.
Registry& registry() {
    static Registry* const instance = new Registry;
    return *instance;
}

const Log4Qt::Logger* fallbackLogger() {
    static const Log4Qt::Logger* const logger = Log4Qt::LogManager::logger(QStringLiteral("vesk"));
    return logger;
}

// The start of every URL that the service's operations resolve to: the base
// URL as the resolution of an endpoint sees it (a query or a fragment of the
// base does not reach the call's URL).
QString callPrefixOf(const QString& baseUrl) {
    return QUrl(baseUrl, QUrl::TolerantMode)
        .resolved(QUrl(QStringLiteral("./"), QUrl::TolerantMode))
        .toString();
}

// The service among `services` whose calls' URLs are the longest start of `url`.
const ServiceUse* serviceOf(const std::vector<ServiceUse>& services, const QString& url) {
    const ServiceUse* found = nullptr;
    for (const ServiceUse& use : services) {
        if (url.startsWith(use.callPrefix) &&
            (!found || use.callPrefix.size() > found->callPrefix.size()))
            found = &use;
    }
    return found;
}

// Called with the registry locked.
const Log4Qt::Logger* loggerLocked(const Registry& registry, const Entry* entry,
                                   const QString& url) {
    if (entry && !entry->services.empty()) {
        const ServiceUse* use = serviceOf(entry->services, url);
        return use ? use->logger : entry->services.front().logger;
    }
    // A client the host made: the service is told by the URL alone.
    for (const Entry& other : registry.live) {
        if (const ServiceUse* use = serviceOf(other.services, url))
            return use->logger;
    }
    return fallbackLogger();
}

// Why the calls of a service fail from now on. `during` names the call in
// flight when the client went; without one the service hears it on the call
// that fails.
void warnOrphan(const ServiceUse& use, bool during) {
    use.logger->warn(
        QStringLiteral("The HTTP client of %1 was destroyed %2while %1 still uses it: "
                       "its calls now fail with vesk::NetworkException. A substitute "
                       "installed through MockFactory must outlive the services that "
                       "took it.")
            .arg(use.name, during ? QStringLiteral("during a call through it ") : QString()));
}

// Whether a call holds the client's gate. A call on the destroying thread
// itself (from inside the client's own send()) is not seen: the lock is
// re-entrant, and such a client is its own business.
bool inFlight(CallGate& gate) {
    if (!gate.exchange.try_lock())
        return true;
    gate.exchange.unlock();
    return false;
}

// A client that goes while no call is in flight goes silently: a test's
// substitute destroyed at its end, or a process-wide one at exit, is no
// mistake until a service calls through it again.
void forget(const RestClient* client) {
    Registry& r = registry();
    std::vector<ServiceUse> orphans;
    {
        std::lock_guard<std::mutex> lock(r.lock);
        auto it = r.live.find(client);
        if (it == r.live.end())
            return;
        const Entry entry = std::move(*it);
        r.live.erase(it);
        prune(r.dead);
        for (const Reference& reference : entry.references) {
            if (!reference.isNull())
                r.dead.push_back(reference);
        }
        r.untold.erase(std::remove_if(r.untold.begin(), r.untold.end(),
                                      [](const ServiceUse& use) { return use.reference.isNull(); }),
                       r.untold.end());
        const bool during = inFlight(*entry.gate);
        for (const ServiceUse& use : entry.services) {
            if (use.reference.isNull())
                continue;
            if (during)
                orphans.push_back(use);
            else
                r.untold.push_back(use);
        }
    }
    for (const ServiceUse& use : orphans)
        warnOrphan(use, true);
}

// The service that `client` is the reference of, if it was not yet told that
// its client is gone; it is told now. Called with the registry locked.
std::optional<ServiceUse> takeUntold(Registry& r, const QSharedPointer<RestClient>& client) {
    const auto it =
        std::find_if(r.untold.begin(), r.untold.end(),
                     [&client](const ServiceUse& use) { return use.reference == client; });
    if (it == r.untold.end())
        return std::nullopt;
    ServiceUse use = std::move(*it);
    r.untold.erase(it);
    return use;
}

// The entry of the live client behind `client`, made if new (`made`), with
// `client` among its references. Called with the registry locked.
Entry& entryLocked(Registry& r, const QSharedPointer<RestClient>& client, bool& made) {
    auto it = r.live.find(client.data());
    made = it == r.live.end();
    if (made)
        it = r.live.insert(client.data(), Entry());
    if (!holds(it->references, client)) {
        prune(it->references);
        it->references.push_back(client);
        // A service that a host destroyed without its destructor (a
        // subclass compiled without the library's headers) leaves its use.
        auto& services = it->services;
        services.erase(std::remove_if(services.begin(), services.end(),
                                      [](const ServiceUse& use) { return use.reference.isNull(); }),
                       services.end());
    }
    return *it;
}

// A new entry learns when its client goes. Connected outside the registry's
// lock, as the destruction that it reports takes that lock.
void watch(RestClient* client) {
    QObject::connect(client, &QObject::destroyed, [client] { forget(client); });
}

} // namespace

CallGates::Call CallGates::enter(const QSharedPointer<RestClient>& client, const QString& url) {
    Registry& r = registry();
    Call call;
    bool made = false;
    std::optional<ServiceUse> untold;
    {
        std::lock_guard<std::mutex> lock(r.lock);
        if (holds(r.dead, client)) {
            call.destroyed = true;
            call.logger = loggerLocked(r, nullptr, url);
            untold = takeUntold(r, client);
        } else {
            Entry& entry = entryLocked(r, client, made);
            call.gate = entry.gate;
            call.logger = loggerLocked(r, &entry, url);
        }
    }
    if (untold)
        warnOrphan(*untold, false);
    if (made)
        watch(client.data());
    return call;
}

const Log4Qt::Logger* CallGates::loggerFor(const QSharedPointer<RestClient>& client,
                                           const QString& url) {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.lock);
    const auto it = client ? r.live.constFind(client.data()) : r.live.constEnd();
    const bool known = it != r.live.constEnd() && holds(it->references, client);
    return loggerLocked(r, known ? &*it : nullptr, url);
}

void CallGates::bind(const QSharedPointer<RestClient>& client, const void* service,
                     const QString& name, const QString& baseUrl, const Log4Qt::Logger* logger) {
    Registry& r = registry();
    bool made = false;
    {
        std::lock_guard<std::mutex> lock(r.lock);
        Entry& entry = entryLocked(r, client, made);
        ServiceUse use;
        use.service = service;
        use.reference = client;
        use.name = name;
        use.callPrefix = callPrefixOf(baseUrl);
        use.logger = logger;
        entry.services.push_back(std::move(use));
    }
    if (made)
        watch(client.data());
}

void CallGates::unbind(const QSharedPointer<RestClient>& client, const void* service) {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.lock);
    auto it = r.live.find(client.data());
    if (it == r.live.end())
        return; // destroyed already: its dead references go once nobody holds them
    auto& services = it->services;
    services.erase(std::remove_if(services.begin(), services.end(),
                                  [service, &client](const ServiceUse& use) {
                                      return use.service == service && use.reference == client;
                                  }),
                   services.end());
}

void CallGates::warnLateSubstitute(const QSharedPointer<RestClient>& client, const void* service,
                                   const RestClient* substitute) {
    Registry& r = registry();
    QString name;
    const Log4Qt::Logger* logger = nullptr;
    {
        std::lock_guard<std::mutex> lock(r.lock);
        auto it = r.live.find(client.data());
        if (it == r.live.end())
            return;
        for (ServiceUse& use : it->services) {
            if (use.service == service && use.reference == client && use.warnedLate != substitute) {
                use.warnedLate = substitute;
                name = use.name;
                logger = use.logger;
            }
        }
    }
    if (logger) {
        logger->warn(QStringLiteral("A substitute RestClient was installed in MockFactory after %1 "
                                    "was made; %1 keeps the client it took then. Install a "
                                    "substitute before the service's first use.")
                         .arg(name));
    }
}

} // namespace vesk::detail
