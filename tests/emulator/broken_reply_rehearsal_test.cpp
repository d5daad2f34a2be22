// The moment a till fears most, rehearsed over HTTP for each call that takes
// effect once per cheque: the back office acts on the call, then its reply
// breaks (reset, truncated, or never sent). What the till sees, what the
// store holds, and what the call's repeat gets: the first answer, with the
// effect still applied once; the same cheque with another body is refused.

#include "HeldEmulator.h"
#include "HttpHelpers.h"
#include "StoreFixture.h"

#include "support/LogCapture.h"

#include <emulator/FaultRules.h>

#include <morva/RestClient.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <iostream>

namespace vesk::emulator::test {
namespace {

using Failure = http::Response::Failure;
using testing::HasSubstr;

// The till's own timeout, so that a reply that never comes is given up quickly.
constexpr int clientTimeoutMs = 800;
// The least time a call that timed out takes: curl ends it at its timeout to
// the millisecond, which the test's clock may read a millisecond short.
constexpr int timedOutMs = clientTimeoutMs - 5;
// For the calls that are answered at once.
constexpr qint64 promptMs = 2000;

struct BrokenReply {
    const char* name;
    const char* fault; // played after the operation
    Failure failure;
    const char* message; // a stable part of the client's error
    qint64 atLeastMs;
    qint64 atMostMs;
};

void PrintTo(const BrokenReply& row, std::ostream* out) {
    *out << row.name;
}

// What a call through the library's transport got, and how long it took.
struct Exchange {
    http::Response response;
    qint64 ms = 0;

    QJsonObject body() const { return QJsonDocument::fromJson(response.body).object(); }
};

QJsonObject at(const QJsonValue& list, qsizetype index) {
    return list.toArray().at(index).toObject();
}

class BrokenReplyRehearsal : public HeldEmulatorTest,
                             public testing::WithParamInterface<BrokenReply> {
protected:
    // Breaks the next reply of `operation` after the operation is done.
    void breakNextReply(const char* operation) {
        const std::string spec = std::string(operation) + ':' + GetParam().fault + ";times=1";
        const Reply added =
            send(emulator->port(), "POST", "/_emulator/faults", R"({"spec": ")" + spec + "\"}");
        ASSERT_EQ(added.status, 201) << added.raw;
    }

    Exchange exchange(const char* service, const char* operation, const QByteArray& body) const {
        RestClient::Settings settings;
        settings.timeoutMs = clientTimeoutMs;
        RestClient client(settings);
        http::Request request;
        request.method = "POST";
        request.url = QUrl(emulator->serviceUrl(QLatin1String(service)) + QLatin1String(operation));
        request.body = body;
        QElapsedTimer timer;
        timer.start();
        client.send(request);
        return {client.response(), timer.elapsed()};
    }

    // The call whose reply breaks: the failure that the row gives, in its time.
    void expectBroken(const Exchange& broken) const {
        const BrokenReply& row = GetParam();
        EXPECT_EQ(broken.response.failure, row.failure)
            << broken.response.error.text().toStdString();
        EXPECT_EQ(broken.response.statusCode, 0);
        EXPECT_THAT(broken.response.error.text().toStdString(), HasSubstr(row.message));
        EXPECT_GE(broken.ms, row.atLeastMs);
        EXPECT_LE(broken.ms, row.atMostMs);
        EXPECT_EQ(emulator->faults().list().value(0).fired, 1);
    }

    // The same cheque with another body: refused, and named.
    void expectRefused(const Exchange& refused, const QString& userMsg) const {
        EXPECT_EQ(refused.response.failure, Failure::None);
        EXPECT_EQ(refused.response.statusCode, 409);
        EXPECT_EQ(refused.body(), (QJsonObject{{"code", 409}, {"userMsg", userMsg}}));
        EXPECT_LE(refused.ms, promptMs);
    }

    // The request lines of the three calls, once the emulator has stopped
    // (a hang's line is written when the hang ends).
    void expectLogged(const vesk::test::LogCapture& log, const char* operation) {
        emulator->stop();
        const QStringList lines = log.lines();
        const auto count = [&](const QString& tail) {
            const QRegularExpression line(QStringLiteral(R"(^vesk\.emulator info: \S+ %1 %2$)")
                                              .arg(QLatin1String(operation), tail));
            return lines.filter(line).size();
        };
        const QString fault = faultName(
            parseFaultSpec(QStringLiteral("*:") + QLatin1String(GetParam().fault), nullptr)->fault);
        EXPECT_EQ(count(QStringLiteral(R"(- \d+ ms fault=%1 operation=200)").arg(fault)), 1)
            << log.all();
        EXPECT_EQ(count(QStringLiteral(R"(200 \d+ ms replayed)")), 1) << log.all();
        EXPECT_EQ(
            count(QStringLiteral(R"(409 code=409 \d+ ms refused: same cheque, different body)")), 1)
            << log.all();
    }

