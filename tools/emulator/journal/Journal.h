#pragma once

#include "../matching/Condition.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <deque>
#include <mutex>
#include <optional>

namespace vesk::emulator {

// One request of an operation as the journal keeps it.
struct JournalEntry {
    qint64 seq = 0;       // 1, 2, ... in arrival order since the emulator started
    qint64 arrivedMs = 0; // when it arrived, ms since the epoch (UTC)
    QString operation;
    QByteArray body; // as it arrived; shown only masked (toJson())
    int status = 0;  // 0: no reply, or none whole
    std::optional<int> code;
    QString fault;        // the fault played: "reset,after"
    qint64 ms = 0;        // how long it took
    QString note;         // "replayed", ...
    QStringList findings; // what in the body does not fit its record
    bool done = false;    // false while the request is served: status and ms are not known yet

    // A request as it arrives, with the fault that it will meet.
    static JournalEntry arrived(qint64 arrivedMs, const QString& operation, const QByteArray& body,
                                const QString& fault);

    // The body parsed; empty when it is no JSON object. Conditions are matched
    // against the body as it arrived, so that a test finds the card it sent.
    QJsonObject parsedBody() const;
    // The entry as the admin API shows it, the body with its secrets masked.
    QJsonObject toJson() const;
    qint64 footprint() const; // bytes held, roughly
};

// Which entries a listing, a count or a verification looks at.
struct JournalFilter {
    QString operation; // empty: every operation
    // "200", "503", "4xx", "5xx", "2xx", or "none" (no reply); empty: any
    QString status;
    std::optional<qint64> sinceMs; // arrived at or after
    std::optional<qint64> untilMs; // arrived at or before
    QList<Condition> where;        // all hold for the body

    // From the admin API's query parameters or JSON members ("operation",
    // "status", "since", "until": ISO time or ms since the epoch, "where").
    // nullopt, with what is wrong, for a bad value.
    static std::optional<JournalFilter> fromJson(const QJsonObject& object, QString* error);

    bool admits(const JournalEntry& entry) const;
    bool admitsTimeOf(const JournalEntry& entry) const;
};

// The last requests of the operations, bounded in count and in bytes: the
// oldest go first, and are counted. A request is kept from its arrival on
// (in flight until it is complete), so that a client whose connection a
// fault broke finds its request there at once. Thread-safe; adding is a short critical
// section with no parsing, so it costs a load test next to nothing.
class Journal {
public:
    struct Limits {
        int entries = 10000;             // 0: the journal keeps nothing
        qint64 bytes = 64 * 1024 * 1024; // bodies and all
    };
    Journal(); // with the default limits
    explicit Journal(Limits limits);

    bool enabled() const { return limits_.entries > 0; }
    Limits limits() const { return limits_; }

    // Numbers the entry and keeps it; its number (0 when the journal keeps nothing).
    qint64 add(JournalEntry entry);
    // What became of a request added while it arrived; nothing if it was dropped since.
    void complete(qint64 seq, int status, std::optional<int> code, qint64 ms, const QString& note,
                  const QStringList& findings = QStringList());

    // The entries that the filter admits, oldest first.
    QList<JournalEntry> select(const JournalFilter& filter) const;
    qint64 count(const JournalFilter& filter) const;
    int clear(); // how many there were; the numbering goes on

    struct Totals {
        qint64 size = 0;     // entries kept
        qint64 bytes = 0;    // their footprint
        qint64 dropped = 0;  // entries dropped to stay within the limits, since start or clear
        qint64 firstSeq = 0; // the oldest kept; 0 when empty
    };
    Totals totals() const;

private:
    Limits limits_;
    mutable std::mutex mutex_;
    std::deque<JournalEntry> entries_;
    qint64 bytes_ = 0;
    qint64 dropped_ = 0;
    qint64 nextSeq_ = 1;
};

} // namespace vesk::emulator
