#include "SeedData.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace vesk::emulator {

namespace {

const char* const shippedSeed = ":/vesk/emulator/seed.json";

struct SeedError {
    QString message;
};

// Reads the members of one JSON object, naming the member's place in the
// document ("items[2].price") in every complaint.
class ObjectReader {
public:
    ObjectReader(const QJsonValue& value, const QString& path)
        : path_(path) {
        if (!value.isObject())
            throw SeedError{QStringLiteral("%1: an object expected").arg(where())};
        object_ = value.toObject();
    }

    QString where(const QString& key = QString()) const {
        if (key.isEmpty())
            return path_.isEmpty() ? QStringLiteral("the seed") : path_;
        return path_.isEmpty() ? key : path_ + QLatin1Char('.') + key;
    }

    bool has(const QString& key) const { return object_.contains(key); }
    const QJsonObject& object() const { return object_; }

    QJsonValue required(const QString& key) const {
        if (!object_.contains(key))
            throw SeedError{QStringLiteral("%1: missing").arg(where(key))};
        return object_.value(key);
    }

    QString text(const QString& key, bool mandatory = true) const {
        if (!mandatory && !has(key))
            return QString();
        const QJsonValue value = required(key);
        if (!value.isString())
            throw SeedError{QStringLiteral("%1: a string expected").arg(where(key))};
        if (mandatory && value.toString().isEmpty())
            throw SeedError{QStringLiteral("%1: must not be empty").arg(where(key))};
        return value.toString();
    }

    double number(const QString& key, double min, double max, bool mandatory = true,
                  double fallback = 0) const {
        if (!mandatory && !has(key))
            return fallback;
        const QJsonValue value = required(key);
        const double number = value.toDouble(std::nan(""));
        if (!value.isDouble() || !std::isfinite(number) || number < min || number > max)
            throw SeedError{QStringLiteral("%1: a number from %2 to %3 expected")
                                .arg(where(key))
                                .arg(min, 0, 'f', 0)
                                .arg(max, 0, 'f', 0)};
        return number;
    }

    int integer(const QString& key, int min, int max, bool mandatory = true,
                int fallback = 0) const {
        const double value = number(key, min, max, mandatory, fallback);
        if (value != std::floor(value))
            throw SeedError{QStringLiteral("%1: a whole number expected").arg(where(key))};
        return static_cast<int>(value);
    }

    Cents amount(const QString& key, bool mandatory = true) const {
        return toCents(number(key, 0, maxAmount, mandatory));
    }

    bool flag(const QString& key) const {
        if (!has(key))
            return false;
        const QJsonValue value = object_.value(key);
        if (!value.isBool())
            throw SeedError{QStringLiteral("%1: true or false expected").arg(where(key))};
        return value.toBool();
    }

    QJsonArray array(const QString& key, bool mandatory = true) const {
        if (!mandatory && !has(key))
            return QJsonArray();
        const QJsonValue value = required(key);
        if (!value.isArray())
            throw SeedError{QStringLiteral("%1: an array expected").arg(where(key))};
        return value.toArray();
    }

