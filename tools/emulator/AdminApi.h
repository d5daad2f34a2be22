#pragma once

#include "HttpFront.h"

#include <QByteArray>

#include <functional>
#include <string>

namespace vesk::emulator {

class FaultRules;

// The emulator's own routes, under a prefix that no operation's path has:
//   GET    /_emulator/health  {"status": "ok", "uptimeMs": N, "requestsServed": N,
//                              "faultsActive": N}
//   GET    /_emulator/faults  {"faults": [rule, ...]}, each rule as
//                             faultRuleToJson() gives it with "fired" (and
//                             "remaining" for a "times" rule)
//   POST   /_emulator/faults  a rule (Fault.h: faultRuleFromJson); 201 with the rule
//   DELETE /_emulator/faults  clears them all; {"cleared": N}
//   POST   /_emulator/reset   every table back to the seed, as on a fresh start; {"reset": true}
// Failures come as the operations' do: {"code": N, "userMsg": "..."} with
// the status as the code (400, 404, 405, 500).
class AdminApi {
public:
    static constexpr const char* prefix = "/_emulator/";

    struct Health {
        qint64 uptimeMs = 0;
        qint64 requestsServed = 0;
    };
    // `reset` restores the seed's state; false, with the reason, on failure.
    AdminApi(FaultRules& faults, std::function<Health()> health,
             std::function<bool(QString* error)> reset);

    static bool isAdminPath(const std::string& path);

    // The reply to one request on an admin path.
    HttpFront::Answer answer(const std::string& method, const std::string& path,
                             const QByteArray& body) const;

private:
    HttpFront::Answer faults(const std::string& method, const QByteArray& body) const;

    FaultRules& faults_;
    std::function<Health()> health_;
    std::function<bool(QString*)> reset_;
};

} // namespace vesk::emulator
