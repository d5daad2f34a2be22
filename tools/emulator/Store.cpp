#include "Store.h"

#include <QAtomicInteger>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace vesk::emulator {

namespace {

QString newConnectionName() {
    static QAtomicInteger<int> counter;
    return QStringLiteral("vesk-emulator-%1").arg(counter.fetchAndAddRelaxed(1) + 1);
}

// The text of a column, never null (columns are NOT NULL; a null QString
// would be bound as NULL).
QVariant text(const QString& value) {
    return value.isNull() ? QVariant(QStringLiteral("")) : QVariant(value);
}

} // namespace

Store::Store()
    : connectionName_(newConnectionName()) {}

Store::~Store() {
    close();
}

void Store::checkOnThread() const {
    if (!thread_.isCurrent() || !db_ || depth_ == 0)
        throw StoreError("the store is used outside of a transaction");
}

bool Store::open(const QString& fileName, QString* error) {
    return thread_.run([&]() {
        const auto fail = [&](const QString& why) {
            if (error)
                *error = why;
            db_.reset();
            QSqlDatabase::removeDatabase(connectionName_);
            return false;
        };
        if (db_)
            return fail(QStringLiteral("the store is open already"));
        db_ = std::make_unique<QSqlDatabase>(
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName_));
        if (!db_->isValid())
            return fail(QStringLiteral("the Qt SQLite driver is not available (install "
                                       "libqt6sql6-sqlite)"));
        const QString where = fileName.isEmpty() ? QStringLiteral(":memory:") : fileName;
        db_->setDatabaseName(where);
        // A till waits briefly rather than fail if another program holds the file.
        db_->setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
        if (!db_->open())
            return fail(
                QStringLiteral("cannot open database %1: %2").arg(where, db_->lastError().text()));
        try {
            Scope scope(*this);
            createSchema();
            scope.commit();
        } catch (const StoreError& e) {
            db_->close();
            return fail(QStringLiteral("cannot use database %1: %2")
                            .arg(where, QString::fromUtf8(e.what())));
        }
        return true;
    });
}

void Store::close() {
    thread_.run([this]() {
        if (!db_)
            return;
        db_->close();
        db_.reset();
        QSqlDatabase::removeDatabase(connectionName_);
    });
}

Store::Scope::Scope(Store& store)
    : store_(store)
    , outer_(store.depth_ == 0) {
    if (!store_.db_)
        throw StoreError("the store is not open");
    if (outer_)
        store_.exec(QStringLiteral("BEGIN IMMEDIATE"));
    ++store_.depth_;
}

Store::Scope::~Scope() {
    --store_.depth_;
    if (outer_ && !done_) {
        QSqlQuery rollback(*store_.db_);
        rollback.exec(QStringLiteral("ROLLBACK")); // its failure leaves nothing to undo
    }
}

void Store::Scope::commit() {
    if (outer_)
        store_.exec(QStringLiteral("COMMIT"));
    done_ = true;
}

QSqlQuery Store::exec(const QString& sql, const QVariantList& values) {
    QSqlQuery query(*db_);
    if (!query.prepare(sql))
        throw StoreError(
            QStringLiteral("%1 [%2]").arg(query.lastError().text(), sql).toStdString());
    for (const QVariant& value : values)
        query.addBindValue(value);
    if (!query.exec())
        throw StoreError(
            QStringLiteral("%1 [%2]").arg(query.lastError().text(), sql).toStdString());
    return query;
}

// Goods and stock.

std::optional<Store::Item> Store::item(const QString& barcode) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT name, price_cents, sku_id, item_id, article, "
                                      "color_id, size_id, unit_id, group_id, country_code, "
                                      "vendor_id, price_group_id, tax_code, barcode_type, "
                                      "properties FROM items WHERE barcode = ?"),
                       {text(barcode)});
    if (!q.next())
        return std::nullopt;
    Item item;
    item.barcode = barcode;
    item.name = q.value(0).toString();
    item.price = q.value(1).toLongLong();
    item.skuId = q.value(2).toString();
    item.itemId = q.value(3).toString();
    item.article = q.value(4).toString();
    item.colorId = q.value(5).toString();
    item.sizeId = q.value(6).toString();
    item.unitId = q.value(7).toString();
    item.groupId = q.value(8).toString();
    item.countryCode = q.value(9).toString();
    item.vendorId = q.value(10).toString();
    item.priceGroupId = q.value(11).toString();
    item.taxCode = q.value(12).toString();
    item.barcodeType = q.value(13).toInt();
    item.properties = q.value(14).toInt();
    return item;
}

Milli Store::stock(const QString& sectionId, const QString& barcode) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT qty_milli FROM stock WHERE section_id = ? AND "
                                      "barcode = ?"),
                       {text(sectionId), text(barcode)});
    return q.next() ? q.value(0).toLongLong() : 0;
}

