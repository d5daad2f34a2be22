#pragma once

#include "SeedData.h"
#include "Store.h"

#include <vesk/sales/sales.h>

namespace vesk::emulator {

// The sales service: item information by barcode, and reservation of a
// cheque's goods in the stock of store sections.
//
// - itemInfo: the catalogue's data of the barcode; an unknown barcode is
//   refused (404, code 1001).
// - reserveCheque: takes each line's quantity from the stock of its section
//   (the store's default section when the line names none). A line that the
//   stock cannot cover takes what there is and says so: existWithoutReservation
//   true, qtyWithoutReservation the quantity not reserved, and a message.
//   Reserving a cheque again first gives back what it held: the new lines
//   replace the old. (Over HTTP, RepeatGuard answers a cheque sent again
//   before it gets here: the same body gets the first answer, another body
//   is refused until unreserveCheque lets the cheque go.) An unknown barcode refuses the whole
//   cheque (404, 1001); a quantity that is not more than 0 and at most 1000000, an empty chequeId
//   or a line number given twice refuse it too (400, 1000).
// - unreserveCheque: gives the cheque's goods back to stock; a cheque without
//   a reservation is refused (404, 1002).
class SalesService {
public:
    SalesService(Store& store, const SeedData& seed);

    sales::ItemInfoResponse itemInfo(const sales::ItemInfoRequest& request);
    sales::ReserveChequeResponse reserveCheque(const sales::ReserveChequeRequest& request);
    sales::UnreserveChequeResponse unreserveCheque(const sales::UnreserveChequeRequest& request);

private:
    Store& store_;
    const SeedData& seed_;
};

} // namespace vesk::emulator
