// The emulator's rule for a cheque sent again, against an in-memory store
// with the shipped seed: an operation that takes a coffee from the stock
// each time it runs shows how often it did.

#include "StoreFixture.h"

#include <emulator/RepeatGuard.h>

#include <QJsonDocument>

#include <future>

namespace vesk::emulator::test {
namespace {

QVariant body(const char* json) {
    return QJsonDocument::fromJson(json).object().toVariantMap();
}

class RepeatGuardTest : public StoreFixture {
protected:
    // Takes one coffee and answers how many thousandths are left; refuses a body with "refuse".
    HttpFront::Answer takeCoffee(const QVariant& request) {
        return store.transaction([&] {
            ++runs;
            if (request.toMap().contains(QStringLiteral("refuse")))
                throw ServiceError(404, 1001, QStringLiteral("Refused"));
            store.addStock(QStringLiteral("HALL"), coffee, -1000);
            return HttpFront::Answer{
                200, QJsonObject{{"left", store.stock(QStringLiteral("HALL"), coffee)}}};
        });
    }

    HttpFront::Operation guarded(const RepeatGuard::Identification& by = {"dataId", "guid"}) {
        return guard.once(QStringLiteral("commitCheque"), by,
                          [this](const QVariant& request) { return takeCoffee(request); });
    }

    RepeatGuard guard{store};
    int runs = 0;
};

TEST_F(RepeatGuardTest, SameChequeAndBodyGetsTheFirstAnswerAndChangesNothing) {
    const HttpFront::Operation commit = guarded();
    const HttpFront::Answer first = commit(body(R"({"dataId": "A", "guid": "G", "total": 600})"));
    EXPECT_EQ(first.status, 200);
    EXPECT_EQ(first.object, (QJsonObject{{"left", 19000}}));
    EXPECT_EQ(first.note, QString());
    // Members in another order and a number spelt otherwise are the same body.
    const HttpFront::Answer again = commit(body(R"({"total": 600.0, "guid": "G", "dataId": "A"})"));
    EXPECT_EQ(again.status, 200);
    EXPECT_EQ(again.object, first.object);
    EXPECT_EQ(again.note, QStringLiteral("replayed"));
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(stock("HALL", coffee), 19000);
}

TEST_F(RepeatGuardTest, SameChequeWithAnotherBodyIsRefusedAndChangesNothing) {
    const HttpFront::Operation commit = guarded();
    commit(body(R"({"dataId": "A", "guid": "G", "total": 600})"));
    const HttpFront::Answer other = commit(body(R"({"dataId": "A", "guid": "G", "total": 700})"));
    EXPECT_EQ(other.status, 409);
    EXPECT_EQ(other.object,
              (QJsonObject{{"code", 409},
                           {"userMsg", "Cheque A (guid G) was already sent to commitCheque with a "
                                       "different body: a repeat must be the same request"}}));
    EXPECT_EQ(other.note, QStringLiteral("refused: same cheque, different body"));
    const HttpFront::Answer withoutGuid =
        guarded({"chequeId", QString()})(body(R"({"chequeId": "R", "total": 1})"));
    EXPECT_EQ(withoutGuid.status, 200);
    EXPECT_EQ(guarded({"chequeId", QString()})(body(R"({"chequeId": "R", "total": 2})"))
                  .object.value("userMsg"),
              QStringLiteral("Cheque R was already sent to commitCheque with a different body: a "
                             "repeat must be the same request"));
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(stock("HALL", coffee), 18000);
}

TEST_F(RepeatGuardTest, AnotherGuidIsAnotherCallForTheOperationToJudge) {
    const HttpFront::Operation commit = guarded();
    commit(body(R"({"dataId": "A", "guid": "G1"})"));
    EXPECT_EQ(commit(body(R"({"dataId": "A", "guid": "G2"})")).note, QString());
    EXPECT_EQ(commit(body(R"({"dataId": "A"})")).note, QString());
    EXPECT_EQ(runs, 3);
}

TEST_F(RepeatGuardTest, RefusedCallIsNotKeptSoItsRepeatRunsAgain) {
    const HttpFront::Operation commit = guarded();
    const ServiceError e = refusal([&] { commit(body(R"({"dataId": "A", "refuse": 1})")); });
    EXPECT_EQ(e.code(), 1001);
    EXPECT_EQ(refusal([&] { commit(body(R"({"dataId": "A", "refuse": 1})")); }).code(), 1001);
    EXPECT_EQ(commit(body(R"({"dataId": "A"})")).status, 200);
    EXPECT_EQ(runs, 3);
    EXPECT_EQ(stock("HALL", coffee), 19000);
}

TEST_F(RepeatGuardTest, BodyWithoutTheChequesIdGoesToTheOperationEachTime) {
    const HttpFront::Operation commit = guarded();
    commit(body(R"({"total": 1})"));
    commit(body(R"({"total": 1})"));
    EXPECT_EQ(runs, 2);
}

TEST_F(RepeatGuardTest, ReleasingTheChequeLetsItBeSentAnew) {
    const HttpFront::Operation reserve =
        guard.once(QStringLiteral("reserveCheque"), {"chequeId", QString()},
                   [this](const QVariant& request) { return takeCoffee(request); });
    const HttpFront::Operation unreserve = guard.releasing(
        QStringLiteral("reserveCheque"), QStringLiteral("chequeId"), [](const QVariant&) {
            return HttpFront::Answer{200, QJsonObject()};
        });
    reserve(body(R"({"chequeId": "R", "qty": 1})"));
    EXPECT_EQ(reserve(body(R"({"chequeId": "R", "qty": 2})")).status, 409);
    unreserve(body(R"({"chequeId": "R"})"));
    EXPECT_EQ(reserve(body(R"({"chequeId": "R", "qty": 2})")).status, 200);
    EXPECT_EQ(runs, 2);
}

TEST_F(RepeatGuardTest, ClearedStoreForgetsTheFirstAnswers) {
    const HttpFront::Operation commit = guarded();
    commit(body(R"({"dataId": "A", "total": 1})"));
    store.transaction([&] {
        const QByteArray text = store.seedText();
        store.clear();
        store.loadSeed(seed, text);
    });
    EXPECT_EQ(commit(body(R"({"dataId": "A", "total": 2})")).status, 200);
    EXPECT_EQ(runs, 2);
}

TEST_F(RepeatGuardTest, TwoTillsRacingWithTheSameChequeTakeEffectOnce) {
    const HttpFront::Operation commit = guarded();
    std::promise<void> go;
    const std::shared_future<void> start = go.get_future().share();
    const auto send = [&] {
        start.wait();
        return commit(body(R"({"dataId": "A", "total": 1})"));
    };
    std::future<HttpFront::Answer> first = std::async(std::launch::async, send);
    std::future<HttpFront::Answer> second = std::async(std::launch::async, send);
    go.set_value();
    const HttpFront::Answer a = first.get();
    const HttpFront::Answer b = second.get();
    EXPECT_EQ(a.object, b.object);
    EXPECT_EQ(int(a.note == QLatin1String("replayed")) + int(b.note == QLatin1String("replayed")),
              1);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(stock("HALL", coffee), 19000);
}

} // namespace
} // namespace vesk::emulator::test
