// The back-office double as a host's test uses it: scripted replies,
// service errors and transport failures reach the host as the real ones
// would, requests are recorded whole and in order, and the double goes
// without a word.

#include "support/ConfigScope.h"
#include "support/LogCapture.h"
#include "support/SubstituteApi.h"

#include <vesk/testing/FakeBackOffice.h>
#include <vesk/vesk.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace vesk {
namespace {

using testing::FakeBackOffice;
using Failure = CallOutcome::Failure;
using Reached = CallOutcome::Reached;

const QString itemInfoUrl =
    QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/itemInfo");

sales::ItemInfoRequest scanOf(const QString& barcode) {
    sales::ItemInfoRequest request;
    request.sectionId = QStringLiteral("S1");
    request.barcode = barcode;
    return request;
}

sales::ItemInfoResponse milk() {
    sales::ItemInfoResponse item;
    item.barcode = QStringLiteral("4601234000017");
    item.name = QStringLiteral("Milk");
    item.price = 89.9;
    item.barcodeType = 2;
    return item;
}

// A double of the test's own, and the three services made over it with the
// default configuration.
class FakeBackOfficeTest : public ::testing::Test {
protected:
    test::ConfigScope config;
    FakeBackOffice fake;
    std::unique_ptr<sales::Api> sales = test::apiOver<sales::Api>(fake);
    std::unique_ptr<disc::Api> disc = test::apiOver<disc::Api>(fake);
    std::unique_ptr<loyalty::Api> loyalty = test::apiOver<loyalty::Api>(fake);

