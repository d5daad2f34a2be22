#pragma once

#include "SeedData.h"
#include "Store.h"

#include <vesk/disc/disc.h>

namespace vesk::emulator {

// The discount service: the seed's promotions applied to a cheque.
//
// Every promotion is a percentage; they add up and are not applied one on
// top of another. A line discount is a per-unit amount (discUnit, rounded to
// the cent) on a quantity (discQty), and is worth discUnit x discQty rounded
// to the cent.
// - card: percent of the retail price of every line when a card of one of
//   its types is in cardList;
// - set: percent of the retail price of one unit of each of its barcodes,
//   once per complete set (the set's complectId on the lines);
// - payment (discCalcPay only): percent of each payment of one of its codes,
//   up to the cheque's total after discounts, when that total is at least the
//   promotion's minimum. The payment's discount is spread over the lines in
//   proportion to their amounts after discounts, and booked on each line as
//   one entry with discQty 1, discUnit the line's share, and the payment's
//   payLineNum and payCode. A payment's discAmount is the sum of its shares,
//   payAmount its amount less discAmount.
//
// A non-empty `publicities` in a calculation request limits the promotions
// to those ids. getPublicityList answers variant 1 with the card and set
// promotions that the cheque qualifies for, and the next variant with those
// and the payment promotions open to it (publicityAmount is the percent).
// A line whose qty is not more than 0 and at most 1000000, or whose price or
// a payment's amount is not from 0 to 1000000000, is refused (400, 2000).
class DiscountService {
public:
    DiscountService(Store& store, const SeedData& seed);

    disc::DiscCalcResponse discCalc(const disc::DiscCalcRequest& request);
    disc::DiscCalcPayResponse discCalcPay(const disc::DiscCalcPayRequest& request);
    disc::GetPublicityListResponse getPublicityList(const disc::GetPublicityListRequest& request);

private:
    struct Calculation;
    Calculation calculate(const QList<disc::CardListEntry>& cards,
                          const QList<disc::LinesEntryRequest>& lines,
                          const QStringList& publicities);
    // The presented cards that the store knows, with their types, in order.
    QList<Store::Card> knownCards(const QList<disc::CardListEntry>& cards);

    Store& store_;
    const SeedData& seed_;
};

} // namespace vesk::emulator
