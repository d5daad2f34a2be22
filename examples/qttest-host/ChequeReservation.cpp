#include "ChequeReservation.h"

#include <vesk/vesk.h>

namespace till {

Reservation reserveCheque(const QString& storeId, const QString& chequeId,
                          const QStringList& barcodes) {
    vesk::sales::ReserveChequeRequest request;
    request.storeId = storeId;
    request.chequeId = chequeId;
    for (const QString& barcode : barcodes) {
        vesk::sales::ReserveLinesEntryRequest line;
        line.barcode = barcode;
        line.lineNum = int(request.lines.size()) + 1;
        line.qty = 1;
        request.lines.append(line);
    }
    Reservation reservation;
    try {
        const vesk::sales::ReserveChequeResponse reply =
            vesk::sales::Api::getInstance()->reserveCheque(request).response();
        reservation.state = Reservation::State::Reserved;
        for (const vesk::sales::ReserveLinesEntryResponse& line : reply.lines) {
            if (line.existWithoutReservation)
                reservation.unreserved.append(line.barcode);
        }
    } catch (const vesk::NetworkException& e) {
        // Whether the back office may have reserved the goods decides what
        // the till does next.
        const bool sent = vesk::lastCallOutcome().reached() != vesk::CallOutcome::Reached::No;
        reservation.state = sent ? Reservation::State::Uncertain : Reservation::State::NotSent;
        reservation.message = QString::fromUtf8(e.what());
    } catch (const vesk::Exception& e) {
        reservation.state = Reservation::State::Refused;
        reservation.message = QString::fromUtf8(e.what());
    }
    return reservation;
}

} // namespace till