    sales::ItemInfoResponse scan(const QString& barcode = QStringLiteral("4601234000017")) {
        return sales->itemInfo(scanOf(barcode)).response();
    }
};

TEST_F(FakeBackOfficeTest, TypedReplyReachesTheHostAsTheSameRecord) {
    fake.on(QStringLiteral("sales"), QStringLiteral("itemInfo")).reply(milk());

    EXPECT_EQ(scan(), milk());
    EXPECT_TRUE(lastCallOutcome().succeeded());
    EXPECT_EQ(lastCallOutcome().url(), itemInfoUrl);
    EXPECT_EQ(lastCallOutcome().httpStatus(), 200);
}

TEST_F(FakeBackOfficeTest, OperationNameAloneScriptsTheServiceThatHasIt) {
    fake.on(QStringLiteral("itemInfo")).reply(milk());

    EXPECT_EQ(scan().name, QStringLiteral("Milk"));
}

TEST_F(FakeBackOfficeTest, RawJsonBodyIsReadAsTheServiceSentIt) {
    fake.on(QStringLiteral("itemInfo")).replyJson(R"({"name": "Tea", "price": 12.5})");

    const sales::ItemInfoResponse item = scan();

    EXPECT_EQ(item.name, QStringLiteral("Tea"));
    EXPECT_EQ(item.price, 12.5);
}

TEST_F(FakeBackOfficeTest, BodyThatIsNoObjectIsTheCallOutcomeNotAnObject) {
    fake.on(QStringLiteral("itemInfo")).replyJson("[]");
    test::LogCapture log;

    EXPECT_EQ(scan(), sales::ItemInfoResponse());
    EXPECT_EQ(lastCallOutcome().failure(), Failure::NotAnObject);
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_TRUE(log.lines().first().startsWith(
        QStringLiteral("vesksales warning: %1 answered 200 with a JSON array").arg(itemInfoUrl)))
        << log.all();
}

TEST_F(FakeBackOfficeTest, ServiceErrorRaisesTheExceptionWithItsCodeAndUserMsg) {
    fake.on(QStringLiteral("itemInfo")).error(4004, QStringLiteral("No such item"), 404);

    try {
        scan();
        FAIL() << "a service error must throw";
    } catch (const NetworkException& e) {
        FAIL() << "a service error is no network failure: " << e.what();
    } catch (const Exception& e) {
        EXPECT_EQ(e.code(), 4004);
        EXPECT_STREQ(e.what(), "No such item");
    }
    EXPECT_EQ(lastCallOutcome().failure(), Failure::ServiceError);
    EXPECT_EQ(lastCallOutcome().httpStatus(), 404);
    EXPECT_EQ(lastCallOutcome().reached(), Reached::Yes);
}

TEST_F(FakeBackOfficeTest, ServiceErrorHasStatus500UnlessGiven) {
    fake.on(QStringLiteral("itemInfo")).error(7, QStringLiteral("Stock is closed"));

    EXPECT_THROW(scan(), Exception);
    EXPECT_EQ(lastCallOutcome().httpStatus(), 500);
}

struct FailureRow {
    const char* name;
    Failure failure;
    Reached reached;
    const char* message; // %1: the call's URL
};

class FakeBackOfficeFailureTest : public FakeBackOfficeTest,
                                  public ::testing::WithParamInterface<FailureRow> {};

TEST_P(FakeBackOfficeFailureTest, RaisesNetworkExceptionWithTheOutcomeOfTheRealFailure) {
    const FailureRow& row = GetParam();
    fake.on(QStringLiteral("itemInfo")).fail(row.failure);

    try {
        scan();
        FAIL() << "a failure must throw";
    } catch (const NetworkException& e) {
        EXPECT_EQ(QString::fromUtf8(e.what()), QString::fromLatin1(row.message).arg(itemInfoUrl));
        EXPECT_EQ(e.code(), 0);
    }
    const CallOutcome outcome = lastCallOutcome();
    EXPECT_EQ(outcome.failure(), row.failure) << qPrintable(CallOutcome::name(outcome.failure()));
    EXPECT_EQ(outcome.reached(), row.reached) << qPrintable(CallOutcome::name(outcome.reached()));
    EXPECT_EQ(outcome.httpStatus(), 0);
    EXPECT_EQ(outcome.url(), itemInfoUrl);
    EXPECT_TRUE(outcome.isNetworkFailure());
}

INSTANTIATE_TEST_SUITE_P(
    EachKind, FakeBackOfficeFailureTest,
    ::testing::Values(
        FailureRow{"Refused", Failure::Refused, Reached::No,
                   "Connection refused by %1; nothing was sent"},
        FailureRow{"Unresolved", Failure::Unresolved, Reached::No,
                   "Cannot resolve the host of %1; nothing was sent"},
        FailureRow{"TlsFailed", Failure::TlsFailed, Reached::No,
                   "TLS with %1 failed; nothing was sent"},
        FailureRow{"NoConnection", Failure::NoConnection, Reached::No,
                   "No connection to %1; nothing was sent"},
        FailureRow{"NoReply", Failure::NoReply, Reached::Unknown,
                   "No reply from %1 within the time-out; the request was sent, so the server "
                   "may have received it"},
        FailureRow{"ConnectionLost", Failure::ConnectionLost, Reached::Unknown,
                   "The connection to %1 was lost before the reply: it closed; the request was "
                   "sent, so the server may have received it"},
        FailureRow{"ReplyCut", Failure::ReplyCut, Reached::Yes,
                   "Incomplete reply from %1: the connection broke off before the reply was "
                   "complete; the request was sent, so the server may have received it"},
        FailureRow{"ReplyUndecodable", Failure::ReplyUndecodable, Reached::Yes,
                   "Undecodable reply from %1; the request was sent, so the server may have "
                   "received it"},
        FailureRow{"ReplyOverLimit", Failure::ReplyOverLimit, Reached::Yes,
                   "Reply from %1 exceeds the transport's limit; the request was sent, so the "
                   "server may have received it"},
        FailureRow{"NetworkFailure", Failure::NetworkFailure, Reached::Unknown,
                   "Network failure on %1"},
        FailureRow{"ContentFailure", Failure::ContentFailure, Reached::Yes,
                   "Incomplete reply from %1"}),
    [](const ::testing::TestParamInfo<FailureRow>& info) { return info.param.name; });

TEST_F(FakeBackOfficeTest, FailureWithAMessageOfTheTestsOwnGivesThatMessage) {
    fake.on(QStringLiteral("itemInfo"))
        .fail(Failure::NoReply, QStringLiteral("No reply from the back office in 15 s"));

    try {
        scan();
        FAIL() << "a failure must throw";
    } catch (const NetworkException& e) {
        EXPECT_STREQ(e.what(), "No reply from the back office in 15 s");
    }
    EXPECT_EQ(lastCallOutcome().failure(), Failure::NoReply);
}

class FakeBackOfficeNoTransportFailureTest : public FakeBackOfficeTest,
                                             public ::testing::WithParamInterface<Failure> {};

TEST_P(FakeBackOfficeNoTransportFailureTest, IsRefusedWhenScripted) {
    try {
        fake.on(QStringLiteral("itemInfo")).fail(GetParam());
        FAIL() << "only the transport's failures can be scripted with fail()";
    } catch (const std::invalid_argument& e) {
        EXPECT_EQ(QString::fromUtf8(e.what()),
                  QStringLiteral("FakeBackOffice: %1 is no failure of the transport; script a "
                                 "service error with error() and a reply that is no JSON object "
                                 "with replyJson()")
                      .arg(CallOutcome::name(GetParam())));
    }
}

INSTANTIATE_TEST_SUITE_P(
    OtherKinds, FakeBackOfficeNoTransportFailureTest,
    ::testing::Values(Failure::None, Failure::ServiceError, Failure::NotAnObject,
                      Failure::ClientDestroyed),
    [](const ::testing::TestParamInfo<Failure>& info) {
        return CallOutcome::name(info.param).section(QLatin1Char(':'), -1).toStdString();
    });

TEST_F(FakeBackOfficeTest, UnscriptedCallThrowsUnexpectedCallNamingTheOperationAndTheUrl) {
    try {
        scan();
        FAIL() << "an unscripted call must throw";
    } catch (const testing::UnexpectedCall& e) {
        EXPECT_EQ(QString::fromUtf8(e.what()),
                  QStringLiteral("FakeBackOffice: no reply scripted for sales itemInfo (POST %1); "
                                 "script one with on(\"sales\", \"itemInfo\")")
                      .arg(itemInfoUrl));
    }
    ASSERT_EQ(fake.unexpectedCalls().size(), 1);
    EXPECT_EQ(fake.unexpectedCalls().first().url, itemInfoUrl);
}

TEST_F(FakeBackOfficeTest, OneShotReplyAnswersOnceAndTheNextCallIsTold) {
    fake.on(QStringLiteral("itemInfo")).reply(milk());
    EXPECT_EQ(scan(), milk());

    try {
        scan();
        FAIL() << "a used reply must not answer again";
    } catch (const testing::UnexpectedCall& e) {
        EXPECT_EQ(QString::fromUtf8(e.what()),
                  QStringLiteral("FakeBackOffice: the replies scripted for sales itemInfo are "
                                 "used up (POST %1)")
                      .arg(itemInfoUrl));
    }
}

TEST_F(FakeBackOfficeTest, RepliesOfAnOperationAnswerInTheOrderScripted) {
    sales::ItemInfoResponse tea;
    tea.name = QStringLiteral("Tea");
    fake.on(QStringLiteral("itemInfo"))
        .reply(milk())
        .error(1, QStringLiteral("Busy"))
        .fail(Failure::Refused)
        .reply(tea);

    EXPECT_EQ(scan().name, QStringLiteral("Milk"));
    EXPECT_THROW(scan(), Exception);
    EXPECT_EQ(lastCallOutcome().failure(), Failure::ServiceError);
    EXPECT_THROW(scan(), NetworkException);
    EXPECT_EQ(lastCallOutcome().failure(), Failure::Refused);
    EXPECT_EQ(scan().name, QStringLiteral("Tea"));
}

TEST_F(FakeBackOfficeTest, TimesLetsTheLastReplyAnswerThatManyCalls) {
    fake.on(QStringLiteral("itemInfo")).fail(Failure::Refused).times(2).reply(milk());

    EXPECT_THROW(scan(), NetworkException);
    EXPECT_THROW(scan(), NetworkException);
    EXPECT_EQ(scan(), milk());
    EXPECT_THROW(scan(), testing::UnexpectedCall);
}

// Another thread's call may take a reply between its scripting and times().
TEST_F(FakeBackOfficeTest, TimesCountsTheCallsThatTheReplyAnsweredAlready) {
    FakeBackOffice::Script script = fake.on(QStringLiteral("itemInfo"));
    script.reply(milk());
    EXPECT_EQ(scan(), milk());

    script.times(3);

    EXPECT_EQ(scan(), milk());
    EXPECT_EQ(scan(), milk());
    EXPECT_THROW(scan(), testing::UnexpectedCall);
}

TEST_F(FakeBackOfficeTest, TimesAfterAResetRepeatsNothing) {
    FakeBackOffice::Script script = fake.on(QStringLiteral("itemInfo"));
    script.reply(milk());
    fake.reset();

    script.always();

    EXPECT_THROW(scan(), testing::UnexpectedCall);
}

TEST_F(FakeBackOfficeTest, AlwaysLetsTheLastReplyAnswerEveryCall) {
    fake.on(QStringLiteral("itemInfo")).reply(milk()).always();

    for (int call = 0; call < 5; ++call)
        EXPECT_EQ(scan(), milk()) << "call " << call;
}

TEST_F(FakeBackOfficeTest, RepeatingWithNothingScriptedIsRefused) {
    EXPECT_THROW(fake.on(QStringLiteral("itemInfo")).always(), std::logic_error);
    EXPECT_THROW(fake.on(QStringLiteral("itemInfo")).reply(milk()).times(0), std::invalid_argument);
}

TEST_F(FakeBackOfficeTest, OperationsOfOtherServicesAnswerFromTheirOwnScripts) {
    fake.on(QStringLiteral("discCalc")).replyJson(R"({"chequeId": "disc"})");
    fake.on(QStringLiteral("loyalty"), QStringLiteral("processId"))
        .replyJson(R"({"discCardId": "loyalty"})");

    EXPECT_EQ(loyalty->processId({}).response().discCardId, QStringLiteral("loyalty"));
    EXPECT_EQ(disc->discCalc({}).response().chequeId, QStringLiteral("disc"));
}

TEST_F(FakeBackOfficeTest, UnknownOperationIsRefusedWhenScripted) {
    try {
        fake.on(QStringLiteral("priceOf"));
        FAIL() << "no service has priceOf";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "FakeBackOffice::on(\"priceOf\"): no service has an operation "
                               "priceOf; script its URL with onUrl()");
    }
    try {
        fake.on(QStringLiteral("disc"), QStringLiteral("itemInfo"));
        FAIL() << "itemInfo is the sales service's";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(),
                     "FakeBackOffice::on(\"disc\", \"itemInfo\"): the disc service has no "
                     "operation itemInfo");
    }
}

