// A till's whole recovery from a commit or a reservation whose reply broke
// after the back office acted on it, through the library as a host uses it:
// the call raises vesk::NetworkException, its outcome says the request may
// have reached the back office, the till repeats the same request, gets the
// back office's first answer, and the effect stays applied once.

#include "HeldEmulator.h"
#include "StoreFixture.h"

#include "support/ConfigScope.h"
#include "support/LogCapture.h"

#include <emulator/Emulator.h>
#include <emulator/Fault.h>
#include <emulator/FaultRules.h>
#include <emulator/Store.h>

#include <vesk/vesk.h>

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <iostream>
#include <memory>

namespace vesk::emulator::test {
namespace {

using Failure = CallOutcome::Failure;
using Reached = CallOutcome::Reached;

class CommitRecovery : public HeldEmulatorTest {
protected:
    void SetUp() override {
        HeldEmulatorTest::SetUp();
        config = std::make_unique<vesk::test::ConfigScope>(QMap<QString, QString>{
            {QStringLiteral("Vesk.loyalty:url"), emulator->serviceUrl(QStringLiteral("loyalty"))},
            {QStringLiteral("Vesk.sales:url"), emulator->serviceUrl(QStringLiteral("sales"))}});
    }

    // The next call of `operation` takes effect, then its reply breaks.
    void breakNextReplyAfterTheOperation(const QString& operation, const QString& fault) {
        QString error;
        const std::optional<FaultRule> rule = parseFaultSpec(
            operation + QLatin1Char(':') + fault + QStringLiteral(";times=1"), &error);
        ASSERT_TRUE(rule) << error.toStdString();
        emulator->faults().add(*rule);
    }

    std::unique_ptr<vesk::test::ConfigScope> config;
    vesk::test::LogCapture quiet{QStringLiteral("*.warning=false")};
};

// What a till does with a call that failed: decide by the outcome.
enum class Decision { RepeatTheSameRequest, ReportTheRefusal, SendAgainLater };

Decision decide(const CallOutcome& outcome) {
    if (outcome.failure() == Failure::ServiceError)
        return Decision::ReportTheRefusal;
    return outcome.reached() == Reached::No ? Decision::SendAgainLater
                                            : Decision::RepeatTheSameRequest;
}

TEST_F(CommitRecovery, ACommitWhoseReplyWasCutIsRepeatedAndAccruesOnce) {
    loyalty::Api loyalty;
    loyalty::CommitChequeRequest commit;
    commit.dataId = QStringLiteral("C-7");
    commit.guid = QStringLiteral("G-7");
    commit.totalAmount = 600;
    loyalty::CardListEntry card;
    card.card = silverCard;
    commit.cardList = {card};
    loyalty::LinesEntry line;
    line.barCode = QStringLiteral("4601234000031");
    line.lineNum = 1;
    line.qty = 2;
    line.salesPrice = 300;
    commit.lines = {line};
    ASSERT_EQ(balance(silverCard), 8000);
    breakNextReplyAfterTheOperation(QStringLiteral("commitCheque"),
                                    QStringLiteral("truncate,after"));

    auto prepared = loyalty.commitCheque(commit);
    QElapsedTimer timer;
    timer.start();
    EXPECT_THROW(prepared.response(), NetworkException);
    const qint64 brokenMs = timer.elapsed();
    const CallOutcome broken = lastCallOutcome();

    EXPECT_EQ(broken.failure(), Failure::ReplyCut);
    EXPECT_EQ(broken.reached(), Reached::Yes);
    EXPECT_EQ(decide(broken), Decision::RepeatTheSameRequest);
    EXPECT_LT(brokenMs, 2000);
    // The back office booked it: 80.00 and 1% of 600.00.
    EXPECT_EQ(balance(silverCard), 8600);

    timer.restart();
    const loyalty::CommitChequeResponse& result = prepared.response();
    const qint64 repeatedMs = timer.elapsed();

    EXPECT_TRUE(lastCallOutcome().succeeded());
    EXPECT_EQ(result.dataId, QStringLiteral("C-7"));
    EXPECT_DOUBLE_EQ(result.bonusAmount, 6.0);
    EXPECT_DOUBLE_EQ(result.totalAmountAfterKs, 600.0);
    EXPECT_LT(repeatedMs, 2000);
    // One accrual, not two.
    EXPECT_EQ(balance(silverCard), 8600);
    std::cout << "  commit: cut after " << brokenMs << " ms, repeated in " << repeatedMs
              << " ms, balance 80.00 -> 86.00 once\n";
}

TEST_F(CommitRecovery, AReservationWhoseConnectionWasResetIsRepeatedAndTakesTheStockOnce) {
    sales::Api sales;
    sales::ReserveChequeRequest reserve;
    reserve.chequeId = QStringLiteral("R-7");
    reserve.storeId = QStringLiteral("S01");
    sales::ReserveLinesEntryRequest line;
    line.barcode = coffee;
    line.sectionId = QStringLiteral("HALL");
    line.lineNum = 1;
    line.qty = 2;
    reserve.lines = {line};
    const auto hallStock = [&] { return stock(QStringLiteral("HALL"), coffee); };
    ASSERT_EQ(hallStock(), 20000);
    breakNextReplyAfterTheOperation(QStringLiteral("reserveCheque"), QStringLiteral("reset,after"));

    const auto prepared = sales.reserveCheque(reserve);
    QElapsedTimer timer;
    timer.start();
    EXPECT_THROW(prepared.getResponseVariant(), NetworkException);
    const qint64 brokenMs = timer.elapsed();
    const CallOutcome broken = lastCallOutcome();

    EXPECT_EQ(broken.failure(), Failure::ConnectionLost);
    EXPECT_EQ(broken.reached(), Reached::Unknown);
    EXPECT_EQ(decide(broken), Decision::RepeatTheSameRequest);
    EXPECT_LT(brokenMs, 2000);
    EXPECT_EQ(hallStock(), 18000); // 2 of the 20 coffees held

    const QVariantMap repeated = prepared.getResponseVariant().toMap();

    EXPECT_TRUE(lastCallOutcome().succeeded());
    EXPECT_EQ(repeated.value(QStringLiteral("chequeId")).toString(), QStringLiteral("R-7"));
    const QVariantList lines = repeated.value(QStringLiteral("lines")).toList();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_DOUBLE_EQ(lines[0].toMap().value(QStringLiteral("qty")).toDouble(), 2.0);
    EXPECT_EQ(hallStock(), 18000); // reserved once
    std::cout << "  reservation: reset after " << brokenMs << " ms, hall stock 20 -> 18 once\n";
}

TEST_F(CommitRecovery, ACommitThatNeverLeftIsSentAgainLater) {
    loyalty::Api loyalty;
    emulator->stop(); // nothing listens any more
    EXPECT_THROW(loyalty.commitCheque(loyalty::CommitChequeRequest()).response(), NetworkException);
    EXPECT_EQ(lastCallOutcome().failure(), Failure::Refused);
    EXPECT_EQ(lastCallOutcome().reached(), Reached::No);
    EXPECT_EQ(decide(lastCallOutcome()), Decision::SendAgainLater);
}

} // namespace
} // namespace vesk::emulator::test
