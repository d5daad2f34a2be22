#pragma once

#include "Money.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace vesk::emulator {

// What the emulator starts from: the store, its goods and stock, the loyalty
// cards, the promotions, the parking rules and the texts. Read from a JSON
// file (seed.json beside this header is the one shipped, compiled in); the
// goods, stock and cards go into an empty database once, the rules are read
// from the seed kept in the database on every start.
struct SeedItem {
    QString barcode;
    QString name;
    QString skuId;
    QString itemId;
    QString article;
    QString colorId;
    QString sizeId;
    QString unitId;
    QString groupId;
    QString countryCode;
    QString vendorId;
    QString priceGroupId;
    QString taxCode;
    int barcodeType = 0;
    int properties = 0;
    Cents price = 0;
    QMap<QString, Milli> stock; // by store section
};

struct SeedCard {
    QString card;
    QString holder;
    QString phone;
    QString pin;
    QString cardType;
    bool pinRequired = false; // a PIN must be confirmed before bonuses are paid with the card
    double accrualPercent = 0;
    Cents balance = 0;
};

// A promotion of the discount service. Every promotion is a percentage of the
// retail price (or, for a payment promotion, of the payment); promotions add
// up, they are not applied one on top of another.
struct SeedPromotion {
    enum class Kind { Card, Set, Payment };
    QString id;
    QString name;
    QString description;
    Kind kind = Kind::Card;
    int type = 0; // publicityType in the promotion list
    double percent = 0;
    QStringList cardTypes; // Card: the card types that get it
    QStringList barcodes;  // Set: one unit of each makes a set
    int complectId = 0;    // Set: the set's number on the discount lines
    QList<int> payCodes;   // Payment: the payment codes that get it
    Cents minTotal = 0;    // Payment: the least cheque total after discounts
};

struct SeedParkingRule {
    Cents minTotal = 0; // the least cheque total for these free hours
    int freeHours = 0;
};

struct SeedParkingTicket {
    QString parkingId;
    QDateTime entry;
    int stayHours = 0; // the stay billed at validation: the emulator does not read the clock
};

struct SeedTexts {
    // Placeholders: {holder}, {cardType}, {card} (masked), {balance}, {accrued}, {paid}.
    QString cashier;
    QString cheque;
    QString cashierWithoutCard;
    QString chequeWithoutCard;
};

struct SeedData {
    QString storeId;
    int shopNum = 0;
    QString defaultSection; // the section of a reservation line that names none
    QList<SeedItem> items;
    QList<SeedCard> cards;
    QList<SeedPromotion> promotions;
    int bonusAccount = 1;          // codeAccount of the bonus account
    double maxWriteOffPercent = 0; // the most of a cheque that bonuses may pay
    Cents parkingHourlyRate = 0;
    QList<SeedParkingRule> parkingRules; // by minTotal, ascending
    QList<SeedParkingTicket> parkingTickets;
    SeedTexts texts;

    // The seed in a JSON text; nullopt with the reason in `error`.
    static std::optional<SeedData> parse(const QByteArray& json, QString* error);
    // The JSON text of a file, or of the shipped seed when `fileName` is empty.
    static std::optional<QByteArray> read(const QString& fileName, QString* error);
    // The shipped seed, parsed. It always parses (a test checks it).
    static SeedData shipped();
};

} // namespace vesk::emulator
