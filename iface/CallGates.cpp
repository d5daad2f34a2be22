#include "CallGates.h"

#include <QHash>
#include <QUrl>
#include <QWeakPointer>

#include <algorithm>
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
        for (const ServiceUse& use : entry.services) {
            if (!use.reference.isNull())
                orphans.push_back(use);
        }
    }
    for (const ServiceUse& use : orphans) {
        use.logger->warn(
            QStringLiteral("The HTTP client of %1 was destroyed while %1 still uses it: its calls "
                           "now fail with vesk::NetworkException. A substitute installed through "
                           "MockFactory must outlive the services that took it.")
                .arg(use.name));
    }
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
    {
        std::lock_guard<std::mutex> lock(r.lock);
        if (holds(r.dead, client)) {
            call.destroyed = true;
            call.logger = loggerLocked(r, nullptr, url);
            return call;
        }
        Entry& entry = entryLocked(r, client, made);
        call.gate = entry.gate;
        call.logger = loggerLocked(r, &entry, url);
    }
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
