#include "Verification.h"

#include <masking/SecretMasking.h>

#include <QDateTime>
#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>

namespace vesk::emulator {

namespace {

// The matching calls listed when a count went over.
constexpr int foundReported = 10;

QString timesText(qint64 n) {
    return n == 1 ? QStringLiteral("1 time") : QStringLiteral("%1 times").arg(n);
}

QString timeText(qint64 ms) {
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toString(Qt::ISODateWithMs);
}

// "#4 commitCheque at 2026-11-24T10:00:00.123Z (200)"
QString entryLine(const JournalEntry& entry) {
    return QStringLiteral("#%1 %2 at %3 (%4)")
        .arg(entry.seq)
        .arg(entry.operation, timeText(entry.arrivedMs),
             entry.status ? QString::number(entry.status) : QStringLiteral("no reply"));
}

// The member whose masking rule applies to what a path finds: its last name.
QString lastMember(const QString& path) {
    static const QRegularExpression member(QStringLiteral("\\.([A-Za-z_][A-Za-z0-9_]*)"));
    QString last;
    for (const QRegularExpressionMatch& match : member.globalMatch(path))
        last = match.captured(1);
    return last;
}

QString actualText(const Condition& condition, const QJsonObject& body) {
    const QList<QJsonValue> found = condition.found(body);
    if (found.isEmpty())
        return QStringLiteral("absent");
    const QString key = lastMember(condition.pathText());
    QStringList shown;
    for (const QJsonValue& value : found)
        shown.append(masking::maskedValue(key, value.toVariant()));
    return found.size() == 1
               ? shown.first()
               : QLatin1Char('[') + shown.join(QStringLiteral(", ")) + QLatin1Char(']');
}

// How close `entry` came to `pattern`: the same operation weighs more than
// every condition met.
int closeness(const CallPattern& pattern, const JournalEntry& entry, const QJsonObject& body) {
    int score = 0;
    if (pattern.operation.isEmpty() || pattern.operation == entry.operation)
        score += 1000;
    for (const Condition& condition : pattern.where)
        score += condition.holdsFor(body) ? 1 : 0;
    return score;
}

VerificationResult::NearMiss nearMiss(const CallPattern& pattern, const JournalEntry& entry) {
    VerificationResult::NearMiss miss{entry, {}};
    if (!pattern.operation.isEmpty() && pattern.operation != entry.operation)
        miss.differences.append({QStringLiteral("operation"), pattern.operation, entry.operation});
    const QJsonObject body = entry.parsedBody();
    for (const Condition& condition : pattern.where)
        if (!condition.holdsFor(body))
            miss.differences.append(
                {condition.pathText(), condition.expectation(), actualText(condition, body)});
    return miss;
}

// The requests among `candidates` that came closest to `pattern`, newest first among equals.
QList<VerificationResult::NearMiss> nearestMisses(const CallPattern& pattern,
                                                  const QList<JournalEntry>& candidates) {
    struct Scored {
        int score;
        const JournalEntry* entry;
    };
    QList<Scored> scored;
    for (const JournalEntry& entry : candidates) {
        const int score = closeness(pattern, entry, entry.parsedBody());
        if (score > 0)
            scored.append({score, &entry});
    }
    std::stable_sort(scored.begin(), scored.end(), [](const Scored& a, const Scored& b) {
        return a.score != b.score ? a.score > b.score : a.entry->seq > b.entry->seq;
    });
    QList<VerificationResult::NearMiss> misses;
    for (const Scored& candidate : scored.mid(0, nearMissesReported))
        misses.append(nearMiss(pattern, *candidate.entry));
    return misses;
}

std::optional<CallPattern> patternFromJson(const QJsonObject& object, QString* error) {
    CallPattern pattern;
    pattern.operation = object.value(QStringLiteral("operation")).toString();
    QString why;
    const std::optional<QList<Condition>> where =
        conditionsFromJson(object.value(QStringLiteral("where")), &why);
    if (!where) {
        if (error)
            *error = QStringLiteral("where: %1").arg(why);
        return std::nullopt;
    }
    pattern.where = *where;
    return pattern;
}

VerificationResult verifyCount(const Verification& verification,
                               const QList<JournalEntry>& journal) {
    const CallPattern& pattern = verification.calls.first();
    VerificationResult result;
    QList<JournalEntry> others;
    for (const JournalEntry& entry : journal)
        (pattern.matches(entry) ? result.found : others).append(entry);
    result.seen = result.found.size();
    switch (verification.count) {
    case Verification::Count::Exactly:
        result.verified = result.seen == verification.times;
        break;
    case Verification::Count::AtLeast:
        result.verified = result.seen >= verification.times;
        break;
    case Verification::Count::AtMost:
        result.verified = result.seen <= verification.times;
        break;
    }
    result.found = result.found.mid(0, foundReported);
    // Too few: what else came close. Too many: the calls themselves tell what went on.
    result.soughtMisses = !result.verified && result.seen < verification.times;
    if (result.soughtMisses)
        result.nearMisses = nearestMisses(pattern, others);
    return result;
}

VerificationResult verifyOrder(const Verification& verification,
                               const QList<JournalEntry>& journal) {
    VerificationResult result;
    const QList<CallPattern>& calls = verification.calls;
    qsizetype next = 0;
    qsizetype lastMatched = -1; // index into the journal
    for (qsizetype i = 0; i < journal.size() && next < calls.size(); ++i)
        if (calls[next].matches(journal[i])) {
            result.found.append(journal[i]);
            lastMatched = i;
            ++next;
        }
    result.seen = next;
    result.inOrder = true;
    result.verified = next == calls.size();
    if (result.verified)
        return result;
    result.soughtMisses = true;
    const CallPattern& missing = calls[next];
    // The step came, but too early: that is the nearest miss of all.
    for (qsizetype i = 0; i <= lastMatched; ++i)
        if (missing.matches(journal[i]) && result.nearMisses.size() < nearMissesReported)
            result.nearMisses.append({journal[i],
                                      {{QStringLiteral("order"),
                                        QStringLiteral("after #%1").arg(journal[lastMatched].seq),
                                        QStringLiteral("#%1, before it").arg(journal[i].seq)}}});
    const QList<VerificationResult::NearMiss> later =
        nearestMisses(missing, journal.mid(lastMatched + 1));
    for (const VerificationResult::NearMiss& miss : later)
        if (result.nearMisses.size() < nearMissesReported)
            result.nearMisses.append(miss);
    return result;
}

} // namespace

bool CallPattern::matches(const JournalEntry& entry) const {
    if (!operation.isEmpty() && operation != entry.operation)
        return false;
    return where.isEmpty() || allHold(where, entry.parsedBody());
}

QString CallPattern::text() const {
    QString text = operation.isEmpty() ? QStringLiteral("any operation") : operation;
    QStringList conditions;
    for (const Condition& condition : where)
        conditions.append(condition.text());
    if (!conditions.isEmpty())
        text += QStringLiteral(" with ") + conditions.join(QStringLiteral(" and "));
    return text;
}

std::optional<Verification> Verification::fromJson(const QJsonObject& object, QString* error) {
    const auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        return std::nullopt;
    };
    Verification verification;
    QString why;
    const std::optional<JournalFilter> range = JournalFilter::fromJson(
        QJsonObject{{QStringLiteral("since"), object.value(QStringLiteral("since"))},
                    {QStringLiteral("until"), object.value(QStringLiteral("until"))}},
        &why);
    if (!range)
        return fail(why);
    verification.range = *range;

