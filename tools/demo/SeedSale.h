#pragma once

// What a sale needs to know of the shipped seed (tools/emulator/seed.json):
// the shop, the GOLD card and its PIN, the parking ticket, the till's payment
// codes, and the card lists both services take. Shared by the demo's sale and
// the bench's.

#include <vesk/disc/CardListEntry.h>
#include <vesk/loyalty/AccountsEntry.h>
#include <vesk/loyalty/CardListEntry.h>

#include <QList>

namespace vesk::demo::seed {

inline constexpr char storeId[] = "S01";
inline constexpr int shopNum = 101;
inline constexpr char saleTime[] = "2026-11-20T10:00:00";
inline constexpr char goldCard[] = "2775000000011";
inline constexpr char goldPin[] = "4321";
inline constexpr int bonusAccount = 1;
inline constexpr char parkingTicket[] = "P-000123";
// Payment codes of the till, as the discount service's payment promotion knows them.
inline constexpr int bankCardCode = 2;
inline constexpr int bonusCode = 5;

// The GOLD card, for the discount service.
inline QList<disc::CardListEntry> discountCards() {
    disc::CardListEntry card;
    card.card = QLatin1String(goldCard);
    return {card};
}

// The GOLD card asking to pay `requested` with bonuses, for the loyalty service.
inline QList<loyalty::CardListEntry> loyaltyCards(double requested) {
    loyalty::AccountsEntry account;
    account.codeAccount = bonusAccount;
    account.requestAmount = requested;
    loyalty::CardListEntry card;
    card.card = QLatin1String(goldCard);
    card.accounts = {account};
    return {card};
}

} // namespace vesk::demo::seed
