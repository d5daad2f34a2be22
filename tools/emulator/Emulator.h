#pragma once

#include "Fault.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <memory>
#include <optional>

namespace vesk::emulator {

class FaultRules;
class Journal;

struct Options {
    QString host = QStringLiteral("127.0.0.1");
    quint16 port = 55555; // 0: a port of the system's choosing
    QString databaseFile; // empty: an in-memory database
    QString seedFile; // empty: the seed shipped with the emulator (compiled in as a Qt resource)
    QList<FaultRule> faults; // in force from the start, in this order
    // A delay for every call that no rule hits (--latency): a back office's
    // usual slowness, under the faults a test adds.
    std::optional<FaultRule> latency;
    // The request journal's bounds (journal/Journal.h); 0 entries: no journal.
    // Refuse a request whose body has keys or values its record does not
    // take (422), rather than serve it and log what does not fit.
    bool strictRequests = false;
    int journalEntries = 10000;
    qint64 journalBytes = 64 * 1024 * 1024;
};

// The back office on one address: the sales, discount and loyalty services
// with all sixteen operations, deterministic, from a seed (README.md beside
// this header lists what the seed holds and what each operation does).
class Emulator {
public:
    explicit Emulator(Options options = {});
    ~Emulator(); // stops and joins
    Emulator(const Emulator&) = delete;
    Emulator& operator=(const Emulator&) = delete;

    // Opens the database, loads the seed into an empty one, binds and serves
    // on background threads. False, with a message in `error`, when the port
    // is in use, the seed is bad or the database cannot be opened or written.
    // A seed file given for a database that keeps another seed is ignored
    // with a warning on the "vesk.emulator" logger. The fault rules are the
    // options' again.
    bool start(QString* error);
    void stop(); // ends delays and hangs in progress at once

    // Every table back to the seed kept in the database, as on a fresh
    // start, in one transaction between the operations in flight, and the
    // journal emptied. False, with the reason, when stopped or when the
    // database fails.
    bool reset(QString* error);

    // The fault rules in force (the admin API's too).
    FaultRules& faults();
    // The operations' requests, as far as the journal keeps them.
    Journal& journal();

    quint16 port() const;    // the bound port
    QString baseUrl() const; // "http://<host>:<port>"
    // "disc", "loyalty" or "sales": baseUrl() + "/api/axapta/ExchangeData_Disc/" and so
    // on; empty for another name.
    QString serviceUrl(const QString& service) const;

private:
    struct Running;
    Options options_;
    std::unique_ptr<FaultRules> faults_;
    std::unique_ptr<Journal> journal_;
    std::unique_ptr<Running> running_;
};

} // namespace vesk::emulator
