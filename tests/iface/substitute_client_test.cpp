// A substitute RestClient installed through MockFactory: taken when a
// service is made and never later, owned by whoever installed it, known by
// the references that reach it rather than by its address, given a logger
// only when a service is made, and free to call back into the library.

#include "support/ConfigScope.h"
#include "support/LogCapture.h"
#include "support/ScriptedRestClient.h"
#include "support/SubstituteApi.h"

#include <vesk/vesk.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <new>
#include <thread>

namespace vesk {
namespace {

using testing::HasSubstr;

sales::ItemInfoRequest anItem() {
    sales::ItemInfoRequest request;
    request.barcode = QStringLiteral("4601234000017");
    return request;
}

TEST(SubstituteClient, InstalledAfterTheServiceWasMadeIsNotUsedAndIsWarnedAboutOnce) {
    test::ConfigScope config;
    sales::Api api;
    test::ScriptedRestClient late;
    test::LogCapture log;

    MockFactory<RestClient>::mocked = &late;
    const auto first = api.itemInfo(anItem());
    const auto second = api.itemInfo(anItem());
    MockFactory<RestClient>::mocked = nullptr;

    EXPECT_NE(first.client.data(), &late);
    EXPECT_EQ(first.client, api.restClient());
    EXPECT_EQ(second.client, api.restClient());
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first(),
              QStringLiteral("vesksales warning: A substitute RestClient was installed in "
                             "MockFactory after vesk::sales::Api was made; vesk::sales::Api keeps "
                             "the client it took then. Install a substitute before the service's "
                             "first use."));
}

TEST(SubstituteClient, InstalledBeforeTheServiceWasMadeIsUsedWithoutAWarning) {
    test::ConfigScope config;
    test::ScriptedRestClient substitute;
    MockFactory<RestClient>::mocked = &substitute;
    sales::Api api;
    test::LogCapture log;

    const auto prepared = api.itemInfo(anItem());
    MockFactory<RestClient>::mocked = nullptr;

    EXPECT_EQ(prepared.client.data(), &substitute);
    EXPECT_EQ(log.all(), "");
}

const QString lostClientWarning = QStringLiteral(
    "vesksales warning: The HTTP client of vesk::sales::Api was destroyed while vesk::sales::Api "
    "still uses it: its calls now fail with vesk::NetworkException. A substitute installed "
    "through MockFactory must outlive the services that took it.");

// A substitute destroyed at the end of a test, with no call in flight, is no
// mistake yet: the service hears of it when it calls through it again.
TEST(SubstituteClient, DestroyedWhileInUseMakesCallsFailInsteadOfReachingFreedMemory) {
    test::ConfigScope config;
    auto substitute = std::make_unique<test::ScriptedRestClient>();
    MockFactory<RestClient>::mocked = substitute.get();
    sales::Api api;
    MockFactory<RestClient>::mocked = nullptr;
    auto prepared = api.itemInfo(anItem());
    test::LogCapture log;

    substitute.reset();

    EXPECT_EQ(log.all(), "");
    const auto started = std::chrono::steady_clock::now();
    try {
        prepared.response();
        FAIL() << "a call through a destroyed client must fail";
    } catch (const NetworkException& e) {
        EXPECT_THAT(e.what(), HasSubstr("the HTTP client of this call was destroyed while still "
                                        "in use; nothing was sent"));
    }
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first(), lostClientWarning);
    EXPECT_THROW(api.itemInfo(anItem()).response(), NetworkException);
    EXPECT_EQ(log.lines().size(), 1) << "told once: " << log.all();
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(1));
}

TEST(SubstituteClient, DestroyedWithNoServiceCallingAgainPrintsNothing) {
    test::ConfigScope config;
    auto substitute = std::make_unique<test::ScriptedRestClient>();
    const auto api = test::apiOver<sales::Api>(*substitute);
    api->itemInfo(anItem()).response();
    test::LogCapture log;

    substitute.reset();

    EXPECT_EQ(log.all(), "");
}

// Holds its send() until released, so that the test can end the client's
// life while a call is in flight. The end is announced through the
// destroyed() signal, as ~QObject() does, so the object itself stays valid
// for the call that it is carrying.
class HeldClient : public test::ScriptedRestClient {
public:
    void send(const http::Request& request) override {
        ScriptedRestClient::send(request);
        entered.set_value();
        released.get_future().wait();
    }
    std::promise<void> entered;
    std::promise<void> released;
};

