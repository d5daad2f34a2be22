#pragma once

#include "../journal/Journal.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace vesk::emulator {

// A call that a test expects: an operation ("" for any) whose body meets conditions.
struct CallPattern {
    QString operation;
    QList<Condition> where;

    bool matches(const JournalEntry& entry) const;
    // "commitCheque with $.chequeId == \"C-1\"", "any operation"
    QString text() const;
};

// "OPERATION was called exactly / at least / at most N times", or "these
// calls happened in this order", over the journal's entries in a time range.
struct Verification {
    enum class Count { Exactly, AtLeast, AtMost };
    QList<CallPattern> calls; // one for a count; several, in order, for a sequence
    bool inOrder = false;
    Count count = Count::AtLeast;
    qint64 times = 1;
    JournalFilter range; // only its time range is used

    // The admin API's form:
    //   {"operation": "commitCheque", "where": [...], "exactly": 1}   ("atLeast", "atMost";
    //                                                                   neither: at least 1)
    //   {"inOrder": [{"operation": "reserveCheque", "where": [...]}, {"operation": ...}]}
    // either with "since" and "until". nullopt, with what is wrong, otherwise.
    static std::optional<Verification> fromJson(const QJsonObject& object, QString* error);

    QString expected() const; // "commitCheque with ... called exactly 1 time"
};

// What a verification found. A failure names the requests that came closest,
// with the members that differed.
struct VerificationResult {
    struct Difference {
        QString what;     // "operation" or a condition's path
        QString expected; // "commitCheque", "\"C-1\"", "< 3", "present"
        QString actual;   // what the request had, masked: "\"C-2\"", "absent"
    };
    struct NearMiss {
        JournalEntry entry;
        QList<Difference> differences;
    };

    bool verified = false;
    bool inOrder = false;      // a sequence's result
    bool soughtMisses = false; // whether near misses were looked for (not for too many calls)
    QString expected;
    qint64 seen = 0;           // calls that matched (for a sequence: steps found in order)
    QList<JournalEntry> found; // the first of the matching calls (a sequence's steps found)
    QList<NearMiss> nearMisses;
    qint64 dropped = 0; // the journal dropped this many older requests: they were not seen

    QString message() const; // for people, several lines
    QJsonObject toJson() const;
};

// At most this many near misses are reported.
constexpr int nearMissesReported = 3;

VerificationResult verify(const Verification& verification, const QList<JournalEntry>& journal,
                          qint64 dropped);

} // namespace vesk::emulator
