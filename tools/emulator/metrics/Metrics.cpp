#include "Metrics.h"

#include <QLocale>

#include <algorithm>

namespace vesk::emulator {

namespace {

const char* const statusNames[] = {"none", "1xx", "2xx", "3xx", "4xx", "5xx"};

const Fault::Kind kindsInOrder[] = {
    Fault::Kind::Error,   Fault::Kind::Delay,    Fault::Kind::Hang,
    Fault::Kind::NotJson, Fault::Kind::Truncate, Fault::Kind::Oversize,
    Fault::Kind::Reset,   Fault::Kind::Dribble,  Fault::Kind::Stall};

// A sample's value as the format writes it: integers as such, others shortest.
QByteArray number(double value) {
    return QString::number(value, 'g', QLocale::FloatingPointShortest).toUtf8();
}

void family(QByteArray& out, const char* name, const char* type, const char* help) {
    out += QByteArray("# HELP ") + name + ' ' + help + "\n# TYPE " + name + ' ' + type + '\n';
}

void sample(QByteArray& out, const QByteArray& name, const QByteArray& labels, double value) {
    out += name;
    if (!labels.isEmpty())
        out += '{' + labels + '}';
    out += ' ' + number(value) + '\n';
}

qint64 load(const std::atomic<qint64>& counter) {
    return counter.load(std::memory_order_relaxed);
}

} // namespace

void Metrics::recordRequest(const QString& operation, int status, qint64 microseconds) {
    const qsizetype index = operationNames().indexOf(operation);
    if (index < 0 || index >= operations)
        return;
    Operation& counted = operations_[std::size_t(index)];
    const int statusClass = status >= 100 && status < 600 ? status / 100 : 0;
    counted.byStatus[std::size_t(statusClass)].fetch_add(1, std::memory_order_relaxed);
    const double seconds = double(microseconds) / 1e6;
    const auto bucket = std::lower_bound(buckets.begin(), buckets.end(), seconds) - buckets.begin();
    counted.byBucket[std::size_t(bucket)].fetch_add(1, std::memory_order_relaxed);
    counted.microseconds.fetch_add(microseconds, std::memory_order_relaxed);
}

void Metrics::recordFault(Fault::Kind kind) {
    for (std::size_t i = 0; i < faults_.size(); ++i)
        if (kindsInOrder[i] == kind)
            faults_[i].fetch_add(1, std::memory_order_relaxed);
}

void Metrics::recordAdminRequest() {
    admin_.fetch_add(1, std::memory_order_relaxed);
}

QByteArray Metrics::exposition(const Gauges& gauges) const {
    QByteArray out;
    const QStringList& names = operationNames();
    const auto operationLabel = [&](int i) {
        return QByteArray("operation=\"") + names[i].toUtf8() + '"';
    };

    family(out, "vesk_emulator_requests_total", "counter",
           "Requests of the operations, by operation and status class (none: no reply).");
    for (int i = 0; i < operations; ++i)
        for (int c = 0; c < statusClasses; ++c)
            if (const qint64 count = load(operations_[std::size_t(i)].byStatus[std::size_t(c)]))
                sample(out, "vesk_emulator_requests_total",
                       operationLabel(i) + ",status=\"" + statusNames[c] + '"', double(count));

    family(out, "vesk_emulator_request_duration_seconds", "histogram",
           "Time from a request's arrival to the end of its reply, by operation.");
    for (int i = 0; i < operations; ++i) {
        const Operation& counted = operations_[std::size_t(i)];
        qint64 cumulative = 0;
        QByteArray series;
        for (std::size_t b = 0; b <= buckets.size(); ++b) {
            cumulative += load(counted.byBucket[b]);
            const QByteArray bound = b < buckets.size() ? number(buckets[b]) : QByteArray("+Inf");
            sample(series, "vesk_emulator_request_duration_seconds_bucket",
                   operationLabel(i) + ",le=\"" + bound + '"', double(cumulative));
        }
        if (cumulative == 0)
            continue;
        out += series;
        sample(out, "vesk_emulator_request_duration_seconds_sum", operationLabel(i),
               double(load(counted.microseconds)) / 1e6);
        sample(out, "vesk_emulator_request_duration_seconds_count", operationLabel(i),
               double(cumulative));
    }

    family(out, "vesk_emulator_faults_fired_total", "counter", "Faults played, by kind.");
    for (std::size_t k = 0; k < faults_.size(); ++k)
        sample(out, "vesk_emulator_faults_fired_total",
               "fault=\"" + faultKindName(kindsInOrder[k]).toUtf8() + '"',
               double(load(faults_[k])));

    family(out, "vesk_emulator_faults_active", "gauge", "Fault rules in force and not spent.");
    sample(out, "vesk_emulator_faults_active", {}, gauges.faultsActive);
    family(out, "vesk_emulator_admin_requests_total", "counter",
           "Requests of the admin API, this scrape's included.");
    sample(out, "vesk_emulator_admin_requests_total", {}, double(load(admin_)));
    family(out, "vesk_emulator_journal_requests", "gauge", "Requests the journal keeps.");
    sample(out, "vesk_emulator_journal_requests", {}, double(gauges.journalSize));
    family(out, "vesk_emulator_journal_bytes", "gauge", "Bytes the journal's requests hold.");
    sample(out, "vesk_emulator_journal_bytes", {}, double(gauges.journalBytes));
    family(out, "vesk_emulator_journal_dropped_total", "counter",
           "Requests the journal dropped to stay within its bounds, since it was last emptied.");
    sample(out, "vesk_emulator_journal_dropped_total", {}, double(gauges.journalDropped));
    family(out, "vesk_emulator_database_seconds_total", "counter",
           "Time the database thread spent on the services' work.");
    sample(out, "vesk_emulator_database_seconds_total", {}, gauges.databaseSeconds);
    family(out, "vesk_emulator_database_jobs_total", "counter",
           "Units of work (transactions) the database thread ran.");
    sample(out, "vesk_emulator_database_jobs_total", {}, double(gauges.databaseJobs));
    family(out, "vesk_emulator_start_time_seconds", "gauge",
           "When the emulator started, in seconds since the epoch.");
    sample(out, "vesk_emulator_start_time_seconds", {}, gauges.startTimeSeconds);
    return out;
}

} // namespace vesk::emulator
