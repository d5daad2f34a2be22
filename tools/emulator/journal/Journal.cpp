#include "Journal.h"

#include <masking/SecretMasking.h>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>

namespace vesk::emulator {

namespace {

// Per entry, beyond what its texts hold: the deque's slot, the strings' heads.
constexpr qint64 entryOverhead = 256;

qint64 textBytes(const QString& text) {
    return text.size() * qint64(sizeof(QChar));
}

std::optional<qint64> timeFromJson(const QJsonValue& value, const char* name, QString* error) {
    if (value.isDouble())
        return qint64(value.toDouble());
    const QString text = value.toString();
    bool number = false;
    const qint64 ms = text.toLongLong(&number);
    if (number)
        return ms;
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (time.isValid())
        return time.toMSecsSinceEpoch();
    if (error)
        *error = QStringLiteral("%1: \"%2\" is no time: give ISO 8601 (2026-11-24T10:00:00Z) or "
                                "milliseconds since the epoch")
                     .arg(QLatin1String(name), text);
    return std::nullopt;
}

bool statusAdmits(const QString& filter, int status) {
    if (filter.isEmpty())
        return true;
    if (filter == QLatin1String("none"))
        return status == 0;
    if (filter.endsWith(QLatin1String("xx")))
        return status / 100 == filter.front().digitValue();
    return status == filter.toInt();
}

} // namespace

JournalEntry JournalEntry::arrived(qint64 arrivedMs, const QString& operation,
                                   const QByteArray& body, const QString& fault) {
    JournalEntry entry;
    entry.arrivedMs = arrivedMs;
    entry.operation = operation;
    entry.body = body;
    entry.fault = fault;
    return entry;
}

QJsonObject JournalEntry::parsedBody() const {
    return QJsonDocument::fromJson(body).object();
}

QJsonObject JournalEntry::toJson() const {
    QJsonObject object{
        {QStringLiteral("seq"), seq},
        {QStringLiteral("time"),
         QDateTime::fromMSecsSinceEpoch(arrivedMs, Qt::UTC).toString(Qt::ISODateWithMs)},
        {QStringLiteral("operation"), operation},
        {QStringLiteral("status"), status},
        {QStringLiteral("ms"), ms},
    };
    const QString masked = masking::maskSecrets(body);
    const QJsonDocument document = QJsonDocument::fromJson(masked.toUtf8());
    if (document.isObject())
        object.insert(QStringLiteral("request"), document.object());
    else
        object.insert(QStringLiteral("requestText"), masked);
    if (code)
        object.insert(QStringLiteral("code"), *code);
    if (!fault.isEmpty())
        object.insert(QStringLiteral("fault"), fault);
    if (!note.isEmpty())
        object.insert(QStringLiteral("note"), note);
    if (!findings.isEmpty())
        object.insert(QStringLiteral("findings"), QJsonArray::fromStringList(findings));
    if (!done)
        object.insert(QStringLiteral("inFlight"), true);
    return object;
}

qint64 JournalEntry::footprint() const {
    qint64 bytes =
        entryOverhead + body.size() + textBytes(operation) + textBytes(fault) + textBytes(note);
    for (const QString& finding : findings)
        bytes += textBytes(finding);
    return bytes;
}

std::optional<JournalFilter> JournalFilter::fromJson(const QJsonObject& object, QString* error) {
    const auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        return std::nullopt;
    };
    JournalFilter filter;
    filter.operation = object.value(QStringLiteral("operation")).toString();
    const QJsonValue status = object.value(QStringLiteral("status"));
    filter.status = status.isDouble() ? QString::number(status.toInt()) : status.toString();
    static const QRegularExpression statusForm(
        QStringLiteral("^(none|[1-5]xx|[1-5][0-9][0-9]|0)$"));
    if (!filter.status.isEmpty() && !statusForm.match(filter.status).hasMatch())
        return fail(
            QStringLiteral("status: \"%1\" is none of 200, 4xx, 5xx, ... or none (no reply)")
                .arg(filter.status));
    if (filter.status == QLatin1String("0"))
        filter.status = QStringLiteral("none");
    for (const char* name : {"since", "until"}) {
        const QJsonValue value = object.value(QLatin1String(name));
        if (value.isUndefined())
            continue;
        const std::optional<qint64> ms = timeFromJson(value, name, error);
        if (!ms)
            return std::nullopt;
        (qstrcmp(name, "since") == 0 ? filter.sinceMs : filter.untilMs) = ms;
    }
    QString why;
    const std::optional<QList<Condition>> where =
        conditionsFromJson(object.value(QStringLiteral("where")), &why);
    if (!where)
        return fail(QStringLiteral("where: %1").arg(why));
    filter.where = *where;
    return filter;
}

bool JournalFilter::admitsTimeOf(const JournalEntry& entry) const {
    return (!sinceMs || entry.arrivedMs >= *sinceMs) && (!untilMs || entry.arrivedMs <= *untilMs);
}

bool JournalFilter::admits(const JournalEntry& entry) const {
    if (!operation.isEmpty() && entry.operation != operation)
        return false;
    if (!statusAdmits(status, entry.status) || !admitsTimeOf(entry))
        return false;
    return where.isEmpty() || allHold(where, entry.parsedBody());
}

Journal::Journal()
    : Journal(Limits{}) {}

Journal::Journal(Limits limits)
    : limits_(limits) {}

qint64 Journal::add(JournalEntry entry) {
    if (!enabled())
        return 0;
    const qint64 footprint = entry.footprint();
    const std::lock_guard<std::mutex> lock(mutex_);
    const qint64 seq = nextSeq_++;
    entry.seq = seq;
    bytes_ += footprint;
    entries_.push_back(std::move(entry));
    while (!entries_.empty() &&
           (qint64(entries_.size()) > limits_.entries || bytes_ > limits_.bytes)) {
        bytes_ -= entries_.front().footprint();
        entries_.pop_front();
        ++dropped_;
    }
    return seq;
}

void Journal::complete(qint64 seq, int status, std::optional<int> code, qint64 ms,
                       const QString& note, const QStringList& findings) {
    const std::lock_guard<std::mutex> lock(mutex_);
    // Numbers are consecutive from the oldest kept: the entry's place is known.
    if (entries_.empty() || seq < entries_.front().seq || seq > entries_.back().seq)
        return;
    JournalEntry& entry = entries_[std::size_t(seq - entries_.front().seq)];
    bytes_ -= entry.footprint();
    entry.status = status;
    entry.code = code;
    entry.ms = ms;
    entry.note = note;
    entry.findings = findings;
    entry.done = true;
    bytes_ += entry.footprint();
}

QList<JournalEntry> Journal::select(const JournalFilter& filter) const {
    // Matching parses bodies: done on a copy, outside the lock, so that the
    // operations in flight are not held up by a query.
    std::deque<JournalEntry> copy;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        copy = entries_;
    }
    QList<JournalEntry> selected;
    for (JournalEntry& entry : copy)
        if (filter.admits(entry))
            selected.append(std::move(entry));
    return selected;
}

qint64 Journal::count(const JournalFilter& filter) const {
    return select(filter).size();
}

int Journal::clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    const int cleared = int(entries_.size());
    entries_.clear();
    bytes_ = 0;
    dropped_ = 0;
    return cleared;
}

Journal::Totals Journal::totals() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return {qint64(entries_.size()), bytes_, dropped_, entries_.empty() ? 0 : entries_.front().seq};
}

} // namespace vesk::emulator