    if (object.contains(QStringLiteral("inOrder"))) {
        const QJsonArray steps = object.value(QStringLiteral("inOrder")).toArray();
        if (steps.isEmpty())
            return fail(QStringLiteral("inOrder: a list of calls ({\"operation\": ..., \"where\": "
                                       "[...]}) is expected"));
        for (const QJsonValue& step : steps) {
            const std::optional<CallPattern> pattern = patternFromJson(step.toObject(), &why);
            if (!pattern)
                return fail(
                    QStringLiteral("inOrder[%1]: %2").arg(verification.calls.size()).arg(why));
            verification.calls.append(*pattern);
        }
        verification.inOrder = true;
        return verification;
    }

    const std::optional<CallPattern> pattern = patternFromJson(object, &why);
    if (!pattern)
        return fail(why);
    verification.calls.append(*pattern);
    int counts = 0;
    const struct {
        const char* name;
        Count count;
    } forms[] = {
        {"exactly", Count::Exactly}, {"atLeast", Count::AtLeast}, {"atMost", Count::AtMost}};
    for (const auto& form : forms) {
        const QJsonValue value = object.value(QLatin1String(form.name));
        if (value.isUndefined())
            continue;
        if (!value.isDouble() || value.toDouble() < 0 ||
            value.toDouble() != qint64(value.toDouble()))
            return fail(QStringLiteral("%1: a whole number from 0 is expected")
                            .arg(QLatin1String(form.name)));
        verification.count = form.count;
        verification.times = qint64(value.toDouble());
        ++counts;
    }
    if (counts > 1)
        return fail(QStringLiteral("give one of exactly, atLeast and atMost"));
    return verification;
}