void Store::addStock(const QString& sectionId, const QString& barcode, Milli delta) {
    checkOnThread();
    exec(QStringLiteral("INSERT INTO stock (section_id, barcode, qty_milli) VALUES (?, ?, ?) "
                        "ON CONFLICT (section_id, barcode) DO UPDATE SET qty_milli = qty_milli + "
                        "excluded.qty_milli"),
         {text(sectionId), text(barcode), delta});
}

// Reservations of goods.

std::optional<QList<Store::ReservedLine>> Store::reservation(const QString& chequeId) {
    checkOnThread();
    if (!exec(QStringLiteral("SELECT 1 FROM reserved_cheques WHERE cheque_id = ?"),
              {text(chequeId)})
             .next())
        return std::nullopt;
    QSqlQuery q = exec(QStringLiteral("SELECT line_num, barcode, section_id, qty_milli FROM "
                                      "reservation_lines WHERE cheque_id = ? ORDER BY line_num"),
                       {text(chequeId)});
    QList<ReservedLine> lines;
    while (q.next())
        lines.append({q.value(0).toInt(), q.value(1).toString(), q.value(2).toString(),
                      q.value(3).toLongLong()});
    return lines;
}

void Store::saveReservation(const QString& chequeId, const QString& storeId,
                            const QList<ReservedLine>& lines) {
    checkOnThread();
    dropReservation(chequeId);
    exec(QStringLiteral("INSERT INTO reserved_cheques (cheque_id, store_id) VALUES (?, ?)"),
         {text(chequeId), text(storeId)});
    for (const ReservedLine& line : lines)
        exec(QStringLiteral("INSERT INTO reservation_lines (cheque_id, line_num, barcode, "
                            "section_id, qty_milli) VALUES (?, ?, ?, ?, ?)"),
             {text(chequeId), line.lineNum, text(line.barcode), text(line.sectionId), line.qty});
}

void Store::dropReservation(const QString& chequeId) {
    checkOnThread();
    exec(QStringLiteral("DELETE FROM reservation_lines WHERE cheque_id = ?"), {text(chequeId)});
    exec(QStringLiteral("DELETE FROM reserved_cheques WHERE cheque_id = ?"), {text(chequeId)});
}

// Cards, tokens and PINs.

std::optional<Store::Card> Store::card(const QString& number) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT holder, phone, pin, card_type, pin_required, "
                                      "accrual_percent, balance_cents FROM cards WHERE card = ?"),
                       {text(number)});
    if (!q.next())
        return std::nullopt;
    Card card;
    card.card = number;
    card.holder = q.value(0).toString();
    card.phone = q.value(1).toString();
    card.pin = q.value(2).toString();
    card.cardType = q.value(3).toString();
    card.pinRequired = q.value(4).toInt() != 0;
    card.accrualPercent = q.value(5).toDouble();
    card.balance = q.value(6).toLongLong();
    return card;
}

void Store::setBalance(const QString& number, Cents balance) {
    checkOnThread();
    exec(QStringLiteral("UPDATE cards SET balance_cents = ? WHERE card = ?"),
         {balance, text(number)});
}

Store::Token Store::issueToken(const QString& card, const QString& chequeId) {
    checkOnThread();
    const qlonglong id = exec(QStringLiteral("INSERT INTO tokens (card, cheque_id) VALUES (?, ?)"),
                              {text(card), text(chequeId)})
                             .lastInsertId()
                             .toLongLong();
    Token token;
    token.token = QStringLiteral("T%1").arg(id, 6, 10, QLatin1Char('0'));
    token.card = card;
    token.chequeId = chequeId;
    exec(QStringLiteral("UPDATE tokens SET token = ? WHERE id = ?"), {token.token, id});
    return token;
}

std::optional<Store::Token> Store::token(const QString& token) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT card, cheque_id, pin_sent, pin_confirmed FROM "
                                      "tokens WHERE token = ?"),
                       {text(token)});
    if (!q.next())
        return std::nullopt;
    return Token{token, q.value(0).toString(), q.value(1).toString(), q.value(2).toInt() != 0,
                 q.value(3).toInt() != 0};
}

void Store::recordPinSent(const QString& token, const QString& card, const QString& phone) {
    checkOnThread();
    exec(QStringLiteral("UPDATE tokens SET pin_sent = 1 WHERE token = ?"), {text(token)});
    exec(QStringLiteral("INSERT INTO pin_messages (token, card, phone) VALUES (?, ?, ?)"),
         {text(token), text(card), text(phone)});
}

void Store::confirmPin(const QString& token) {
    checkOnThread();
    exec(QStringLiteral("UPDATE tokens SET pin_confirmed = 1 WHERE token = ?"), {text(token)});
}

int Store::pinMessageCount(const QString& card) {
    checkOnThread();
    QSqlQuery q =
        exec(QStringLiteral("SELECT COUNT(*) FROM pin_messages WHERE card = ?"), {text(card)});
    return q.next() ? q.value(0).toInt() : 0;
}

// Bonus reservations.

std::optional<Store::BonusReservation> Store::bonusReservation(const QString& dataId) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT card, amount_cents FROM bonus_reservations WHERE "
                                      "data_id = ?"),
                       {text(dataId)});
    if (!q.next())
        return std::nullopt;
    return BonusReservation{dataId, q.value(0).toString(), q.value(1).toLongLong()};
}