TEST_F(FakeBackOfficeTest, WholeUrlIsMatchedBeforeThePathAndThePathBeforeTheOperation) {
    fake.on(QStringLiteral("itemInfo")).replyJson(R"({"name": "by operation"})").always();
    fake.onUrl(QStringLiteral("/api/axapta/ExchangeData_Sales/itemInfo"))
        .replyJson(R"({"name": "by path"})");
    fake.onUrl(itemInfoUrl).replyJson(R"({"name": "by URL"})");

    EXPECT_EQ(scan().name, QStringLiteral("by URL"));
    EXPECT_EQ(scan().name, QStringLiteral("by path"));
    EXPECT_EQ(scan().name, QStringLiteral("by operation"));
}

TEST_F(FakeBackOfficeTest, HostsOwnUrlIsAnsweredByItsScriptAndNamedWhenUnscripted) {
    PreparedRequest<sales::ItemInfoResponse> own;
    own.url = QStringLiteral("http://till.local/custom/priceOf");
    own.client = sales->restClient();

    try {
        own.response();
        FAIL() << "an unscripted URL must throw";
    } catch (const testing::UnexpectedCall& e) {
        EXPECT_STREQ(e.what(), "FakeBackOffice: no reply scripted for the URL's operation "
                               "\"priceOf\", of no known service (POST "
                               "http://till.local/custom/priceOf); script one with "
                               "onUrl(\"http://till.local/custom/priceOf\")");
    }
    fake.onUrl(QStringLiteral("/custom/priceOf")).reply(milk());
    EXPECT_EQ(own.getResponseVariant().toMap().value(QStringLiteral("name")),
              QStringLiteral("Milk"));
    EXPECT_EQ(fake.requests(QStringLiteral("priceOf")).last().service, QString());
}