QString Verification::expected() const {
    if (inOrder) {
        QStringList steps;
        for (qsizetype i = 0; i < calls.size(); ++i)
            steps.append(QStringLiteral("%1. %2").arg(i + 1).arg(calls[i].text()));
        return QStringLiteral("in this order: ") + steps.join(QStringLiteral("; "));
    }
    const char* how = count == Count::Exactly   ? "exactly"
                      : count == Count::AtLeast ? "at least"
                                                : "at most";
    return QStringLiteral("%1 called %2 %3")
        .arg(calls.first().text(), QLatin1String(how), timesText(times));
}

VerificationResult verify(const Verification& verification, const QList<JournalEntry>& journal,
                          qint64 dropped) {
    QList<JournalEntry> inRange;
    for (const JournalEntry& entry : journal)
        if (verification.range.admitsTimeOf(entry))
            inRange.append(entry);
    VerificationResult result = verification.inOrder ? verifyOrder(verification, inRange)
                                                     : verifyCount(verification, inRange);
    result.expected = verification.expected();
    result.dropped = dropped;
    return result;
}

QString VerificationResult::message() const {
    QString text;
    if (verified && inOrder)
        text = QStringLiteral("Verified: %1.").arg(expected);
    else if (verified)
        text = QStringLiteral("Verified: %1 (seen %2).").arg(expected, timesText(seen));
    else if (inOrder)
        text = QStringLiteral("Verification failed: expected %1; found the first %2 in order.")
                   .arg(expected)
                   .arg(seen);
    else
        text = QStringLiteral("Verification failed: expected %1, seen %2.")
                   .arg(expected, timesText(seen));
    if (verified)
        return text;
    if (!found.isEmpty()) {
        text += inOrder ? QStringLiteral("\nThe steps found in order:")
                        : QStringLiteral("\nThe calls seen:");
        for (const JournalEntry& entry : found)
            text += QStringLiteral("\n  ") + entryLine(entry);
    }
    if (!nearMisses.isEmpty()) {
        text += QStringLiteral("\nNearest misses:");
        for (const NearMiss& miss : nearMisses) {
            text += QStringLiteral("\n  ") + entryLine(miss.entry);
            for (const Difference& difference : miss.differences)
                text += QStringLiteral("\n    %1: expected %2, was %3")
                            .arg(difference.what, difference.expected, difference.actual);
        }
    } else if (soughtMisses) {
        text += found.isEmpty() ? QStringLiteral("\nNo request came close.")
                                : QStringLiteral("\nNo other request came close.");
    }
    if (dropped > 0)
        text += QStringLiteral("\nThe journal dropped %1 older requests to stay within its "
                               "limits: they were not seen.")
                    .arg(dropped);
    return text;
}

QJsonObject VerificationResult::toJson() const {
    QJsonArray misses;
    for (const NearMiss& miss : nearMisses) {
        QJsonArray differences;
        for (const Difference& difference : miss.differences)
            differences.append(QJsonObject{{QStringLiteral("what"), difference.what},
                                           {QStringLiteral("expected"), difference.expected},
                                           {QStringLiteral("actual"), difference.actual}});
        QJsonObject entry = miss.entry.toJson();
        entry.insert(QStringLiteral("differences"), differences);
        misses.append(entry);
    }
    QJsonArray calls;
    for (const JournalEntry& entry : found)
        calls.append(entry.toJson());
    return QJsonObject{
        {QStringLiteral("verified"), verified}, {QStringLiteral("expected"), expected},
        {QStringLiteral("seen"), seen},         {QStringLiteral("found"), calls},
        {QStringLiteral("nearMisses"), misses}, {QStringLiteral("dropped"), dropped},
        {QStringLiteral("message"), message()}};
}

} // namespace vesk::emulator
