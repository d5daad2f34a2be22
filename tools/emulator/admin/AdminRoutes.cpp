#include "AdminRoutes.h"

#include "../AdminApi.h"

#include <QStringList>

namespace vesk::emulator {

namespace {

// "GET", "GET or POST", "GET, POST or DELETE"
QString alternatives(const QStringList& items) {
    if (items.size() < 2)
        return items.value(0);
    return items.mid(0, items.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" or ") +
           items.last();
}

} // namespace

void AdminRoutes::add(const char* method, const char* resource, Handler handler) {
    routes_.push_back({method, resource, std::move(handler)});
}

HttpFront::Answer AdminRoutes::answer(const AdminRequest& request) const {
    const std::string resource = request.path.substr(std::string(AdminApi::prefix).size());
    QStringList methods;
    QStringList resources;
    for (const Route& route : routes_) {
        if (route.resource == resource) {
            if (route.method == request.method)
                return route.handler(request);
            methods.append(QString::fromStdString(route.method));
        }
        const QString name = QString::fromStdString(route.resource);
        if (!resources.contains(name))
            resources.append(name);
    }
    const QString path = QString::fromStdString(request.path);
    if (!methods.isEmpty())
        return refusal(405, QStringLiteral("%1 takes %2").arg(path, alternatives(methods)));
    return refusal(404, QStringLiteral("Nothing at %1 (%2)").arg(path, alternatives(resources)));
}

HttpFront::Answer AdminRoutes::refusal(int status, const QString& userMsg) {
    return {status,
            QJsonObject{{QStringLiteral("code"), status}, {QStringLiteral("userMsg"), userMsg}}};
}

} // namespace vesk::emulator
