#pragma once

#include "AdminRoutes.h"

namespace vesk::emulator {

class FaultRules;
class Journal;

// Each unit of the admin API adds its lines to the table.

//   GET    faults  {"faults": [rule, ...]}, each as faultRuleToJson() gives it with
//                  "fired" (and "remaining" for a "times" rule)
//   POST   faults  a rule (Fault.h: faultRuleFromJson); 201 with the rule
//   DELETE faults  clears them all; {"cleared": N}
void addFaultRoutes(AdminRoutes& routes, FaultRules& faults);

//   GET    requests        the journal's requests that a filter admits, oldest first:
//                          {"requests": [...], "total": N, "dropped": N}; query
//                          parameters operation, status, since, until, where (repeated),
//                          limit (the newest N; default 100, 0: all)
//   POST   requests/find   the same, with the filter as a JSON object
//   GET    requests/count  {"count": N, "dropped": N}, the same filter
//   DELETE requests        empties the journal; {"cleared": N}
void addJournalRoutes(AdminRoutes& routes, Journal& journal);

//   POST   verify  a verification (Verification.h); 200 {"verified": true, ...}
//                  when it holds, 409 {"verified": false, "message": ..., "nearMisses": ...}
//                  when it does not
void addVerifyRoute(AdminRoutes& routes, const Journal& journal);

} // namespace vesk::emulator
