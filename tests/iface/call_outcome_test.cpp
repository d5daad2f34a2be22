// Every performed call leaves its outcome: for the thread that made it, on
// success and after an exception, typed and untyped, and for the one
// observer of all calls. With a substitute that reports only the Response's
// own fields, as a host's transport does, the outcome says what those tell.

#include "support/ConfigScope.h"
#include "support/LogCapture.h"
#include "support/ScriptedRestClient.h"
#include "support/SubstituteApi.h"

#include <vesk/vesk.h>

#include <QDebug>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace vesk {
namespace {

using Failure = CallOutcome::Failure;
using Reached = CallOutcome::Reached;

sales::ItemInfoRequest anItem() {
    sales::ItemInfoRequest request;
    request.barcode = QStringLiteral("4601234000017");
    return request;
}

const QString itemInfoUrl =
    QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/itemInfo");

class CallOutcomeTest : public testing::Test {
protected:
    test::ConfigScope config;
    test::ScriptedRestClient substitute;
    std::unique_ptr<sales::Api> sales = test::apiOver<sales::Api>(substitute);
};

struct Row {
    const char* name;
    int status;
    QByteArray body;
    http::Response::Failure transportFailure;
    bool throws;
    Failure failure;
    Reached reached;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

class CallOutcomeRowTest : public CallOutcomeTest, public testing::WithParamInterface<Row> {};

TEST_P(CallOutcomeRowTest, TypedAndUntypedCallsLeaveTheSameOutcome) {
    const Row& row = GetParam();
    if (row.transportFailure == http::Response::Failure::None)
        substitute.answer(row.status, row.body);
    else
        substitute.failWith(row.transportFailure, QStringLiteral("it broke"), row.status);
    test::LogCapture log; // the warnings about odd replies

    for (const bool typed : {true, false}) {
        try {
            if (typed)
                sales->itemInfo(anItem()).response();
            else
                sales->itemInfo(anItem()).getResponseVariant();
            EXPECT_FALSE(row.throws) << (typed ? "typed" : "untyped");
        } catch (const Exception&) {
            EXPECT_TRUE(row.throws) << (typed ? "typed" : "untyped");
        }
        const CallOutcome outcome = lastCallOutcome();
        EXPECT_EQ(outcome.url(), itemInfoUrl);
        EXPECT_EQ(outcome.failure(), row.failure)
            << CallOutcome::name(outcome.failure()).toStdString();
        EXPECT_EQ(outcome.reached(), row.reached)
            << CallOutcome::name(outcome.reached()).toStdString();
        EXPECT_EQ(outcome.httpStatus(), row.status);
        EXPECT_EQ(outcome.succeeded(), row.failure == Failure::None);
        EXPECT_EQ(outcome.bytesSent(), substitute.sent.back().body.size());
        EXPECT_EQ(outcome.bytesReceived(), row.body.size());
        EXPECT_GE(outcome.elapsedMs(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Replies, CallOutcomeRowTest,
    testing::Values(Row{"Success", 200, R"({"name": "Milk"})", http::Response::Failure::None, false,
                        Failure::None, Reached::Yes},
                    Row{"NotAnObject", 200, "<html/>", http::Response::Failure::None, false,
                        Failure::NotAnObject, Reached::Yes},
                    Row{"EmptyBody", 200, "", http::Response::Failure::None, false,
                        Failure::NotAnObject, Reached::Yes},
                    Row{"ServiceError", 503, R"({"code": 42, "userMsg": "Busy"})",
                        http::Response::Failure::None, true, Failure::ServiceError, Reached::Yes},
                    Row{"Status201", 201, "{}", http::Response::Failure::None, true,
                        Failure::ServiceError, Reached::Yes},
                    // A transport that says no more than the Response's own fields.
                    Row{"NetworkFailure", 0, "", http::Response::Failure::Network, true,
                        Failure::NetworkFailure, Reached::Unknown},
                    Row{"ContentFailure", 0, "", http::Response::Failure::Content, true,
                        Failure::ContentFailure, Reached::Yes},
                    // Status 200 wins over a failure the transport also reports.
                    Row{"200WithANetworkFailure", 200, "", http::Response::Failure::Network, false,
                        Failure::NotAnObject, Reached::Yes}),
    [](const testing::TestParamInfo<Row>& info) { return std::string(info.param.name); });

TEST_F(CallOutcomeTest, ATransportsReportMakesTheKindAndTheReachExact) {
    substitute.failWith(http::Response::Failure::Network, QStringLiteral("refused"));
    substitute.next.headers.insert(":failure", "refused");
    substitute.next.headers.insert(":request-sent", "no");
    EXPECT_THROW(sales->itemInfo(anItem()).response(), NetworkException);
    EXPECT_EQ(lastCallOutcome().failure(), Failure::Refused);
    EXPECT_EQ(lastCallOutcome().reached(), Reached::No);

    substitute.next.headers.insert(":failure", "no-reply");
    substitute.next.headers.insert(":request-sent", "yes");
    EXPECT_THROW(sales->itemInfo(anItem()).response(), NetworkException);
    EXPECT_EQ(lastCallOutcome().failure(), Failure::NoReply);
    EXPECT_EQ(lastCallOutcome().reached(), Reached::Unknown);

    substitute.next.headers.insert(":failure", "something-new");
    EXPECT_THROW(sales->itemInfo(anItem()).response(), NetworkException);
    EXPECT_EQ(lastCallOutcome().failure(), Failure::NetworkFailure);
    EXPECT_EQ(lastCallOutcome().reached(), Reached::Unknown);
}

TEST_F(CallOutcomeTest, ACallThroughADestroyedClientWasNeverSent) {
    auto gone = std::make_unique<test::ScriptedRestClient>();
    const auto orphan = test::apiOver<sales::Api>(*gone);
    {
        test::LogCapture log;
        gone.reset();
    }
    EXPECT_THROW(orphan->itemInfo(anItem()).response(), NetworkException);
    EXPECT_EQ(lastCallOutcome().failure(), Failure::ClientDestroyed);
    EXPECT_EQ(lastCallOutcome().reached(), Reached::No);
    EXPECT_TRUE(lastCallOutcome().isNetworkFailure());
}

TEST_F(CallOutcomeTest, EachThreadReadsTheOutcomeOfItsOwnLastCall) {
    substitute.answer(200, R"({"name": "Milk"})");
    sales->itemInfo(anItem()).response();
    const QString here = lastCallOutcome().url();

    CallOutcome there;
    std::thread other([&] {
        EXPECT_EQ(lastCallOutcome().url(), QString()); // no call on this thread yet
        PreparedRequestBase own;
        own.url = QStringLiteral("http://127.0.0.1:9/other");
        own.client = sales->restClient();
        own.getResponseVariant();
        there = lastCallOutcome();
    });
    other.join();

    EXPECT_EQ(here, itemInfoUrl);
    EXPECT_EQ(there.url(), QStringLiteral("http://127.0.0.1:9/other"));
    EXPECT_EQ(lastCallOutcome().url(), itemInfoUrl);
}

TEST_F(CallOutcomeTest, TheObserverSeesEveryCallOnItsThreadBeforeItReturnsOrThrows) {
    struct Seen {
        std::mutex lock;
        std::vector<std::pair<Failure, std::thread::id>> calls;
    } seen;
    const CallObserver previous = setCallObserver([&seen](const CallOutcome& outcome) {
        const std::lock_guard<std::mutex> lock(seen.lock);
        seen.calls.emplace_back(outcome.failure(), std::this_thread::get_id());
    });

    substitute.answer(200, "{}");
    sales->itemInfo(anItem()).response();
    substitute.answer(500, R"({"code": 1, "userMsg": "no"})");
    EXPECT_THROW(sales->itemInfo(anItem()).response(), Exception);
    std::thread::id other;
    std::thread([&] {
        other = std::this_thread::get_id();
        EXPECT_THROW(sales->itemInfo(anItem()).getResponseVariant(), Exception);
    }).join();

    const CallObserver mine = setCallObserver(previous);
    EXPECT_TRUE(bool(mine));
    ASSERT_EQ(seen.calls.size(), 3u);
    EXPECT_EQ(seen.calls[0].first, Failure::None);
    EXPECT_EQ(seen.calls[1].first, Failure::ServiceError);
    EXPECT_EQ(seen.calls[2].first, Failure::ServiceError);
    EXPECT_EQ(seen.calls[0].second, std::this_thread::get_id());
    EXPECT_EQ(seen.calls[2].second, other);

    substitute.answer(200, "{}");
    sales->itemInfo(anItem()).getResponseVariant(); // not seen any more
    EXPECT_EQ(seen.calls.size(), 3u);
}

TEST_F(CallOutcomeTest, AnObserverThatThrowsDoesNotChangeTheCallsResult) {
    const CallObserver previous =
        setCallObserver([](const CallOutcome&) { throw std::runtime_error("telemetry down"); });
    substitute.answer(200, R"({"name": "Milk"})");

    EXPECT_EQ(sales->itemInfo(anItem()).response().name, QStringLiteral("Milk"));

    setCallObserver(previous);
}

TEST_F(CallOutcomeTest, AnOutcomeReadsWellInALog) {
    substitute.answer(503, R"({"code": 42, "userMsg": "Busy"})");
    EXPECT_THROW(sales->itemInfo(anItem()).response(), Exception);

    QString text;
    QDebug(&text) << lastCallOutcome();
    EXPECT_TRUE(text.startsWith(QStringLiteral("CallOutcome(POST ") + itemInfoUrl +
                                QStringLiteral(" -> 503, Failure::ServiceError, Reached::Yes, ")))
        << text.toStdString();
}

} // namespace
} // namespace vesk
