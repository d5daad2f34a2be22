// The schema of the store and the loading of a seed into it.

#include "Store.h"

#include <QSqlQuery>

namespace vesk::emulator {

namespace {

// Raised when the layout of the tables changes; a database of another
// version is refused rather than misread.
const char* const schemaVersion = "2";
// Version 1 lacked answered_calls and is otherwise the same: the table is
// made when such a database opens, and its cheques committed before have no
// first answer to replay.
const char* const upgradableVersion = "1";

const char* const schema[] = {
    "CREATE TABLE IF NOT EXISTS meta (key TEXT PRIMARY KEY, value TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS items (barcode TEXT PRIMARY KEY, name TEXT NOT NULL, "
    "price_cents INTEGER NOT NULL, sku_id TEXT NOT NULL, item_id TEXT NOT NULL, "
    "article TEXT NOT NULL, color_id TEXT NOT NULL, size_id TEXT NOT NULL, unit_id TEXT NOT NULL, "
    "group_id TEXT NOT NULL, country_code TEXT NOT NULL, vendor_id TEXT NOT NULL, "
    "price_group_id TEXT NOT NULL, tax_code TEXT NOT NULL, barcode_type INTEGER NOT NULL, "
    "properties INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS stock (section_id TEXT NOT NULL, barcode TEXT NOT NULL, "
    "qty_milli INTEGER NOT NULL, PRIMARY KEY (section_id, barcode))",
    "CREATE TABLE IF NOT EXISTS reserved_cheques (cheque_id TEXT PRIMARY KEY, "
    "store_id TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS reservation_lines (cheque_id TEXT NOT NULL, "
    "line_num INTEGER NOT NULL, barcode TEXT NOT NULL, section_id TEXT NOT NULL, "
    "qty_milli INTEGER NOT NULL, PRIMARY KEY (cheque_id, line_num))",
    "CREATE TABLE IF NOT EXISTS cards (card TEXT PRIMARY KEY, holder TEXT NOT NULL, "
    "phone TEXT NOT NULL, pin TEXT NOT NULL, card_type TEXT NOT NULL, "
    "pin_required INTEGER NOT NULL, accrual_percent REAL NOT NULL, "
    "balance_cents INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS tokens (id INTEGER PRIMARY KEY AUTOINCREMENT, token TEXT UNIQUE, "
    "card TEXT NOT NULL, cheque_id TEXT NOT NULL, pin_sent INTEGER NOT NULL DEFAULT 0, "
    "pin_confirmed INTEGER NOT NULL DEFAULT 0)",
    "CREATE TABLE IF NOT EXISTS pin_messages (id INTEGER PRIMARY KEY AUTOINCREMENT, "
    "token TEXT NOT NULL, card TEXT NOT NULL, phone TEXT NOT NULL)",
    "CREATE TABLE IF NOT EXISTS bonus_reservations (data_id TEXT PRIMARY KEY, "
    "card TEXT NOT NULL, amount_cents INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS committed_cheques (data_id TEXT PRIMARY KEY, card TEXT NOT NULL, "
    "total_cents INTEGER NOT NULL, write_off_cents INTEGER NOT NULL, "
    "accrual_cents INTEGER NOT NULL, balance_after_cents INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS parking_tickets (parking_id TEXT PRIMARY KEY, "
    "entry TEXT NOT NULL, stay_hours INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS parking_validations (parking_id TEXT PRIMARY KEY, "
    "data_id TEXT NOT NULL, free_hours INTEGER NOT NULL, total_cents INTEGER NOT NULL, "
    "disc_cents INTEGER NOT NULL, pay_cents INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS answered_calls (operation TEXT NOT NULL, "
    "cheque_id TEXT NOT NULL, guid TEXT NOT NULL, body_digest TEXT NOT NULL, "
    "reply TEXT NOT NULL, PRIMARY KEY (operation, cheque_id, guid))",
};

} // namespace

void Store::createSchema() {
    for (const char* statement : schema)
        exec(QString::fromLatin1(statement));
    QSqlQuery version =
        exec(QStringLiteral("SELECT value FROM meta WHERE key = 'schema'"), QVariantList());
    if (version.next()) {
        const QString found = version.value(0).toString();
        if (found != QLatin1String(schemaVersion) && found != QLatin1String(upgradableVersion))
            throw StoreError(QStringLiteral("it holds the tables of schema %1, not %2")
                                 .arg(found, QLatin1String(schemaVersion))
                                 .toStdString());
    }
    // Also proves that the file can be written, before anyone relies on it.
    exec(QStringLiteral("INSERT OR REPLACE INTO meta (key, value) VALUES ('schema', ?)"),
         {QString::fromLatin1(schemaVersion)});
}

void Store::clear() {
    checkOnThread();
    // Every table of the schema but meta, whose schema version stays.
    static const QLatin1String create("CREATE TABLE IF NOT EXISTS ");
    for (const char* statement : schema) {
        const QString text = QString::fromLatin1(statement);
        const QString table =
            text.mid(create.size(), text.indexOf(QLatin1Char(' '), create.size()) - create.size());
        if (table != QLatin1String("meta"))
            exec(QStringLiteral("DELETE FROM %1").arg(table));
    }
    exec(QStringLiteral("DELETE FROM meta WHERE key = 'seed'"));
    // Token numbers start again from 1, as in a new database.
    exec(QStringLiteral("DELETE FROM sqlite_sequence"));
}

bool Store::hasSeed() {
    checkOnThread();
    return exec(QStringLiteral("SELECT 1 FROM meta WHERE key = 'seed'")).next();
}

QByteArray Store::seedText() {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT value FROM meta WHERE key = 'seed'"));
    return q.next() ? q.value(0).toString().toUtf8() : QByteArray();
}

void Store::loadSeed(const SeedData& seed, const QByteArray& text) {
    checkOnThread();
    const auto str = [](const QString& value) {
        return value.isNull() ? QVariant(QStringLiteral("")) : QVariant(value);
    };
    for (const SeedItem& item : seed.items) {
        exec(QStringLiteral("INSERT INTO items (barcode, name, price_cents, sku_id, item_id, "
                            "article, color_id, size_id, unit_id, group_id, country_code, "
                            "vendor_id, price_group_id, tax_code, barcode_type, properties) "
                            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
             {str(item.barcode), str(item.name), item.price, str(item.skuId), str(item.itemId),
              str(item.article), str(item.colorId), str(item.sizeId), str(item.unitId),
              str(item.groupId), str(item.countryCode), str(item.vendorId), str(item.priceGroupId),
              str(item.taxCode), item.barcodeType, item.properties});
        for (auto it = item.stock.begin(); it != item.stock.end(); ++it)
            addStock(it.key(), item.barcode, it.value());
    }
    for (const SeedCard& card : seed.cards)
        exec(QStringLiteral("INSERT INTO cards (card, holder, phone, pin, card_type, "
                            "pin_required, accrual_percent, balance_cents) VALUES (?, ?, ?, ?, ?, "
                            "?, ?, ?)"),
             {str(card.card), str(card.holder), str(card.phone), str(card.pin), str(card.cardType),
              card.pinRequired ? 1 : 0, card.accrualPercent, card.balance});
    for (const SeedParkingTicket& ticket : seed.parkingTickets)
        exec(QStringLiteral("INSERT INTO parking_tickets (parking_id, entry, stay_hours) VALUES "
                            "(?, ?, ?)"),
             {str(ticket.parkingId), ticket.entry.toString(Qt::ISODate), ticket.stayHours});
    exec(QStringLiteral("INSERT INTO meta (key, value) VALUES ('seed', ?)"),
         {QString::fromUtf8(text)});
}

} // namespace vesk::emulator