    QStringList texts(const QString& key) const {
        QStringList result;
        const QJsonArray values = array(key);
        for (qsizetype i = 0; i < values.size(); ++i) {
            if (!values[i].isString() || values[i].toString().isEmpty())
                throw SeedError{
                    QStringLiteral("%1[%2]: a non-empty string expected").arg(where(key)).arg(i)};
            result.append(values[i].toString());
        }
        return result;
    }

private:
    QString path_;
    QJsonObject object_;
};

QString at(const QString& path, qsizetype index) {
    return QStringLiteral("%1[%2]").arg(path).arg(index);
}

SeedItem readItem(const ObjectReader& r) {
    SeedItem item;
    item.barcode = r.text(QStringLiteral("barcode"));
    item.name = r.text(QStringLiteral("name"));
    item.price = r.amount(QStringLiteral("price"));
    item.skuId = r.text(QStringLiteral("skuId"));
    item.itemId = r.text(QStringLiteral("itemId"), false);
    item.article = r.text(QStringLiteral("article"), false);
    item.colorId = r.text(QStringLiteral("colorId"), false);
    item.sizeId = r.text(QStringLiteral("sizeId"), false);
    item.unitId = r.text(QStringLiteral("unitId"), false);
    item.groupId = r.text(QStringLiteral("groupId"), false);
    item.countryCode = r.text(QStringLiteral("countryCode"), false);
    item.vendorId = r.text(QStringLiteral("vendorId"), false);
    item.priceGroupId = r.text(QStringLiteral("priceGroupId"), false);
    item.taxCode = r.text(QStringLiteral("taxCode"), false);
    item.barcodeType = r.integer(QStringLiteral("barcodeType"), 0, 1000000, false);
    item.properties = r.integer(QStringLiteral("properties"), 0, 2147483647, false);
    if (r.has(QStringLiteral("stock"))) {
        const ObjectReader stock(r.object().value(QStringLiteral("stock")),
                                 r.where(QStringLiteral("stock")));
        for (const QString& section : stock.object().keys())
            item.stock.insert(section, toMilli(stock.number(section, 0, maxQuantity)));
    }
    return item;
}

SeedCard readCard(const ObjectReader& r) {
    SeedCard card;
    card.card = r.text(QStringLiteral("card"));
    card.holder = r.text(QStringLiteral("holder"));
    card.phone = r.text(QStringLiteral("phone"));
    card.pin = r.text(QStringLiteral("pin"));
    card.cardType = r.text(QStringLiteral("cardType"));
    card.pinRequired = r.flag(QStringLiteral("pinRequired"));
    card.accrualPercent = r.number(QStringLiteral("accrualPercent"), 0, 100);
    card.balance = r.amount(QStringLiteral("balance"));
    return card;
}

SeedPromotion readPromotion(const ObjectReader& r) {
    SeedPromotion promotion;
    promotion.id = r.text(QStringLiteral("id"));
    promotion.name = r.text(QStringLiteral("name"));
    promotion.description = r.text(QStringLiteral("description"), false);
    promotion.type = r.integer(QStringLiteral("type"), 0, 1000000, false);
    promotion.percent = r.number(QStringLiteral("percent"), 0, 100);
    const QString kind = r.text(QStringLiteral("kind"));
    if (kind == QLatin1String("card")) {
        promotion.kind = SeedPromotion::Kind::Card;
        promotion.cardTypes = r.texts(QStringLiteral("cardTypes"));
    } else if (kind == QLatin1String("set")) {
        promotion.kind = SeedPromotion::Kind::Set;
        promotion.barcodes = r.texts(QStringLiteral("barcodes"));
        promotion.complectId = r.integer(QStringLiteral("complectId"), 0, 1000000, false);
        if (promotion.barcodes.isEmpty())
            throw SeedError{
                QStringLiteral("%1: a set needs at least one barcode").arg(r.where("barcodes"))};
    } else if (kind == QLatin1String("payment")) {
        promotion.kind = SeedPromotion::Kind::Payment;
        const QJsonArray codes = r.array(QStringLiteral("payCodes"));
        for (qsizetype i = 0; i < codes.size(); ++i) {
            const double value = codes[i].toDouble(-1);
            if (!codes[i].isDouble() || value < 0 || value > 1000000 || value != std::floor(value))
                throw SeedError{QStringLiteral("%1: a payment code expected")
                                    .arg(at(r.where(QStringLiteral("payCodes")), i))};
            promotion.payCodes.append(static_cast<int>(value));
        }
        promotion.minTotal = r.amount(QStringLiteral("minTotal"), false);
    } else {
        throw SeedError{QStringLiteral("%1: \"card\", \"set\" or \"payment\" expected, not \"%2\"")
                            .arg(r.where(QStringLiteral("kind")), kind)};
    }
    return promotion;
}

void readParking(const ObjectReader& r, SeedData& seed) {
    seed.parkingHourlyRate = r.amount(QStringLiteral("hourlyRate"));
    const QJsonArray rules = r.array(QStringLiteral("rules"));
    for (qsizetype i = 0; i < rules.size(); ++i) {
        const ObjectReader rule(rules[i], at(r.where(QStringLiteral("rules")), i));
        seed.parkingRules.append({rule.amount(QStringLiteral("minTotal")),
                                  rule.integer(QStringLiteral("freeHours"), 0, 24)});
    }
    std::stable_sort(
        seed.parkingRules.begin(), seed.parkingRules.end(),
        [](const SeedParkingRule& a, const SeedParkingRule& b) { return a.minTotal < b.minTotal; });
    const QJsonArray tickets = r.array(QStringLiteral("tickets"));
    QSet<QString> ids;
    for (qsizetype i = 0; i < tickets.size(); ++i) {
        const ObjectReader ticket(tickets[i], at(r.where(QStringLiteral("tickets")), i));
        SeedParkingTicket entry;
        entry.parkingId = ticket.text(QStringLiteral("parkingId"));
        const QString entryText = ticket.text(QStringLiteral("entry"));
        entry.entry = QDateTime::fromString(entryText, Qt::ISODate);
        if (!entry.entry.isValid())
            throw SeedError{QStringLiteral("%1: an ISO 8601 date and time expected, not \"%2\"")
                                .arg(ticket.where(QStringLiteral("entry")), entryText)};
        entry.stayHours = ticket.integer(QStringLiteral("stayHours"), 0, 24 * 366);
        if (ids.contains(entry.parkingId))
            throw SeedError{QStringLiteral("%1: ticket \"%2\" appears twice")
                                .arg(ticket.where(QStringLiteral("parkingId")), entry.parkingId)};
        ids.insert(entry.parkingId);
        seed.parkingTickets.append(entry);
    }
}

SeedData readSeed(const QJsonDocument& document) {
    const ObjectReader root(document.object(), QString());
    SeedData seed;

    const ObjectReader store(root.required(QStringLiteral("store")), QStringLiteral("store"));
    seed.storeId = store.text(QStringLiteral("storeId"));
    seed.shopNum = store.integer(QStringLiteral("shopNum"), 0, 2147483647);
    seed.defaultSection = store.text(QStringLiteral("defaultSection"));

    QSet<QString> barcodes;
    const QJsonArray items = root.array(QStringLiteral("items"));
    for (qsizetype i = 0; i < items.size(); ++i) {
        const ObjectReader reader(items[i], at(QStringLiteral("items"), i));
        SeedItem item = readItem(reader);
        if (barcodes.contains(item.barcode))
            throw SeedError{QStringLiteral("%1: barcode %2 appears twice")
                                .arg(reader.where(QStringLiteral("barcode")), item.barcode)};
        barcodes.insert(item.barcode);
        seed.items.append(item);
    }

    QSet<QString> cards;
    const QJsonArray cardList = root.array(QStringLiteral("cards"));
    for (qsizetype i = 0; i < cardList.size(); ++i) {
        const ObjectReader reader(cardList[i], at(QStringLiteral("cards"), i));
        SeedCard card = readCard(reader);
        if (cards.contains(card.card))
            throw SeedError{QStringLiteral("%1: card %2 appears twice")
                                .arg(reader.where(QStringLiteral("card")), card.card)};
        cards.insert(card.card);
        seed.cards.append(card);
    }

    QSet<QString> promotionIds;
    const QJsonArray promotions = root.array(QStringLiteral("promotions"), false);
    for (qsizetype i = 0; i < promotions.size(); ++i) {
        const ObjectReader reader(promotions[i], at(QStringLiteral("promotions"), i));
        SeedPromotion promotion = readPromotion(reader);
        if (promotionIds.contains(promotion.id))
            throw SeedError{QStringLiteral("%1: promotion %2 appears twice")
                                .arg(reader.where(QStringLiteral("id")), promotion.id)};
        promotionIds.insert(promotion.id);
        seed.promotions.append(promotion);
    }

    if (root.has(QStringLiteral("loyalty"))) {
        const ObjectReader loyalty(root.object().value(QStringLiteral("loyalty")),
                                   QStringLiteral("loyalty"));
        seed.bonusAccount = loyalty.integer(QStringLiteral("bonusAccount"), 0, 1000000, false, 1);
        seed.maxWriteOffPercent = loyalty.number(QStringLiteral("maxWriteOffPercent"), 0, 100);
    }
    if (root.has(QStringLiteral("parking")))
        readParking(
            ObjectReader(root.object().value(QStringLiteral("parking")), QStringLiteral("parking")),
            seed);
    if (root.has(QStringLiteral("texts"))) {
        const ObjectReader texts(root.object().value(QStringLiteral("texts")),
                                 QStringLiteral("texts"));
        seed.texts.cashier = texts.text(QStringLiteral("cashier"), false);
        seed.texts.cheque = texts.text(QStringLiteral("cheque"), false);
        seed.texts.cashierWithoutCard = texts.text(QStringLiteral("cashierWithoutCard"), false);
        seed.texts.chequeWithoutCard = texts.text(QStringLiteral("chequeWithoutCard"), false);
    }
    return seed;
}

} // namespace

std::optional<SeedData> SeedData::parse(const QByteArray& json, QString* error) {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        if (error)
            *error = QStringLiteral("not JSON: %1 at offset %2")
                         .arg(parseError.errorString())
                         .arg(parseError.offset);
        return std::nullopt;
    }
    if (!document.isObject()) {
        if (error)
            *error = QStringLiteral("the seed must be a JSON object");
        return std::nullopt;
    }
    try {
        return readSeed(document);
    } catch (const SeedError& e) {
        if (error)
            *error = e.message;
        return std::nullopt;
    }
}

std::optional<QByteArray> SeedData::read(const QString& fileName, QString* error) {
    QFile file(fileName.isEmpty() ? QString::fromLatin1(shippedSeed) : fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("cannot read %1: %2").arg(file.fileName(), file.errorString());
        return std::nullopt;
    }
    return file.readAll();
}

SeedData SeedData::shipped() {
    QString error;
    const std::optional<QByteArray> text = read(QString(), &error);
    std::optional<SeedData> seed = text ? parse(*text, &error) : std::nullopt;
    if (!seed)
        qFatal("the shipped seed is broken: %s", qPrintable(error));
    return *seed;
}

} // namespace vesk::emulator
