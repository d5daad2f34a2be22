#include "Routes.h"

#include "../FaultRules.h"
#include "../Log.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace vesk::emulator {

void addFaultRoutes(AdminRoutes& routes, FaultRules& faults) {
    routes.add("GET", "faults", [&faults](const AdminRequest&) {
        QJsonArray list;
        for (const FaultRules::Entry& entry : faults.list()) {
            QJsonObject rule = faultRuleToJson(entry.rule);
            rule.insert(QStringLiteral("fired"), entry.fired);
            if (entry.remaining >= 0)
                rule.insert(QStringLiteral("remaining"), entry.remaining);
            list.append(rule);
        }
        return HttpFront::Answer{200, QJsonObject{{QStringLiteral("faults"), list}}};
    });
    routes.add("POST", "faults", [&faults](const AdminRequest& request) {
        QJsonParseError parseError;
        const QJsonDocument document = QJsonDocument::fromJson(request.body, &parseError);
        if (parseError.error != QJsonParseError::NoError || !document.isObject())
            return AdminRoutes::refusal(400,
                                        QStringLiteral("Bad fault: a JSON object is expected"));
        QString error;
        const std::optional<FaultRule> rule = faultRuleFromJson(document.object(), &error);
        if (!rule)
            return AdminRoutes::refusal(400, QStringLiteral("Bad fault: %1").arg(error));
        faults.add(*rule);
        qCInfo(lcEmulator).noquote() << "fault added:" << faultSpec(*rule);
        return HttpFront::Answer{201, faultRuleToJson(*rule)};
    });
    routes.add("DELETE", "faults", [&faults](const AdminRequest&) {
        return HttpFront::Answer{200, QJsonObject{{QStringLiteral("cleared"), faults.clear()}}};
    });
}

} // namespace vesk::emulator
