#pragma once

#include "RecordingClient.h"

#include <QSharedPointer>
#include <QString>

#include <functional>

namespace vesk::cli {

// How one call of a load run went.
struct BenchCall {
    enum class Outcome { Done, ServiceError, Network, Content };
    Outcome outcome = Outcome::Done;
    int code = 0; // of a service error
    qint64 microseconds = 0;
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
// telling a content failure from a network one by `client`'s last reply.
BenchCall timeCall(const RecordingClient& client, const std::function<void()>& call);

} // namespace vesk::cli
