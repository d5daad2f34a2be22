#pragma once

#include "HttpFront.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace vesk::emulator {

class Store;

// The emulator's rule for a call that takes effect once per cheque
// (commitCheque, reserveCheque, calcAndReserveBonusPay) when it comes again,
// as it does from a till that cannot know whether its first call got through:
// - the same cheque with the same body gets the first answer again, and
//   nothing changes ("replayed" in the log line);
// - the same cheque with another body is refused: 409, code 409, a message
//   that names the cheque and the operation ("refused: same cheque,
//   different body" in the log line).
// A cheque is named by members of the body: its id (chequeId or dataId)
// and, where the operation has one, its guid. Bodies are the same when they
// are the same JSON object, whatever the order of the members. Only an
// answer that took effect (200) is kept: a refused call changed nothing, so
// its repeat is a call of its own. The first answers are kept in the store,
// as long as the rest of the state (a reset forgets them); unreserveCheque
// lets its cheque's reserveCheque go, so that the cheque can be reserved
// anew.
class RepeatGuard {
public:
    explicit RepeatGuard(Store& store)
        : store_(store) {}

    // The members of a body that name its cheque.
    struct Identification {
        QString chequeKey; // "chequeId" or "dataId"
        QString guidKey;   // "guid"; empty when the operation has none
    };

    // `operation`, which the routes know as `name`, kept to one effect per
    // cheque. A body without the cheque's id goes to the operation, which
    // refuses it.
    HttpFront::Operation once(const QString& name, const Identification& by,
                              HttpFront::Operation operation);

    // `operation`, which forgets the calls of `guarded` for the cheque in
    // the body's `chequeKey` when it succeeds, in the same transaction.
    HttpFront::Operation releasing(const QString& guarded, const QString& chequeKey,
                                   HttpFront::Operation operation);

    // What two bodies have alike when they are the same JSON object: the
    // SHA-256 (hex) of the object's compact JSON, its members sorted.
    static QByteArray digest(const QVariantMap& body);

private:
    Store& store_;
};

} // namespace vesk::emulator
