#pragma once

#include "matching/Condition.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <optional>

namespace vesk::emulator {

// The longest delay a rule may give or draw: 10 minutes.
inline constexpr int maxDelayMs = 600000;

// How one reply misbehaves (README.md, "Faults", shows each on the wire).
struct Fault {
    enum class Kind {
        Error,    // status, code and userMsg as a service's refusal; the operation is not done
        Delay,    // ms of silence (or a draw, see Distribution), then the operation's own reply
        Hang,     // no reply for ms, or until the client goes, then the connection closes
        NotJson,  // status 200 with an HTML page; the operation is not done
        Truncate, // half of the operation's reply under a Content-Length for all of it, then close
        Oversize, // the operation's reply padded with spaces to `bytes`: still valid JSON
        Reset,    // the connection is reset (RST) without a reply; the operation is not done
        Dribble,  // the operation's reply, its body in `chunks` pieces spread over ms, then close
        Stall,    // the operation's status line and headers, then nothing for ms, then close
    };
    // Where a delay's ms come from, drawn afresh for each call it hits.
    enum class Distribution {
        Fixed,     // ms
        Uniform,   // minMs to maxMs, each as likely
        LogNormal, // medianMs times e^(sigma * a standard normal number)
    };
    Kind kind = Kind::Error;
    int status = 0; // Error
    int code = 0;   // Error
    QString userMsg;
    int ms = 0;                                      // Delay, Hang, Dribble, Stall
    int chunks = 0;                                  // Dribble
    Distribution distribution = Distribution::Fixed; // Delay
    int minMs = 0;                                   // Uniform
    int maxMs = 0;                                   // Uniform
    int medianMs = 0;                                // LogNormal
    double sigma = 0;                                // LogNormal
    qint64 bytes = 0;                                // Oversize
    // Hang, Reset, Truncate: the operation is done first and its reply is
    // what breaks, so that a till can rehearse a call whose fate it cannot
    // know. A truncated reply is the operation's own either way.
    bool after = false;

    bool operator==(const Fault& other) const;
};

// A fault, the operation that it hits and which of its calls.
struct FaultRule {
    enum class When {
        Always,
        Times,    // the next `times` calls
        Fraction, // each call with probability `fraction`, drawn from a PRNG seeded with `seed`
    };
    QString operation; // an operation's name ("itemInfo"), or "*" for all
    Fault fault;
    // Only calls whose request body meets all of these: a fault aimed at one
    // cheque, card or barcode, so that tests sharing an emulator keep apart.
    QList<Condition> where;
    When when = When::Always;
    qint64 times = 0;
    double fraction = 1;
    quint64 seed = 1; // for the fraction's draws and a delay's, from one generator

    bool operator==(const FaultRule& other) const;
};

// "error", "delay", "hang", "notjson", "truncate", "oversize", "reset",
// "dribble" or "stall".
QString faultKindName(Fault::Kind kind);
// The kind's name, with ",after" for a fault played after the operation: "reset,after".
QString faultName(const Fault& fault);

// The names of the sixteen operations, as in their paths.
const QStringList& operationNames();

// A rule from its text:
//   SPEC  = OPERATION ":" FAULT [";" WHEN] *(";" "where=" CONDITION)
//   FAULT = "error=" STATUS ["," "code=" N] ["," "msg=" TEXT] | "delay=" DELAY
//         | "hang" ["=" MS] [",after"] | "notjson" | "truncate" [",after"]
//         | "oversize" ["=" BYTES] | "reset" [",after"]
//         | "dribble=" MS ["," "chunks=" N] | "stall" ["=" MS]
//   DELAY = MS | "fixed:" MS | "uniform:" MIN "-" MAX ["," "seed=" S]
//         | "lognormal:" MEDIAN "," "sigma=" F ["," "seed=" S]
//   WHEN  = "times=" N | "fraction=" F ["," "seed=" S] | "always"
//   CONDITION as matching/Condition.h reads it: $.dataId == "C-1"
// e.g. "itemInfo:error=500,code=7,msg=Out of stock;times=2" or
// "commitCheque:reset;where=$.dataId == \"C-1\"". A backslash takes the next
// character as it is ("\," "\;" "\\"). nullopt, with what is wrong in
// `error`, for anything else.
std::optional<FaultRule> parseFaultSpec(const QString& spec, QString* error);

// The rule's text in the form above; parseFaultSpec() gives the rule back.
QString faultSpec(const FaultRule& rule);

// The admin API's form of a rule, either {"spec": SPEC} or its members:
//   {"operation": "itemInfo", "fault": "error", "status": 500, "code": 7,
//    "msg": "Out of stock", "times": 2}
// ("distribution": "uniform" with "min" and "max", or "lognormal" with "median" and "sigma",
// for a drawn delay; "ms" for delay, hang, dribble and stall, "chunks" for dribble, "bytes" for
// oversize, "after": true for a fault played after the operation, "fraction" and "seed", "where": a
// list of conditions). Checked as parseFaultSpec() checks the text.
std::optional<FaultRule> faultRuleFromJson(const QJsonObject& object, QString* error);
QJsonObject faultRuleToJson(const FaultRule& rule); // the members' form, with "spec"

} // namespace vesk::emulator