TEST(SubstituteClient, DestroyedDuringACallIsWarnedAboutAtOnce) {
    test::ConfigScope config;
    HeldClient substitute;
    const auto api = test::apiOver<sales::Api>(substitute);
    auto call = std::async(std::launch::async, [&api] { api->itemInfo(anItem()).response(); });
    ASSERT_EQ(substitute.entered.get_future().wait_for(std::chrono::seconds(5)),
              std::future_status::ready);
    test::LogCapture log;

    Q_EMIT substitute.destroyed(&substitute);

    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first(),
              QStringLiteral("vesksales warning: The HTTP client of vesk::sales::Api was destroyed "
                             "during a call through it while vesk::sales::Api still uses it: its "
                             "calls now fail with vesk::NetworkException. A substitute installed "
                             "through MockFactory must outlive the services that took it."));
    substitute.released.set_value();
    ASSERT_EQ(call.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    EXPECT_THROW(api->itemInfo(anItem()).response(), NetworkException);
    EXPECT_EQ(log.lines().size(), 1) << "not told twice: " << log.all();
}

TEST(SubstituteClient, ServiceMadeAgainAtTheSameAddressWorksAfterTheOldOneWasDestroyed) {
    test::ConfigScope config;
    for (int round = 0; round < 3; ++round) {
        test::ScriptedRestClient substitute;
        MockFactory<RestClient>::mocked = &substitute;
        sales::Api api;
        MockFactory<RestClient>::mocked = nullptr;
        substitute.answer(200, R"({"barcode": "4601234000017"})");

        EXPECT_EQ(api.itemInfo(anItem()).response().barcode, QStringLiteral("4601234000017"));
    }
}

// Notes the logger that each request went out with.
class LoggerProbe : public test::ScriptedRestClient {
public:
    void send(const http::Request& request) override {
        ScriptedRestClient::send(request);
        loggers << (logger() ? logger()->name() : QString());
    }
    QStringList loggers;
};

TEST(SubstituteClient, EachServiceMadeOverItGivesItItsLoggerAndCallsChangeNothing) {
    test::ConfigScope config;
    LoggerProbe substitute;
    const auto disc = test::apiOver<disc::Api>(substitute);
    const auto loyalty = test::apiOver<loyalty::Api>(substitute);
    const auto sales = test::apiOver<sales::Api>(substitute);

    sales->itemInfo(anItem()).response();
    disc->discCalc(disc::DiscCalcRequest()).response();
    loyalty->processId(loyalty::ProcessIdRequest()).response();

    // The service made last gave it its logger; no call gave it another.
    EXPECT_EQ(substitute.loggers,
              QStringList({QStringLiteral("vesksales"), QStringLiteral("vesksales"),
                           QStringLiteral("vesksales")}));
}

TEST(SubstituteClient, CallsLeaveTheLoggerThatTheHostGaveItsSubstitute) {
    test::ConfigScope config;
    LoggerProbe substitute;
    const auto disc = test::apiOver<disc::Api>(substitute);
    const auto loyalty = test::apiOver<loyalty::Api>(substitute);
    const auto sales = test::apiOver<sales::Api>(substitute);
    substitute.setLogger(Log4Qt::LogManager::logger(QStringLiteral("till"), QString()));

    sales->itemInfo(anItem()).response();
    disc->discCalc(disc::DiscCalcRequest()).response();
    loyalty->processId(loyalty::ProcessIdRequest()).response();

    EXPECT_EQ(substitute.loggers, QStringList({QStringLiteral("till"), QStringLiteral("till"),
                                               QStringLiteral("till")}));
}

TEST(SubstituteClient, SharedByServicesWhoseBaseUrlsCarryAQueryOrFragmentWarnsOnEachCallsService) {
    test::ConfigScope config(
        {{QStringLiteral("Vesk.disc:url"), QStringLiteral("http://127.0.0.1:9/disc?store=7")},
         {QStringLiteral("Vesk.loyalty:url"), QStringLiteral("http://127.0.0.1:9/loyalty/#till")},
         {QStringLiteral("Vesk.sales:url"), QStringLiteral("http://127.0.0.1:9/sales/?till=2")}});
    test::ScriptedRestClient substitute;
    const auto disc = test::apiOver<disc::Api>(substitute);
    const auto loyalty = test::apiOver<loyalty::Api>(substitute);
    const auto sales = test::apiOver<sales::Api>(substitute);
    substitute.answer(200, "[]"); // read as an empty object, with a warning
    test::LogCapture log;

    loyalty->processId(loyalty::ProcessIdRequest()).response();
    sales->itemInfo(anItem()).response();
    disc->discCalc(disc::DiscCalcRequest()).response();

    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 3) << log.all();
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("veskloyalty warning: "))) << log.all();
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("vesksales warning: "))) << log.all();
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("veskdisc warning: "))) << log.all();
}