TEST_F(FakeBackOfficeTest, RecordsEachRequestInOrderWithItsOperationUrlAndBody) {
    fake.on(QStringLiteral("itemInfo")).reply(milk()).always();
    fake.on(QStringLiteral("discCalc")).replyJson("{}");
    disc::DiscCalcRequest cheque;
    cheque.chequeId = QStringLiteral("c-7");

    scan(QStringLiteral("1"));
    disc->discCalc(cheque).response();
    scan(QStringLiteral("2"));

    const QList<FakeBackOffice::ReceivedRequest> all = fake.requests();
    ASSERT_EQ(all.size(), 3);
    EXPECT_EQ(all[0].service, QStringLiteral("sales"));
    EXPECT_EQ(all[0].operation, QStringLiteral("itemInfo"));
    EXPECT_EQ(all[0].url, itemInfoUrl);
    EXPECT_EQ(all[0].body, (QVariantMap{{QStringLiteral("sectionId"), QStringLiteral("S1")},
                                        {QStringLiteral("barcode"), QStringLiteral("1")}}));
    EXPECT_EQ(all[0].json, QByteArray(R"({"barcode":"1","sectionId":"S1"})"));
    EXPECT_EQ(all[1].service, QStringLiteral("disc"));
    EXPECT_EQ(all[1].operation, QStringLiteral("discCalc"));
    EXPECT_EQ(all[1].url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc"));
    EXPECT_EQ(all[1].body.value(QStringLiteral("chequeId")), QStringLiteral("c-7"));
    EXPECT_EQ(all[2].body.value(QStringLiteral("barcode")), QStringLiteral("2"));

    const QList<FakeBackOffice::ReceivedRequest> scans = fake.requests(QStringLiteral("itemInfo"));
    ASSERT_EQ(scans.size(), 2);
    EXPECT_EQ(scans[1].body.value(QStringLiteral("barcode")), QStringLiteral("2"));
}

TEST_F(FakeBackOfficeTest, TypedRequestsAreTheRecordsThatTheHostSent) {
    fake.on(QStringLiteral("itemInfo")).reply(milk()).always();

    scan(QStringLiteral("1"));
    scan(QStringLiteral("2"));

    EXPECT_EQ(
        fake.requests<sales::ItemInfoRequest>(QStringLiteral("itemInfo")),
        (QList<sales::ItemInfoRequest>{scanOf(QStringLiteral("1")), scanOf(QStringLiteral("2"))}));
    EXPECT_TRUE(
        fake.requests<sales::ReserveChequeRequest>(QStringLiteral("reserveCheque")).isEmpty());
}

TEST_F(FakeBackOfficeTest, ResetForgetsScriptsRequestsAndUnexpectedCalls) {
    fake.on(QStringLiteral("itemInfo")).reply(milk()).always();
    scan();
    EXPECT_THROW(disc->discCalc({}).response(), testing::UnexpectedCall);

    fake.reset();

    EXPECT_TRUE(fake.requests().isEmpty());
    EXPECT_TRUE(fake.unexpectedCalls().isEmpty());
    EXPECT_THROW(scan(), testing::UnexpectedCall);
    EXPECT_EQ(fake.requests().size(), 1);
}

TEST_F(FakeBackOfficeTest, CallsFromEightThreadsAreEachRecordedWholeAndAnswered) {
    constexpr int threads = 8;
    constexpr int callsEach = 50;
    fake.on(QStringLiteral("itemInfo")).reply(milk()).always();
    std::vector<std::thread> callers;
    std::vector<int> answered(threads, 0);
    for (int t = 0; t < threads; ++t) {
        callers.emplace_back([this, t, &answered] {
            for (int call = 0; call < callsEach; ++call) {
                if (scan(QStringLiteral("%1-%2").arg(t).arg(call)) == milk())
                    ++answered[t];
            }
        });
    }
    for (std::thread& caller : callers)
        caller.join();

    const QList<FakeBackOffice::ReceivedRequest> all = fake.requests();
    ASSERT_EQ(all.size(), threads * callsEach);
    std::vector<int> next(threads, 0); // each thread's calls arrive in its own order
    std::set<QString> barcodes;
    for (const FakeBackOffice::ReceivedRequest& received : all) {
        const QString barcode = received.body.value(QStringLiteral("barcode")).toString();
        const int t = barcode.section(QLatin1Char('-'), 0, 0).toInt();
        ASSERT_GE(t, 0);
        ASSERT_LT(t, threads);
        EXPECT_EQ(barcode, QStringLiteral("%1-%2").arg(t).arg(next[t]++));
        EXPECT_EQ(received.json,
                  QStringLiteral(R"({"barcode":"%1","sectionId":"S1"})").arg(barcode).toUtf8());
        EXPECT_EQ(received.url, itemInfoUrl);
        barcodes.insert(barcode);
    }
    EXPECT_EQ(barcodes.size(), std::size_t(threads * callsEach));
    EXPECT_EQ(answered, std::vector<int>(threads, callsEach));
}

TEST_F(FakeBackOfficeTest, ScriptingAndResettingWhileOtherThreadsCallIsSafe) {
    constexpr int threads = 4;
    std::vector<std::thread> callers;
    std::atomic<bool> stop{false};
    for (int t = 0; t < threads; ++t) {
        callers.emplace_back([this, &stop] {
            while (!stop) {
                try {
                    scan();
                } catch (const testing::UnexpectedCall&) {
                    // between a reset and the next script
                }
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        fake.on(QStringLiteral("itemInfo")).reply(milk()).times(3);
        fake.requests();
        fake.reset();
    }
    stop = true;
    for (std::thread& caller : callers)
        caller.join();

    fake.reset();
    fake.on(QStringLiteral("itemInfo")).reply(milk());
    EXPECT_EQ(scan(), milk());
    EXPECT_EQ(fake.requests().size(), 1);
}

TEST(FakeBackOfficeLife, DestroyedAtTheEndOfATestPrintsNothing) {
    test::ConfigScope config;
    auto fake = std::make_unique<FakeBackOffice>();
    const auto sales = test::apiOver<sales::Api>(*fake);
    fake->on(QStringLiteral("itemInfo")).reply(milk());
    sales->itemInfo(scanOf(QStringLiteral("1"))).response();
    test::LogCapture log;

    fake.reset();

    EXPECT_EQ(log.all(), "");
}

TEST(FakeBackOfficeLife, DestroyedItLeavesMockFactoryEmpty) {
    test::ConfigScope config;
    auto fake = std::make_unique<FakeBackOffice>();
    MockFactory<RestClient>::mocked = fake.get();

    fake.reset();

    EXPECT_EQ(MockFactory<RestClient>::mocked, nullptr);
}

} // namespace
} // namespace vesk
