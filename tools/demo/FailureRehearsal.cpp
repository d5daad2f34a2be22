#include "FailureRehearsal.h"

#include "Bench.h"

#include <emulator/AdminClient.h>

#include <vesk/vesk.h>

#include <QDateTime>

#include <functional>

namespace vesk::demo {
namespace {

using Failure = CallOutcome::Failure;
using Reached = CallOutcome::Reached;

const char* const card = "2775000000028"; // the seed's SILVER card: 80.00 bonuses, 1% accrual

// What a till does with a call that failed, from the call's outcome alone.
QString decision(const CallOutcome& outcome) {
    if (outcome.failure() == Failure::ServiceError)
        return QStringLiteral("the back office refused it: show why, do not repeat blindly");
    if (outcome.reached() == Reached::No)
        return QStringLiteral("nothing left the till: send it again now or later");
    return QStringLiteral("it may have been done: repeat the same request, never a new one");
}

class Rehearsal {
public:
    Rehearsal(QTextStream& out, const QString& base)
        : out_(out)
        , admin_(base)
        , suffix_(QDateTime::currentDateTime().toString(QStringLiteral("-yyMMddHHmmsszzz"))) {}

    bool run() {
        return commitCutAfterBooking() && reservationResetAfterTaking() && refusedCall() &&
               callThatNeverLeft();
    }

private:
    // Performs `call`, which the injected fault breaks; prints and checks its outcome.
    bool failing(const std::function<void()>& call, Failure failure, Reached reached) {
        try {
            call();
            out_ << "  the call succeeded, which the fault should have prevented\n";
            return false;
        } catch (const Exception& e) {
            out_ << "  "
                 << (dynamic_cast<const NetworkException*>(&e) ? "NetworkException" : "Exception")
                 << ": " << QString::fromUtf8(e.what()) << "\n";
        }
        const CallOutcome outcome = lastCallOutcome();
        out_ << "  outcome: " << CallOutcome::name(outcome.failure()) << ", "
             << CallOutcome::name(outcome.reached()) << "\n"
             << "  the till: " << decision(outcome) << "\n";
        return outcome.failure() == failure && outcome.reached() == reached;
    }

    bool fault(const QString& spec) {
        const emulator::AdminClient::Result added = admin_.addFault(spec);
        if (added.kind != emulator::AdminClient::Result::Kind::Done)
            out_ << "  cannot inject " << spec << ": " << added.message << "\n";
        return added.kind == emulator::AdminClient::Result::Kind::Done;
    }

    static double balanceOf(const loyalty::CommitChequeResponse& reply) {
        for (const loyalty::CardListEntry& entry : reply.cardList)
            for (const loyalty::AccountsEntry& account : entry.accounts)
                return account.balance.value_or(-1);
        return -1;
    }

    bool commitCutAfterBooking() {
        out_ << "\n1. commitCheque: the back office books it, then the reply is cut\n";
        loyalty::CommitChequeRequest commit;
        commit.dataId = QStringLiteral("RH-C") + suffix_;
        commit.guid = QStringLiteral("RH-G") + suffix_;
        commit.totalAmount = 600;
        loyalty::CardListEntry entry;
        entry.card = QLatin1String(card);
        commit.cardList = {entry};
        loyalty::LinesEntry line;
        line.barCode = QStringLiteral("4601234000031");
        line.lineNum = 1;
        line.qty = 2;
        line.salesPrice = 300;
        commit.lines = {line};
        if (!fault(QStringLiteral("commitCheque:truncate,after;times=1")))
            return false;
        auto prepared = loyalty::Api::getInstance()->commitCheque(commit);
        if (!failing([&] { prepared.getResponseVariant(); }, Failure::ReplyCut, Reached::Yes))
            return false;
        const loyalty::CommitChequeResponse first = prepared.response();
        const loyalty::CommitChequeResponse again =
            loyalty::Api::getInstance()->commitCheque(commit).response();
        out_ << "  repeated: accrued " << first.bonusAmount << ", balance " << balanceOf(first)
             << "; once more: balance " << balanceOf(again) << " (booked once)\n";
        return balanceOf(first) == balanceOf(again) && first.bonusAmount == 6.0;
    }

    bool reservationResetAfterTaking() {
        out_ << "\n2. reserveCheque: the stock is taken, then the connection is reset\n";
        sales::ReserveChequeRequest reserve;
        reserve.chequeId = QStringLiteral("RH-R") + suffix_;
        reserve.storeId = QStringLiteral("S01");
        sales::ReserveLinesEntryRequest line;
        line.barcode = QStringLiteral("4601234000017");
        line.sectionId = QStringLiteral("HALL");
        line.lineNum = 1;
        line.qty = 2;
        reserve.lines = {line};
        if (!fault(QStringLiteral("reserveCheque:reset,after;times=1")))
            return false;
        auto prepared = sales::Api::getInstance()->reserveCheque(reserve);
        if (!failing([&] { prepared.getResponseVariant(); }, Failure::ConnectionLost,
                     Reached::Unknown))
            return false;
        const sales::ReserveChequeResponse& reply = prepared.response();
        const double qty = reply.lines.isEmpty() ? 0 : reply.lines.first().qty;
        out_ << "  repeated: " << reply.lines.size() << " line, " << qty
             << " reserved (the first answer)\n";
        sales::UnreserveChequeRequest release;
        release.chequeId = reserve.chequeId;
        sales::Api::getInstance()->unreserveCheque(release).response();
        return reply.lines.size() == 1 && qty == 2;
    }

    bool refusedCall() {
        out_ << "\n3. itemInfo: the back office refuses\n";
        if (!fault(QStringLiteral("itemInfo:error=503,code=42,msg=Back office busy;times=1")))
            return false;
        sales::ItemInfoRequest item;
        item.barcode = QStringLiteral("4601234000017");
        return failing([&] { sales::Api::getInstance()->itemInfo(item).response(); },
                       Failure::ServiceError, Reached::Yes);
    }

    bool callThatNeverLeft() {
        out_ << "\n4. a call to an address where nothing listens\n";
        PreparedRequestBase nowhere;
        nowhere.url =
            QStringLiteral("http://127.0.0.1:1/api/axapta/ExchangeData_Loyalty/commitCheque");
        return failing([&] { nowhere.getResponseVariant(); }, Failure::Refused, Reached::No);
    }

    QTextStream& out_;
    emulator::AdminClient admin_;
    QString suffix_;
};

} // namespace

int rehearseFailures(const Options& options, QTextStream& out) {
    out << "Rehearsing the failures whose fate a till must decide\n";
    std::optional<Bench> bench = openBench(options, out);
    if (!bench)
        return 1;
    const bool ok = Rehearsal(out, bench->base).run();
    out << (ok ? "\nEach failure behaved as the emulator's rules say.\n"
               : "\nFAILED: a failure did not behave as the emulator's rules say.\n");
    out.flush();
    if (bench->inProcess)
        bench->inProcess->stop();
    return ok ? 0 : 1;
}

} // namespace vesk::demo
