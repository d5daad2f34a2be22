// Every fault the emulator can play, rehearsed through the library as a till
// meets it: the exception, a stable part of its message, and how long the
// call took.

#include "HttpHelpers.h"

#include <emulator/FaultRules.h>

#include <vesk/sales/ItemInfoRequest.h>
#include <vesk/sales/ItemInfoResponse.h>

#include <morva/RestClient.h>

#include <gmock/gmock.h>

#include <QElapsedTimer>

#include <chrono>

namespace vesk::emulator::test {
namespace {

using testing::HasSubstr;

enum class Outcome { Reply, ServiceError, NetworkFailure };

struct Rehearsal {
    const char* name;
    const char* spec;
    Outcome outcome;
    int code;             // of a service error
    const char* message;  // a stable part of the exception's message
    const char* itemName; // of a reply
    qint64 atLeastMs;
    qint64 atMostMs;
    CallOutcome::Failure failure; // what the call's outcome says
    CallOutcome::Reached reached;
};

void PrintTo(const Rehearsal& row, std::ostream* out) {
    *out << row.name;
}

// The client's own timeout, so that a hang is met quickly.
constexpr int clientTimeoutMs = 800;
// The least time a call that timed out takes: curl ends it at its timeout to
// the millisecond, which the test's clock may read a millisecond short.
constexpr int timedOutMs = clientTimeoutMs - 5;

class FaultRehearsal : public testing::TestWithParam<Rehearsal> {
protected:
    void SetUp() override {
        Options options;
        options.port = 0;
        QString why;
        QString error;
        const std::optional<FaultRule> rule =
            parseFaultSpec(QString::fromUtf8(GetParam().spec), &why);
        ASSERT_TRUE(rule) << why.toStdString();
        options.faults.append(*rule);
        emulator = std::make_unique<Emulator>(options);
        ASSERT_TRUE(emulator->start(&error)) << error.toStdString();
    }

    // itemInfo for the coffee, on a client with a short timeout.
    sales::ItemInfoResponse itemInfo() const {
        PreparedRequest<sales::ItemInfoResponse> prepared;
        prepared.url = emulator->serviceUrl(QStringLiteral("sales")) + QLatin1String("itemInfo");
        sales::ItemInfoRequest request;
        request.barcode = QStringLiteral("4601234000017");
        prepared.body = serder::serialize(request);
        RestClient::Settings settings;
        settings.timeoutMs = clientTimeoutMs;
        prepared.client = QSharedPointer<RestClient>::create(settings);
        return prepared.response();
    }

