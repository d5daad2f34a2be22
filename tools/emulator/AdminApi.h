#pragma once

#include "HttpFront.h"
#include "admin/AdminRoutes.h"

#include <functional>
#include <string>

namespace vesk::emulator {

class FaultRules;
class Journal;

// The emulator's own routes, under a prefix that no operation's path has:
//   GET    /_emulator/health  {"status": "ok", "uptimeMs": N, "requestsServed": N,
//                              "faultsActive": N, "journal": {...}}
//   POST   /_emulator/reset   every table back to the seed, as on a fresh start, and
//                             the journal emptied; {"reset": true}
//   /_emulator/faults         the fault rules (admin/Routes.h)
//   /_emulator/requests...    the request journal (admin/Routes.h)
//   /_emulator/verify         verification against the journal (admin/Routes.h)
//   GET    /_emulator/metrics the Prometheus text exposition (metrics/Metrics.h)
// Failures come as the operations' do: {"code": N, "userMsg": "..."} with
// the status as the code (400, 404, 405, 500).
class AdminApi {
public:
    static constexpr const char* prefix = "/_emulator/";

    struct Health {
        qint64 uptimeMs = 0;
        qint64 requestsServed = 0;
        bool strictRequests = false; // --strict-requests: misfits are refused
    };
    // `reset` restores the seed's state; false, with the reason, on failure.
    // `metrics`, when given, makes GET /_emulator/metrics: its text.
    AdminApi(FaultRules& faults, Journal& journal, std::function<Health()> health,
             std::function<bool(QString* error)> reset,
             std::function<QByteArray()> metrics = nullptr);

    static bool isAdminPath(const std::string& path);

    // The reply to one request on an admin path.
    HttpFront::Answer answer(const AdminRequest& request) const { return routes_.answer(request); }

private:
    AdminRoutes routes_;
};

} // namespace vesk::emulator
