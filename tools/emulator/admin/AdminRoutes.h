#pragma once

#include "../HttpFront.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <string>
#include <vector>

namespace vesk::emulator {

// One request on an admin path, as a route's handler sees it.
struct AdminRequest {
    std::string method;
    std::string path; // the whole path: "/_emulator/requests/count"
    QByteArray body;
    // The query's parameters: "where", which may repeat, as a list; the
    // others as text, the last one given.
    QJsonObject query;
};

// The admin API's table: a method and a resource (the path below
// /_emulator/) to one handler. A new admin feature is a new handler and a line
// in the table. Everything else is answered here: 404 for a resource that no
// line names, 405 with the methods that it takes.
class AdminRoutes {
public:
    using Handler = std::function<HttpFront::Answer(const AdminRequest&)>;

    void add(const char* method, const char* resource, Handler handler);
    HttpFront::Answer answer(const AdminRequest& request) const;

    // {"code": STATUS, "userMsg": ...}, the admin API's refusal.
    static HttpFront::Answer refusal(int status, const QString& userMsg);

private:
    struct Route {
        std::string method;
        std::string resource;
        Handler handler;
    };
    std::vector<Route> routes_;
};

} // namespace vesk::emulator