// Placement-new puts a second client exactly where the first one was, as
// an allocator may do with any two substitutes made one after the other.
TEST(SubstituteClient, ANewClientAtTheAddressOfADestroyedOneIsServed) {
    test::ConfigScope config;
    alignas(test::ScriptedRestClient) unsigned char storage[sizeof(test::ScriptedRestClient)];
    auto* first = new (storage) test::ScriptedRestClient;
    const auto old = test::apiOver<sales::Api>(*first);
    first->answer(200, R"({"name": "first"})");
    EXPECT_EQ(old->itemInfo(anItem()).response().name, QStringLiteral("first"));
    first->~ScriptedRestClient();

    auto* second = new (storage) test::ScriptedRestClient;
    ASSERT_EQ(static_cast<void*>(second), static_cast<void*>(first));
    second->answer(200, R"({"name": "second"})");

    // Through MockFactory, by a service made over it.
    const auto made = test::apiOver<sales::Api>(*second);
    EXPECT_EQ(made->itemInfo(anItem()).response().name, QStringLiteral("second"));

    // Through a prepared request that the host made.
    PreparedRequest<sales::ItemInfoResponse> own;
    own.url = QStringLiteral("http://127.0.0.1:9/api/itemInfo");
    own.client = QSharedPointer<RestClient>(second, [](RestClient*) {});
    EXPECT_EQ(own.response().name, QStringLiteral("second"));

    // The service that lost its client still refuses, says why, and sends nothing.
    test::LogCapture log;
    EXPECT_THROW(old->itemInfo(anItem()).response(), NetworkException);
    EXPECT_EQ(log.lines(), QStringList{lostClientWarning});
    EXPECT_EQ(second->sent.size(), 2u);
    second->~ScriptedRestClient();
}

// Performs one more call through the service `inner` from inside its own
// send(), once, the way a substitute that fans a call out might.
class ReentrantClient : public test::ScriptedRestClient {
public:
    void send(const http::Request& request) override {
        ScriptedRestClient::send(request);
        if (inner && !nested) {
            nested = true;
            innerName = inner().response().name;
        }
    }
    std::function<PreparedRequest<sales::ItemInfoResponse>()> inner;
    bool nested = false;
    QString innerName;
};

TEST(SubstituteClient, ACallMadeFromInsideItsSendThroughTheSameServiceProceeds) {
    test::ConfigScope config;
    ReentrantClient substitute;
    const auto sales = test::apiOver<sales::Api>(substitute);
    substitute.answer(200, R"({"name": "Milk"})");
    substitute.inner = [&sales] { return sales->itemInfo(anItem()); };

    std::promise<QString> outer;
    std::thread caller([&] {
        try {
            outer.set_value(sales->itemInfo(anItem()).response().name);
        } catch (...) {
            outer.set_exception(std::current_exception());
        }
    });
    auto result = outer.get_future();
    const bool finished = result.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
    if (!finished) {
        caller.detach(); // hung: fail instead of hanging the test run
        FAIL() << "a call from inside send() through the same client hung";
    }
    caller.join();
    EXPECT_EQ(result.get(), QStringLiteral("Milk"));
    EXPECT_EQ(substitute.innerName, QStringLiteral("Milk"));
    EXPECT_EQ(substitute.sent.size(), 2u);
}

TEST(SubstituteClient, AServiceCallingAnotherThatSharesItsSubstituteProceeds) {
    test::ConfigScope config;
    ReentrantClient substitute;
    const auto disc = test::apiOver<disc::Api>(substitute);
    const auto sales = test::apiOver<sales::Api>(substitute);
    substitute.answer(200, R"({"name": "Milk"})");
    substitute.inner = [&sales] { return sales->itemInfo(anItem()); };

    std::promise<void> outer;
    std::thread caller([&] {
        try {
            disc->discCalc(disc::DiscCalcRequest()).response();
            outer.set_value();
        } catch (...) {
            outer.set_exception(std::current_exception());
        }
    });
    auto result = outer.get_future();
    if (result.wait_for(std::chrono::seconds(5)) != std::future_status::ready) {
        caller.detach();
        FAIL() << "a call of one service from inside another's send() hung";
    }
    caller.join();
    EXPECT_NO_THROW(result.get());
    EXPECT_EQ(substitute.innerName, QStringLiteral("Milk"));
    ASSERT_EQ(substitute.sent.size(), 2u);
    EXPECT_TRUE(substitute.sent[0].url.path().endsWith(QStringLiteral("/discCalc")));
    EXPECT_TRUE(substitute.sent[1].url.path().endsWith(QStringLiteral("/itemInfo")));
}

} // namespace
} // namespace vesk