Cents Store::bonusesReserved(const QString& card, const QString& exceptDataId) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT COALESCE(SUM(amount_cents), 0) FROM "
                                      "bonus_reservations WHERE card = ? AND data_id <> ?"),
                       {text(card), text(exceptDataId)});
    return q.next() ? q.value(0).toLongLong() : 0;
}

void Store::saveBonusReservation(const BonusReservation& reservation) {
    checkOnThread();
    exec(QStringLiteral("INSERT OR REPLACE INTO bonus_reservations (data_id, card, amount_cents) "
                        "VALUES (?, ?, ?)"),
         {text(reservation.dataId), text(reservation.card), reservation.amount});
}

void Store::dropBonusReservation(const QString& dataId) {
    checkOnThread();
    exec(QStringLiteral("DELETE FROM bonus_reservations WHERE data_id = ?"), {text(dataId)});
}

// Committed cheques.

bool Store::addCommittedCheque(const CommittedCheque& cheque) {
    checkOnThread();
    // The primary key on data_id is what makes a commit count once: a second
    // insert of the same cheque changes nothing.
    QSqlQuery q = exec(QStringLiteral("INSERT OR IGNORE INTO committed_cheques (data_id, card, "
                                      "total_cents, write_off_cents, accrual_cents, "
                                      "balance_after_cents) VALUES (?, ?, ?, ?, ?, ?)"),
                       {text(cheque.dataId), text(cheque.card), cheque.total, cheque.writeOff,
                        cheque.accrual, cheque.balanceAfter});
    return q.numRowsAffected() == 1;
}

std::optional<Store::CommittedCheque> Store::committedCheque(const QString& dataId) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT card, total_cents, write_off_cents, accrual_cents, "
                                      "balance_after_cents FROM committed_cheques WHERE data_id "
                                      "= ?"),
                       {text(dataId)});
    if (!q.next())
        return std::nullopt;
    return CommittedCheque{dataId,
                           q.value(0).toString(),
                           q.value(1).toLongLong(),
                           q.value(2).toLongLong(),
                           q.value(3).toLongLong(),
                           q.value(4).toLongLong()};
}

// First answers of the calls that take effect once per cheque.

std::optional<Store::AnsweredCall>
Store::answeredCall(const QString& operation, const QString& chequeId, const QString& guid) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT body_digest, reply FROM answered_calls WHERE "
                                      "operation = ? AND cheque_id = ? AND guid = ?"),
                       {text(operation), text(chequeId), text(guid)});
    if (!q.next())
        return std::nullopt;
    return AnsweredCall{operation, chequeId, guid, q.value(0).toString().toLatin1(),
                        q.value(1).toString().toUtf8()};
}

void Store::saveAnsweredCall(const AnsweredCall& call) {
    checkOnThread();
    exec(QStringLiteral("INSERT OR REPLACE INTO answered_calls (operation, cheque_id, guid, "
                        "body_digest, reply) VALUES (?, ?, ?, ?, ?)"),
         {text(call.operation), text(call.chequeId), text(call.guid),
          QString::fromLatin1(call.bodyDigest), QString::fromUtf8(call.reply)});
}

void Store::dropAnsweredCalls(const QString& operation, const QString& chequeId) {
    checkOnThread();
    exec(QStringLiteral("DELETE FROM answered_calls WHERE operation = ? AND cheque_id = ?"),
         {text(operation), text(chequeId)});
}

// Parking.

std::optional<SeedParkingTicket> Store::parkingTicket(const QString& parkingId) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT entry, stay_hours FROM parking_tickets WHERE "
                                      "parking_id = ?"),
                       {text(parkingId)});
    if (!q.next())
        return std::nullopt;
    return SeedParkingTicket{parkingId, QDateTime::fromString(q.value(0).toString(), Qt::ISODate),
                             q.value(1).toInt()};
}

void Store::saveParkingValidation(const ParkingValidation& v) {
    checkOnThread();
    exec(QStringLiteral("INSERT OR REPLACE INTO parking_validations (parking_id, data_id, "
                        "free_hours, total_cents, disc_cents, pay_cents) VALUES (?, ?, ?, ?, ?, "
                        "?)"),
         {text(v.parkingId), text(v.dataId), v.freeHours, v.total, v.discount, v.toPay});
}

std::optional<Store::ParkingValidation> Store::parkingValidation(const QString& parkingId) {
    checkOnThread();
    QSqlQuery q = exec(QStringLiteral("SELECT data_id, free_hours, total_cents, disc_cents, "
                                      "pay_cents FROM parking_validations WHERE parking_id = ?"),
                       {text(parkingId)});
    if (!q.next())
        return std::nullopt;
    return ParkingValidation{parkingId,
                             q.value(0).toString(),
                             q.value(1).toInt(),
                             q.value(2).toLongLong(),
                             q.value(3).toLongLong(),
                             q.value(4).toLongLong()};
}

} // namespace vesk::emulator
