#include "FaultRules.h"

#include "DelayDraw.h"

#include <QJsonDocument>

namespace vesk::emulator {

void FaultRules::add(const FaultRule& rule) {
    Live live{Entry{rule, 0, rule.when == FaultRule::When::Times ? rule.times : -1},
              std::mt19937_64(rule.seed)};
    const std::lock_guard<std::mutex> lock(mutex_);
    rules_.push_back(std::move(live));
}

void FaultRules::setLatency(const std::optional<FaultRule>& latency) {
    const std::lock_guard<std::mutex> lock(mutex_);
    latency_.reset();
    if (latency)
        latency_ = Live{Entry{*latency, 0, -1}, std::mt19937_64(latency->seed)};
}

int FaultRules::clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    const int count = int(rules_.size());
    rules_.clear();
    return count;
}

QList<FaultRules::Entry> FaultRules::list() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    QList<Entry> entries;
    for (const Live& live : rules_)
        entries.append(live.entry);
    return entries;
}

int FaultRules::active() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    int count = 0;
    for (const Live& live : rules_)
        count += live.entry.remaining != 0 ? 1 : 0;
    return count;
}

bool FaultRules::fires(std::mt19937_64& generator, double fraction) {
    const double draw = double(generator() >> 11) * (1.0 / double(quint64(1) << 53));
    return draw < fraction;
}

std::optional<Fault> FaultRules::take(const QString& operation, const QByteArray& body) {
    return take(operation, QJsonDocument::fromJson(body).object());
}

std::optional<Fault> FaultRules::take(const QString& operation, const QJsonObject& parsed) {
    std::optional<Fault> fault;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (Live& live : rules_) {
            Entry& entry = live.entry;
            if (entry.rule.operation != QLatin1String("*") && entry.rule.operation != operation)
                continue;
            if (!entry.rule.where.isEmpty() && !allHold(entry.rule.where, parsed))
                continue;
            bool fire = false;
            switch (entry.rule.when) {
            case FaultRule::When::Always:
                fire = true;
                break;
            case FaultRule::When::Times:
                fire = entry.remaining > 0;
                if (fire)
                    --entry.remaining;
                break;
            case FaultRule::When::Fraction:
                fire = fires(live.generator, entry.rule.fraction);
                break;
            }
            if (fire) {
                ++entry.fired;
                ++firedInAll_;
                fault = entry.rule.fault;
                // Drawn here, under the lock, so that a seed gives the same delays.
                if (fault->kind == Fault::Kind::Delay)
                    fault->ms = drawDelayMs(*fault, live.generator);
                break;
            }
        }
        if (!fault && latency_) {
            fault = latency_->entry.rule.fault;
            fault->ms = drawDelayMs(*fault, latency_->generator);
            return fault;
        }
    }
    if (fault)
        firedChanged_.notify_all();
    return fault;
}

bool FaultRules::waitFired(qint64 count, std::chrono::milliseconds timeout) const {
    std::unique_lock<std::mutex> lock(mutex_);
    return firedChanged_.wait_for(lock, timeout, [&] { return firedInAll_ >= count; });
}

} // namespace vesk::emulator
