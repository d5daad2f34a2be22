#pragma once

#include "DatabaseThread.h"
#include "Money.h"
#include "SeedData.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantList>

#include <memory>
#include <optional>
#include <stdexcept>

class QSqlDatabase;
class QSqlQuery;

namespace vesk::emulator {

// A failure of the database itself (not a refusal of a service).
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// All state of the emulator, in SQLite through Qt SQL: goods and stock per
// store section, reservations per cheque, loyalty cards and their balances,
// identification tokens with their PIN state, bonus reservations, committed
// cheques, parking tickets and their validations, the first answers of the
// calls that take effect once per cheque, and the seed's text.
//
// Threads: the one connection lives on the store's own DatabaseThread, and
// every query runs there. A business operation is one call of transaction():
// its work runs on that thread inside BEGIN IMMEDIATE ... COMMIT (ROLLBACK
// when it throws), one operation at a time, so two tills never see each
// other's half-done work. The query methods below may only be called from
// inside transaction().
class Store {
public:
    using Item = SeedItem; // without stock: stock() gives it per section
    using Card = SeedCard;

    struct ReservedLine {
        int lineNum = 0;
        QString barcode;
        QString sectionId;
        Milli qty = 0; // the quantity actually taken from stock
    };

    struct Token {
        QString token;
        QString card;
        QString chequeId;
        bool pinSent = false;
        bool pinConfirmed = false;
    };

    struct BonusReservation {
        QString dataId; // the cheque
        QString card;
        Cents amount = 0;
    };

    struct CommittedCheque {
        QString dataId;
        QString card; // empty for a cheque without a loyalty card
        Cents total = 0;
        Cents writeOff = 0;
        Cents accrual = 0;
        Cents balanceAfter = 0;
    };

    // A call that takes effect once per cheque, as first answered (RepeatGuard).
    struct AnsweredCall {
        QString operation;
        QString chequeId;
        QString guid;          // empty when the request has none
        QByteArray bodyDigest; // of the request's body in canonical form
        QByteArray reply;      // the reply's JSON object
    };

    struct ParkingValidation {
        QString parkingId;
        QString dataId;
        int freeHours = 0;
        Cents total = 0;
        Cents discount = 0;
        Cents toPay = 0;
    };

    Store();
    ~Store(); // closes
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    // Opens the database file, made if missing, or a private in-memory
    // database when `fileName` is empty, and makes the schema. False, with
    // the reason in `error`, when the file cannot be opened or written or was
    // not made by the emulator.
    bool open(const QString& fileName, QString* error);
    void close();

    // Runs `work` as one transaction on the database thread and returns its
    // result; what it throws is rethrown here after the rollback.
    template <class F>
    auto transaction(F&& work) {
        return thread_.run([this, &work]() {
            Scope scope(*this);
            if constexpr (std::is_void_v<decltype(work())>) {
                work();
                scope.commit();
            } else {
                auto result = work();
                scope.commit();
                return result;
            }
        });
    }

    // The seed: whether one was loaded, its text, loading it.
    bool hasSeed();
    QByteArray seedText();
    void loadSeed(const SeedData& seed, const QByteArray& text);
    // Empties every table, the seed's text too, as in a new database.
    void clear();

    std::optional<Item> item(const QString& barcode);
    Milli stock(const QString& sectionId, const QString& barcode);
    void addStock(const QString& sectionId, const QString& barcode, Milli delta);

    // The lines reserved for a cheque; nullopt when the cheque has no reservation.
    std::optional<QList<ReservedLine>> reservation(const QString& chequeId);
    void saveReservation(const QString& chequeId, const QString& storeId,
                         const QList<ReservedLine>& lines); // replaces the cheque's lines
    void dropReservation(const QString& chequeId);

    std::optional<Card> card(const QString& number);
    void setBalance(const QString& number, Cents balance);

    Token issueToken(const QString& card, const QString& chequeId);
    std::optional<Token> token(const QString& token);
    void recordPinSent(const QString& token, const QString& card, const QString& phone);
    void confirmPin(const QString& token);
    int pinMessageCount(const QString& card);

    std::optional<BonusReservation> bonusReservation(const QString& dataId);
    Cents bonusesReserved(const QString& card, const QString& exceptDataId);
    void saveBonusReservation(const BonusReservation& reservation);
    void dropBonusReservation(const QString& dataId);

    // Adds the cheque unless one with its dataId is there already (false then).
    bool addCommittedCheque(const CommittedCheque& cheque);
    std::optional<CommittedCheque> committedCheque(const QString& dataId);

    std::optional<AnsweredCall> answeredCall(const QString& operation, const QString& chequeId,
                                             const QString& guid);
    void saveAnsweredCall(const AnsweredCall& call);
    // Forgets the cheque's calls of `operation`, whatever their guid.
    void dropAnsweredCalls(const QString& operation, const QString& chequeId);

    std::optional<SeedParkingTicket> parkingTicket(const QString& parkingId);
    void saveParkingValidation(const ParkingValidation& validation);
    std::optional<ParkingValidation> parkingValidation(const QString& parkingId);

    // The thread that does the database's work, for its metrics.
    const DatabaseThread& databaseThread() const { return thread_; }

private:
    // BEGIN IMMEDIATE when made, ROLLBACK when left without commit(); nested
    // scopes (a transaction inside another) join the outer one.
    class Scope {
    public:
        explicit Scope(Store& store);
        ~Scope();
        void commit();

    private:
        Store& store_;
        bool outer_;
        bool done_ = false;
    };

    QSqlQuery exec(const QString& sql, const QVariantList& values = {});
    void createSchema();
    void checkOnThread() const;

    DatabaseThread thread_;
    std::unique_ptr<QSqlDatabase> db_; // made, used and removed on thread_ only
    QString connectionName_;
    int depth_ = 0;
};

} // namespace vesk::emulator
