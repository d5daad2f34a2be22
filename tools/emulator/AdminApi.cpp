#include "AdminApi.h"

#include "FaultRules.h"
#include "Log.h"
#include "admin/Routes.h"
#include "journal/Journal.h"
#include "metrics/Metrics.h"

namespace vesk::emulator {

AdminApi::AdminApi(FaultRules& faults, Journal& journal, std::function<Health()> health,
                   std::function<bool(QString*)> reset, std::function<QByteArray()> metrics) {
    routes_.add("GET", "health", [&faults, &journal, health](const AdminRequest&) {
        const Health now = health();
        const Journal::Totals totals = journal.totals();
        return HttpFront::Answer{
            200,
            QJsonObject{{QStringLiteral("status"), QStringLiteral("ok")},
                        {QStringLiteral("uptimeMs"), now.uptimeMs},
                        {QStringLiteral("requestsServed"), now.requestsServed},
                        {QStringLiteral("faultsActive"), faults.active()},
                        {QStringLiteral("strictRequests"), now.strictRequests},
                        {QStringLiteral("journal"),
                         QJsonObject{{QStringLiteral("size"), totals.size},
                                     {QStringLiteral("bytes"), totals.bytes},
                                     {QStringLiteral("dropped"), totals.dropped},
                                     {QStringLiteral("limit"), journal.limits().entries},
                                     {QStringLiteral("limitBytes"), journal.limits().bytes}}}}};
    });
    addFaultRoutes(routes_, faults);
    routes_.add("POST", "reset", [reset](const AdminRequest&) {
        QString error;
        if (!reset(&error))
            return AdminRoutes::refusal(500, QStringLiteral("The reset failed: %1").arg(error));
        qCInfo(lcEmulator) << "the state is back to the seed's";
        return HttpFront::Answer{200, QJsonObject{{QStringLiteral("reset"), true}}};
    });
    addJournalRoutes(routes_, journal);
    addVerifyRoute(routes_, journal);
    if (metrics)
        routes_.add("GET", "metrics", [metrics](const AdminRequest&) {
            HttpFront::Answer answer{200, QJsonObject()};
            answer.rawBody = metrics();
            answer.rawType = Metrics::contentType;
            return answer;
        });
}

bool AdminApi::isAdminPath(const std::string& path) {
    return path.rfind(prefix, 0) == 0;
}

} // namespace vesk::emulator