    std::unique_ptr<Emulator> emulator;
};

TEST_P(FaultRehearsal, GivesTheExceptionATillMeets) {
    const Rehearsal& row = GetParam();
    QElapsedTimer timer;
    timer.start();
    Outcome outcome = Outcome::Reply;
    int code = 0;
    std::string message;
    try {
        EXPECT_EQ(itemInfo().name, QString::fromUtf8(row.itemName));
    } catch (const NetworkException& e) {
        outcome = Outcome::NetworkFailure;
        message = e.what();
    } catch (const Exception& e) {
        outcome = Outcome::ServiceError;
        code = e.code();
        message = e.what();
    }
    const qint64 ms = timer.elapsed();
    const CallOutcome fate = lastCallOutcome();
    EXPECT_EQ(outcome, row.outcome) << message;
    EXPECT_EQ(fate.failure(), row.failure) << CallOutcome::name(fate.failure()).toStdString();
    EXPECT_EQ(fate.reached(), row.reached) << CallOutcome::name(fate.reached()).toStdString();
    EXPECT_EQ(code, row.code);
    EXPECT_THAT(message, HasSubstr(row.message));
    EXPECT_GE(ms, row.atLeastMs);
    EXPECT_LE(ms, row.atMostMs);
    std::cout << "  " << row.name << ": " << ms << " ms" << (message.empty() ? "" : ": ") << message
              << '\n';
    // The fault was played once.
    EXPECT_EQ(emulator->faults().list().value(0).fired, 1);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    EveryKind, FaultRehearsal,
    testing::Values(
        Rehearsal{"ServiceErrorCarriesTheInjectedCodeAndMessage",
                  "itemInfo:error=503,code=42,msg=Back office busy",
                  Outcome::ServiceError, 42, "Back office busy", "", 0, 2000,
                  CallOutcome::Failure::ServiceError, CallOutcome::Reached::Yes},
        Rehearsal{"DelayBelowTheTimeoutStillGivesTheReply", "itemInfo:delay=300",
                  Outcome::Reply, 0, "", "Coffee beans, 1 kg", 300, 3000,
                  CallOutcome::Failure::None, CallOutcome::Reached::Yes},
        Rehearsal{"DrawnDelayBelowTheTimeoutStillGivesTheReply",
                  "itemInfo:delay=uniform:250-350,seed=5",
                  Outcome::Reply, 0, "", "Coffee beans, 1 kg", 250, 3000,
                  CallOutcome::Failure::None, CallOutcome::Reached::Yes},
        Rehearsal{"DrawnDelayPastTheTimeoutIsNoReply", "itemInfo:delay=lognormal:5000,sigma=0.1",
                  Outcome::NetworkFailure, 0, "No reply from", "", timedOutMs, 4000,
                  CallOutcome::Failure::NoReply, CallOutcome::Reached::Unknown},
        Rehearsal{"HangPastTheTimeoutIsANetworkFailure", "itemInfo:hang=10000",
                  Outcome::NetworkFailure, 0, "No reply from", "", timedOutMs, 4000,
                  CallOutcome::Failure::NoReply, CallOutcome::Reached::Unknown},
        // A 200 whose body is no object reads as the empty object, with a
        // warning on the service's logger: the record keeps its defaults.
        Rehearsal{"HtmlPageForJsonGivesTheDefaultRecord", "itemInfo:notjson",
                  Outcome::Reply, 0, "", "", 0, 2000,
                  CallOutcome::Failure::NotAnObject, CallOutcome::Reached::Yes},
        Rehearsal{"CutReplyIsANetworkFailure", "itemInfo:truncate",
                  Outcome::NetworkFailure, 0, "Incomplete reply from", "", 0, 2000,
                  CallOutcome::Failure::ReplyCut, CallOutcome::Reached::Yes},
        Rehearsal{"ReplyOverTheClientsLimitIsRefused", "itemInfo:oversize=5M",
                  Outcome::NetworkFailure, 0, "exceeds the limit of 4194304 bytes", "", 0, 4000,
                  CallOutcome::Failure::ReplyOverLimit, CallOutcome::Reached::Yes},
        Rehearsal{"PaddedReplyUnderTheLimitIsRead", "itemInfo:oversize=100000",
                  Outcome::Reply, 0, "", "Coffee beans, 1 kg", 0, 2000,
                  CallOutcome::Failure::None, CallOutcome::Reached::Yes},
        Rehearsal{"DribbleWithinTheTimeoutGivesTheWholeReply", "itemInfo:dribble=300,chunks=3",
                  Outcome::Reply, 0, "", "Coffee beans, 1 kg", 250, 3000,
                  CallOutcome::Failure::None, CallOutcome::Reached::Yes},
        Rehearsal{"DribblePastTheTimeoutIsACutReply", "itemInfo:dribble=10000,chunks=5",
                  Outcome::NetworkFailure, 0, "Incomplete reply from", "", timedOutMs, 4000,
                  CallOutcome::Failure::ReplyCut, CallOutcome::Reached::Yes},
        Rehearsal{"StallAfterTheHeadersIsACutReply", "itemInfo:stall=10000",
                  Outcome::NetworkFailure, 0, "did not arrive whole within 800 ms", "",
                  timedOutMs, 4000,
                  CallOutcome::Failure::ReplyCut, CallOutcome::Reached::Yes},
        Rehearsal{"ResetConnectionIsANetworkFailure", "itemInfo:reset",
                  Outcome::NetworkFailure, 0, "Connection reset by peer", "", 0, 2000,
                  CallOutcome::Failure::ConnectionLost, CallOutcome::Reached::Unknown}),
    [](const testing::TestParamInfo<Rehearsal>& info) { return std::string(info.param.name); });
// clang-format on

TEST(FaultRules, TimesRuleFiresForTheNextCallsThenStaysListedSpent) {
    FaultRules rules;
    rules.add(*parseFaultSpec(QStringLiteral("itemInfo:reset;times=2"), nullptr));
    EXPECT_FALSE(rules.take(QStringLiteral("getCardBalance")));
    EXPECT_EQ(rules.active(), 1);
    EXPECT_TRUE(rules.take(QStringLiteral("itemInfo")));
    EXPECT_TRUE(rules.take(QStringLiteral("itemInfo")));
    EXPECT_FALSE(rules.take(QStringLiteral("itemInfo")));
    ASSERT_EQ(rules.list().size(), 1);
    EXPECT_EQ(rules.list().constFirst().fired, 2);
    EXPECT_EQ(rules.list().constFirst().remaining, 0);
    EXPECT_EQ(rules.active(), 0);
    EXPECT_EQ(rules.clear(), 1);
    EXPECT_TRUE(rules.list().isEmpty());
}

TEST(FaultRules, FirstRuleThatFiresDecidesAndAStarRuleHitsEveryOperation) {
    FaultRules rules;
    rules.add(*parseFaultSpec(QStringLiteral("itemInfo:delay=5;times=1"), nullptr));
    rules.add(*parseFaultSpec(QStringLiteral("*:error=500"), nullptr));
    EXPECT_EQ(rules.take(QStringLiteral("itemInfo"))->kind, Fault::Kind::Delay);
    EXPECT_EQ(rules.take(QStringLiteral("itemInfo"))->kind, Fault::Kind::Error);
    EXPECT_EQ(rules.take(QStringLiteral("commitCheque"))->kind, Fault::Kind::Error);
}

TEST(FaultRules, AnAimedRuleHitsOnlyTheCallsWhoseBodyMeetsItsConditions) {
    FaultRules rules;
    rules.add(*parseFaultSpec(
        QStringLiteral(R"(itemInfo:error=503;times=1;where=$.barcode == "4601234000017")"),
        nullptr));
    EXPECT_FALSE(rules.take(QStringLiteral("itemInfo"), R"({"barcode": "4601234000024"})"));
    EXPECT_FALSE(rules.take(QStringLiteral("itemInfo"), "not json"));
    EXPECT_FALSE(rules.take(QStringLiteral("itemInfo")));
    // The one time is spent on the first matching call, not on those before it.
    EXPECT_TRUE(rules.take(QStringLiteral("itemInfo"), R"({"barcode": "4601234000017"})"));
    EXPECT_FALSE(rules.take(QStringLiteral("itemInfo"), R"({"barcode": "4601234000017"})"));
    EXPECT_EQ(rules.list().constFirst().fired, 1);
}

TEST(FaultRules, AnAimedRuleLetsTheNextRuleDecideForOtherBodies) {
    FaultRules rules;
    rules.add(*parseFaultSpec(QStringLiteral(R"(*:reset;where=$.chequeId == "C-1")"), nullptr));
    rules.add(*parseFaultSpec(QStringLiteral("reserveCheque:delay=5"), nullptr));
    EXPECT_EQ(rules.take(QStringLiteral("reserveCheque"), R"({"chequeId": "C-1"})")->kind,
              Fault::Kind::Reset);
    EXPECT_EQ(rules.take(QStringLiteral("reserveCheque"), R"({"chequeId": "C-2"})")->kind,
              Fault::Kind::Delay);
    EXPECT_EQ(rules.take(QStringLiteral("unreserveCheque"), R"({"chequeId": "C-1"})")->kind,
              Fault::Kind::Reset);
}

// How many of 1000 calls a fraction rule hits, and which.
std::vector<int> firedCalls(const QString& spec) {
    FaultRules rules;
    rules.add(*parseFaultSpec(spec, nullptr));
    std::vector<int> fired;
    for (int call = 0; call < 1000; ++call)
        if (rules.take(QStringLiteral("itemInfo")))
            fired.push_back(call);
    return fired;
}

TEST(FaultRules, FractionRuleHitsAboutItsShareAndTheSameCallsForTheSameSeed) {
    const std::vector<int> first = firedCalls(QStringLiteral("itemInfo:reset;fraction=0.2,seed=7"));
    EXPECT_GT(first.size(), 150u);
    EXPECT_LT(first.size(), 250u);
    EXPECT_EQ(firedCalls(QStringLiteral("itemInfo:reset;fraction=0.2,seed=7")), first);
    EXPECT_NE(firedCalls(QStringLiteral("itemInfo:reset;fraction=0.2,seed=8")), first);
    EXPECT_EQ(firedCalls(QStringLiteral("itemInfo:reset;fraction=1")).size(), 1000u);
}

} // namespace
} // namespace vesk::emulator::test
