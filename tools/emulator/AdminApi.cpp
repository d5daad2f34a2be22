#include "AdminApi.h"

#include "FaultRules.h"
#include "Log.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace vesk::emulator {

namespace {

HttpFront::Answer refusal(int status, const QString& userMsg) {
    return {status,
            QJsonObject{{QStringLiteral("code"), status}, {QStringLiteral("userMsg"), userMsg}}};
}

HttpFront::Answer wrongMethod(const std::string& path, const char* allowed) {
    return refusal(
        405,
        QStringLiteral("%1 takes %2").arg(QString::fromStdString(path), QLatin1String(allowed)));
}

} // namespace

AdminApi::AdminApi(FaultRules& faults, std::function<Health()> health,
                   std::function<bool(QString*)> reset)
    : faults_(faults)
    , health_(std::move(health))
    , reset_(std::move(reset)) {}

bool AdminApi::isAdminPath(const std::string& path) {
    return path.rfind(prefix, 0) == 0;
}

HttpFront::Answer AdminApi::answer(const std::string& method, const std::string& path,
                                   const QByteArray& body) const {
    const std::string resource = path.substr(std::string(prefix).size());
    if (resource == "health") {
        if (method != "GET")
            return wrongMethod(path, "GET");
        const Health health = health_();
        return {200, QJsonObject{{QStringLiteral("status"), QStringLiteral("ok")},
                                 {QStringLiteral("uptimeMs"), health.uptimeMs},
                                 {QStringLiteral("requestsServed"), health.requestsServed},
                                 {QStringLiteral("faultsActive"), faults_.active()}}};
    }
    if (resource == "faults") {
        if (method != "GET" && method != "POST" && method != "DELETE")
            return wrongMethod(path, "GET, POST or DELETE");
        return faults(method, body);
    }
    if (resource == "reset") {
        if (method != "POST")
            return wrongMethod(path, "POST");
        QString error;
        if (!reset_(&error))
            return refusal(500, QStringLiteral("The reset failed: %1").arg(error));
        qCInfo(lcEmulator) << "the state is back to the seed's";
        return {200, QJsonObject{{QStringLiteral("reset"), true}}};
    }
    return refusal(404, QStringLiteral("Nothing at %1 (health, faults or reset)")
                            .arg(QString::fromStdString(path)));
}

HttpFront::Answer AdminApi::faults(const std::string& method, const QByteArray& body) const {
    if (method == "GET") {
        QJsonArray list;
        for (const FaultRules::Entry& entry : faults_.list()) {
            QJsonObject rule = faultRuleToJson(entry.rule);
            rule.insert(QStringLiteral("fired"), entry.fired);
            if (entry.remaining >= 0)
                rule.insert(QStringLiteral("remaining"), entry.remaining);
            list.append(rule);
        }
        return {200, QJsonObject{{QStringLiteral("faults"), list}}};
    }
    if (method == "DELETE")
        return {200, QJsonObject{{QStringLiteral("cleared"), faults_.clear()}}};

    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(body, &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject())
        return refusal(400, QStringLiteral("Bad fault: a JSON object is expected"));
    QString error;
    const std::optional<FaultRule> rule = faultRuleFromJson(document.object(), &error);
    if (!rule)
        return refusal(400, QStringLiteral("Bad fault: %1").arg(error));
    faults_.add(*rule);
    qCInfo(lcEmulator).noquote() << "fault added:" << faultSpec(*rule);
    return {201, faultRuleToJson(*rule)};
}

} // namespace vesk::emulator