    static void report(const char* operation, const Exchange& broken, const Exchange& repeated,
                       const Exchange& refused) {
        std::cout << "  " << operation << " " << GetParam().fault << ": broken " << broken.ms
                  << " ms, repeated " << repeated.ms << " ms, refused " << refused.ms << " ms\n";
    }
};

TEST_P(BrokenReplyRehearsal, CommitChequeAccruesOnceAndItsRepeatGetsTheFirstAnswer) {
    const vesk::test::LogCapture log(QStringLiteral("vesk.emulator.info=true"));
    const QByteArray commit = R"({"dataId": "C-1", "guid": "G-1", "totalAmount": 600,
        "cardList": [{"card": "2775000000028"}],
        "lines": [{"barCode": "4601234000031", "lineNum": 1, "qty": 2, "salesPrice": 300}]})";
    EXPECT_EQ(balance(silverCard), 8000);
    breakNextReply("commitCheque");

    const Exchange broken = exchange("loyalty", "commitCheque", commit);
    expectBroken(broken);
    // 80.00 and one accrual of 1% of 600.00.
    EXPECT_EQ(balance(silverCard), 8600);
    const std::optional<Store::CommittedCheque> committed =
        read([&] { return held.committedCheque(QStringLiteral("C-1")); });
    ASSERT_TRUE(committed);
    EXPECT_EQ(committed->accrual, 600);
    EXPECT_EQ(committed->balanceAfter, 8600);

    const Exchange repeated = exchange("loyalty", "commitCheque", commit);
    EXPECT_EQ(repeated.response.statusCode, 200) << repeated.response.body.toStdString();
    EXPECT_LE(repeated.ms, promptMs);
    const QJsonObject reply = repeated.body();
    EXPECT_EQ(reply.value("dataId"), QStringLiteral("C-1"));
    EXPECT_EQ(reply.value("guid"), QStringLiteral("G-1"));
    EXPECT_EQ(reply.value("bonusAmount"), 6.0);
    EXPECT_EQ(reply.value("discAmount"), 0.0);
    EXPECT_EQ(reply.value("totalAmountAfterKs"), 600.0);
    EXPECT_EQ(at(at(reply.value("cardList"), 0).value("accounts"), 0).value("balance"), 86.0);
    EXPECT_EQ(at(reply.value("slips"), 0).value("chequeMessage"),
              QStringLiteral("Loyalty card ****0028\nBonuses paid: 0.00\nBonuses accrued: "
                             "6.00\nBalance: 86.00"));
    EXPECT_EQ(balance(silverCard), 8600);

    QByteArray other = commit;
    other.replace(R"("qty": 2)", R"("qty": 3)");
    const Exchange refused = exchange("loyalty", "commitCheque", other);
    expectRefused(refused, QStringLiteral("Cheque C-1 (guid G-1) was already sent to commitCheque "
                                          "with a different body: a repeat must be the same "
                                          "request"));
    EXPECT_EQ(balance(silverCard), 8600);
    expectLogged(log, "commitCheque");
    report("commitCheque", broken, repeated, refused);
}

TEST_P(BrokenReplyRehearsal, ReserveChequeTakesTheStockOnceAndItsRepeatGetsTheFirstAnswer) {
    const vesk::test::LogCapture log(QStringLiteral("vesk.emulator.info=true"));
    const QByteArray reserve = R"({"chequeId": "R-1", "storeId": "S01",
        "lines": [{"barcode": "4601234000017", "sectionId": "HALL", "lineNum": 1, "qty": 2}]})";
    EXPECT_EQ(stock("HALL", coffee), 20000);
    breakNextReply("reserveCheque");

    const Exchange broken = exchange("sales", "reserveCheque", reserve);
    expectBroken(broken);
    // 20 coffees in the hall, 2 of them held for R-1.
    EXPECT_EQ(stock("HALL", coffee), 18000);
    const std::optional<QList<Store::ReservedLine>> reservation =
        read([&] { return held.reservation(QStringLiteral("R-1")); });
    ASSERT_TRUE(reservation);
    ASSERT_EQ(reservation->size(), 1);
    EXPECT_EQ(reservation->at(0).qty, 2000);

    const Exchange repeated = exchange("sales", "reserveCheque", reserve);
    EXPECT_EQ(repeated.response.statusCode, 200) << repeated.response.body.toStdString();
    EXPECT_LE(repeated.ms, promptMs);
    const QJsonObject reply = repeated.body();
    EXPECT_EQ(reply.value("chequeId"), QStringLiteral("R-1"));
    ASSERT_EQ(reply.value("lines").toArray().size(), 1);
    const QJsonObject line = at(reply.value("lines"), 0);
    EXPECT_EQ(line.value("barcode"), QStringLiteral("4601234000017"));
    EXPECT_EQ(line.value("qty"), 2.0);
    EXPECT_EQ(line.value("price"), 1200.0);
    EXPECT_EQ(line.value("existWithoutReservation"), false);
    EXPECT_EQ(stock("HALL", coffee), 18000);

    QByteArray other = reserve;
    other.replace(R"("qty": 2)", R"("qty": 3)");
    const Exchange refused = exchange("sales", "reserveCheque", other);
    expectRefused(refused, QStringLiteral("Cheque R-1 was already sent to reserveCheque with a "
                                          "different body: a repeat must be the same request"));
    EXPECT_EQ(stock("HALL", coffee), 18000);
    expectLogged(log, "reserveCheque");
    report("reserveCheque", broken, repeated, refused);
}

