#include "Routes.h"

#include "../journal/Journal.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace vesk::emulator {

namespace {

constexpr int defaultLimit = 100;

// A filter from the query's parameters or a JSON body; a refusal for a bad one.
std::optional<JournalFilter> filterOf(const QJsonObject& object, HttpFront::Answer* refused) {
    QString error;
    std::optional<JournalFilter> filter = JournalFilter::fromJson(object, &error);
    if (!filter)
        *refused = AdminRoutes::refusal(400, QStringLiteral("Bad filter: %1").arg(error));
    return filter;
}

HttpFront::Answer listing(const Journal& journal, const QJsonObject& object) {
    HttpFront::Answer refused{};
    const std::optional<JournalFilter> filter = filterOf(object, &refused);
    if (!filter)
        return refused;
    const QJsonValue limitValue = object.value(QStringLiteral("limit"));
    bool ok = true;
    const int limit = limitValue.isUndefined() ? defaultLimit
                      : limitValue.isDouble()  ? limitValue.toInt(-1)
                                               : limitValue.toString().toInt(&ok);
    if (!ok || limit < 0)
        return AdminRoutes::refusal(400, QStringLiteral("Bad filter: limit: a whole number from 0 "
                                                        "is expected (0: all)"));
    const QList<JournalEntry> selected = journal.select(*filter);
    QJsonArray requests;
    const qsizetype first = limit == 0 ? 0 : std::max<qsizetype>(0, selected.size() - limit);
    for (qsizetype i = first; i < selected.size(); ++i)
        requests.append(selected[i].toJson());
    return {200, QJsonObject{{QStringLiteral("requests"), requests},
                             {QStringLiteral("total"), qint64(selected.size())},
                             {QStringLiteral("dropped"), journal.totals().dropped}}};
}

} // namespace

void addJournalRoutes(AdminRoutes& routes, Journal& journal) {
    routes.add("GET", "requests",
               [&journal](const AdminRequest& request) { return listing(journal, request.query); });
    routes.add("DELETE", "requests", [&journal](const AdminRequest&) {
        return HttpFront::Answer{200, QJsonObject{{QStringLiteral("cleared"), journal.clear()}}};
    });
    routes.add("POST", "requests/find", [&journal](const AdminRequest& request) {
        const QJsonDocument document = QJsonDocument::fromJson(request.body);
        if (!request.body.trimmed().isEmpty() && !document.isObject())
            return AdminRoutes::refusal(400,
                                        QStringLiteral("Bad filter: a JSON object is expected"));
        return listing(journal, document.object());
    });
    routes.add("GET", "requests/count", [&journal](const AdminRequest& request) {
        HttpFront::Answer refused{};
        const std::optional<JournalFilter> filter = filterOf(request.query, &refused);
        if (!filter)
            return refused;
        return HttpFront::Answer{
            200, QJsonObject{{QStringLiteral("count"), journal.count(*filter)},
                             {QStringLiteral("dropped"), journal.totals().dropped}}};
    });
}

} // namespace vesk::emulator
