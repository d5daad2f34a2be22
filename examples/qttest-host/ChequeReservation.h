#pragma once

#include <QString>
#include <QStringList>

namespace till {

// What became of the reservation of a cheque's goods.
struct Reservation {
    enum class State {
        Reserved, // every line is reserved, or sold without a reservation
        Refused,  // the back office said no: nothing is reserved
        NotSent,  // the request never left: reserve again
        Uncertain // it may have been reserved: release it before trying again
    };
    State state = State::NotSent;
    QStringList unreserved; // barcodes sold without a reservation
    QString message;
};

// Reserves one piece of each barcode, in this order, for the cheque.
Reservation reserveCheque(const QString& storeId, const QString& chequeId,
                          const QStringList& barcodes);

} // namespace till
