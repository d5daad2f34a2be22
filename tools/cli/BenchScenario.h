#pragma once

#include <vesk/CallOutcome.h>

#include "RecordingClient.h"

#include <QSharedPointer>
#include <QString>

#include <functional>

namespace vesk::cli {

// How one call of a load run went.
struct BenchCall {
    // How the call ended, as its outcome says; a 200 whose body is no JSON
    // object counts as a failure here, though the library takes it.
    CallOutcome::Failure failure = CallOutcome::Failure::None;
    int code = 0; // of a service error
    qint64 microseconds = 0;

    bool failed() const { return failure != CallOutcome::Failure::None; }
    // "ServiceError 42", "NoReply", "NotAnObject": how a report counts it.
    QString kind() const;
};

// Takes each call's BenchCall as it ends.
using BenchRecorder = std::function<void(const BenchCall&)>;

// One whole sale of the shipped seed through all sixteen operations, each
// its own call, through `client`: scan, reserve, identify the card and
// confirm its PIN, balance, discounts, promotions, bonus calculation and
// reservation, discounts with payments, commit, parking, the two texts, and
// the release of the reservation. `cheque` must be new to the back office.
// A failed step ends the sale early, after releasing the reservation.
// Returns whether every call succeeded.
bool runWholeSaleCalls(const QSharedPointer<RecordingClient>& client, const QString& cheque,
                       const BenchRecorder& record);

// Times `call` (which throws what the library throws) as one BenchCall,
// of the kind that the outcome of the call it performed last says.
BenchCall timeCall(const std::function<void()>& call);

} // namespace vesk::cli