TEST_P(BrokenReplyRehearsal, CalcAndReserveBonusPayReservesOnceAndItsRepeatGetsTheFirstAnswer) {
    const vesk::test::LogCapture log(QStringLiteral("vesk.emulator.info=true"));
    const Exchange identified =
        exchange("loyalty", "processId", R"({"discCardId": "2775000000028"})");
    const QString token = identified.body().value("token").toString();
    ASSERT_FALSE(token.isEmpty()) << identified.response.body.toStdString();
    const QByteArray reserve = QStringLiteral(R"({"token": "%1", "dataId": "B-1",
            "cardList": [{"card": "2775000000028", "accounts": [{"codeAccount": 1,
                                                                "requestAmount": 30}]}],
            "lines": [{"barCode": "4601234000017", "lineNum": 1, "qty": 1,
                       "salesPrice": 1200}]})")
                                   .arg(token)
                                   .toUtf8();
    breakNextReply("calcAndReserveBonusPay");

    const Exchange broken = exchange("loyalty", "calcAndReserveBonusPay", reserve);
    expectBroken(broken);
    // 30.00 of the card's 80.00 held for B-1, and nothing booked yet.
    const auto reserved = [&] {
        return read([&] {
            return std::make_pair(held.bonusReservation(QStringLiteral("B-1")),
                                  held.bonusesReserved(silverCard, QString()));
        });
    };
    ASSERT_TRUE(reserved().first);
    EXPECT_EQ(reserved().first->card, silverCard);
    EXPECT_EQ(reserved().first->amount, 3000);
    EXPECT_EQ(reserved().second, 3000);
    EXPECT_EQ(balance(silverCard), 8000);

    const Exchange repeated = exchange("loyalty", "calcAndReserveBonusPay", reserve);
    EXPECT_EQ(repeated.response.statusCode, 200) << repeated.response.body.toStdString();
    EXPECT_LE(repeated.ms, promptMs);
    const QJsonObject reply = repeated.body();
    EXPECT_EQ(reply.value("dataIdReturn"), QStringLiteral("B-1"));
    const QJsonObject account = at(at(reply.value("cardList"), 0).value("accounts"), 0);
    EXPECT_EQ(account.value("confirmedAmount"), 30.0);
    EXPECT_EQ(account.value("maxPay"), 80.0);
    const QJsonObject line = at(reply.value("lines"), 0);
    EXPECT_EQ(at(line.value("discounts"), 0).value("discAmount"), 30.0);
    // 1% of the line's 1200.00 less the 30.00 that bonuses pay.
    EXPECT_EQ(line.value("bonusUnit"), 11.7);
    EXPECT_EQ(reserved().first->amount, 3000);
    EXPECT_EQ(reserved().second, 3000);

    QByteArray other = reserve;
    other.replace(R"("requestAmount": 30)", R"("requestAmount": 40)");
    const Exchange refused = exchange("loyalty", "calcAndReserveBonusPay", other);
    expectRefused(refused,
                  QStringLiteral("Cheque B-1 was already sent to calcAndReserveBonusPay with a "
                                 "different body: a repeat must be the same request"));
    EXPECT_EQ(reserved().first->amount, 3000);
    EXPECT_EQ(reserved().second, 3000);
    EXPECT_EQ(balance(silverCard), 8000);
    expectLogged(log, "calcAndReserveBonusPay");
    report("calcAndReserveBonusPay", broken, repeated, refused);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    EveryBrokenReply, BrokenReplyRehearsal,
    testing::Values(
        BrokenReply{"Reset", "reset,after", Failure::Network, "Connection reset by peer",
                    0, promptMs},
        BrokenReply{"Truncate", "truncate,after", Failure::Content, "Incomplete reply from",
                    0, promptMs},
        // The hang outlasts the till's patience, which ends the exchange.
        BrokenReply{"Hang", "hang=10000,after", Failure::Network, "No reply from",
                    timedOutMs, 4000}),
    [](const testing::TestParamInfo<BrokenReply>& info) { return std::string(info.param.name); });
// clang-format on

} // namespace
} // namespace vesk::emulator::test
