#include "CallGates.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace vesk::detail {
namespace {

struct ServiceUse {
    const void* service = nullptr;
    QString name; // "vesk::disc::Api"
    QString baseUrl;
    const Log4Qt::Logger* logger = nullptr;
    const RestClient* warnedLate = nullptr;
};

struct Entry {
    std::shared_ptr<CallGate> gate = std::make_shared<CallGate>();
    std::vector<ServiceUse> services;
    bool destroyed = false;
};

struct Registry {
    std::mutex lock;
    QHash<const RestClient*, Entry> entries;
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

// The service among `services` whose base URL is the longest start of `url`.
const ServiceUse* serviceOf(const std::vector<ServiceUse>& services, const QString& url) {
    const ServiceUse* found = nullptr;
    for (const ServiceUse& use : services) {
        if (url.startsWith(use.baseUrl) && (!found || use.baseUrl.size() > found->baseUrl.size()))
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
    for (const Entry& other : registry.entries) {
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
        auto it = r.entries.find(client);
        if (it == r.entries.end())
            return;
        if (it->services.empty()) {
            r.entries.erase(it);
            return;
        }
        it->destroyed = true;
        orphans = it->services;
    }
    for (const ServiceUse& use : orphans) {
        use.logger->warn(
            QStringLiteral("The HTTP client of %1 was destroyed while %1 still uses it: its calls "
                           "now fail with vesk::NetworkException. A substitute installed through "
                           "MockFactory must outlive the services that took it.")
                .arg(use.name));
    }
}

// Finds or makes the entry of `client`; `made` tells whether it is new.
Entry& entryLocked(Registry& r, RestClient* client, bool& made) {
    auto it = r.entries.find(client);
    made = it == r.entries.end();
    if (made)
        it = r.entries.insert(client, Entry());
    return *it;
}

// A new entry learns when its client goes. Connected outside the registry's
// lock, as the destruction that it reports takes that lock.
void watch(RestClient* client) {
    QObject::connect(client, &QObject::destroyed, [client] { forget(client); });
}

} // namespace

CallGates::Call CallGates::enter(RestClient* client, const QString& url) {
    Registry& r = registry();
    Call call;
    bool made = false;
    {
        std::lock_guard<std::mutex> lock(r.lock);
        Entry& entry = entryLocked(r, client, made);
        call.gate = entry.gate;
        call.destroyed = entry.destroyed;
        call.logger = loggerLocked(r, &entry, url);
        for (const ServiceUse& use : entry.services)
            call.switchLogger = call.switchLogger || use.logger != entry.services.front().logger;
    }
    if (made)
        watch(client);
    return call;
}

const Log4Qt::Logger* CallGates::loggerFor(const RestClient* client, const QString& url) {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.lock);
    const auto it = client ? r.entries.constFind(client) : r.entries.constEnd();
    return loggerLocked(r, it == r.entries.constEnd() ? nullptr : &*it, url);
}

void CallGates::bind(RestClient* client, const void* service, const QString& name,
                     const QString& baseUrl, const Log4Qt::Logger* logger) {
    Registry& r = registry();
    bool made = false;
    {
        std::lock_guard<std::mutex> lock(r.lock);
        Entry& entry = entryLocked(r, client, made);
        if (entry.destroyed) {
            // A new client at the address of a destroyed one.
            entry = Entry();
            made = true;
        }
        ServiceUse use;
        use.service = service;
        use.name = name;
        use.baseUrl = baseUrl;
        use.logger = logger;
        entry.services.push_back(std::move(use));
    }
    if (made)
        watch(client);
}

void CallGates::unbind(RestClient* client, const void* service) {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.lock);
    auto it = r.entries.find(client);
    if (it == r.entries.end())
        return;
    auto& services = it->services;
    services.erase(
        std::remove_if(services.begin(), services.end(),
                       [service](const ServiceUse& use) { return use.service == service; }),
        services.end());
    if (it->destroyed && services.empty())
        r.entries.erase(it);
}

void CallGates::warnLateSubstitute(RestClient* client, const void* service,
                                   const RestClient* substitute) {
    Registry& r = registry();
    QString name;
    const Log4Qt::Logger* logger = nullptr;
    {
        std::lock_guard<std::mutex> lock(r.lock);
        auto it = r.entries.find(client);
        if (it == r.entries.end())
            return;
        for (ServiceUse& use : it->services) {
            if (use.service == service && use.warnedLate != substitute) {
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
