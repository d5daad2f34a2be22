#include "Routes.h"

#include "../journal/Journal.h"
#include "../verification/Verification.h"

#include <QJsonDocument>

namespace vesk::emulator {

void addVerifyRoute(AdminRoutes& routes, const Journal& journal) {
    routes.add("POST", "verify", [&journal](const AdminRequest& request) {
        const QJsonDocument document = QJsonDocument::fromJson(request.body);
        if (!document.isObject())
            return AdminRoutes::refusal(
                400, QStringLiteral("Bad verification: a JSON object is expected, e.g. "
                                    "{\"operation\": \"commitCheque\", \"exactly\": 1}"));
        QString error;
        const std::optional<Verification> verification =
            Verification::fromJson(document.object(), &error);
        if (!verification)
            return AdminRoutes::refusal(400, QStringLiteral("Bad verification: %1").arg(error));
        // Dropped entries are counted before the selection, so that a drop
        // during it is reported rather than missed.
        const qint64 dropped = journal.totals().dropped;
        const VerificationResult result =
            verify(*verification, journal.select(JournalFilter()), dropped);
        QJsonObject reply = result.toJson();
        if (!result.verified) {
            // Readable by whatever shows the admin API's refusals.
            reply.insert(QStringLiteral("code"), 409);
            reply.insert(QStringLiteral("userMsg"), result.message());
        }
        return HttpFront::Answer{result.verified ? 200 : 409, reply};
    });
}

} // namespace vesk::emulator
