// A substitute RestClient installed through MockFactory: taken when a
// service is made and never later, owned by whoever installed it, and each
// service keeps its own logger even when several share one substitute.

#include "support/ConfigScope.h"
#include "support/LogCapture.h"
#include "support/ScriptedRestClient.h"
#include "support/SubstituteApi.h"

#include <vesk/vesk.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>

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

TEST(SubstituteClient, DestroyedWhileInUseMakesCallsFailInsteadOfReachingFreedMemory) {
    test::ConfigScope config;
    auto substitute = std::make_unique<test::ScriptedRestClient>();
    MockFactory<RestClient>::mocked = substitute.get();
    sales::Api api;
    MockFactory<RestClient>::mocked = nullptr;
    auto prepared = api.itemInfo(anItem());
    test::LogCapture log;

    substitute.reset();

    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first(),
              QStringLiteral("vesksales warning: The HTTP client of vesk::sales::Api was "
                             "destroyed while vesk::sales::Api still uses it: its calls now fail "
                             "with vesk::NetworkException. A substitute installed through "
                             "MockFactory must outlive the services that took it."));
    const auto started = std::chrono::steady_clock::now();
    try {
        prepared.response();
        FAIL() << "a call through a destroyed client must fail";
    } catch (const NetworkException& e) {
        EXPECT_THAT(e.what(), HasSubstr("the HTTP client of this call was destroyed while still "
                                        "in use; nothing was sent"));
    }
    EXPECT_THROW(api.itemInfo(anItem()).response(), NetworkException);
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(1));
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

TEST(SubstituteClient, SharedByThreeServicesEachCallGoesOutUnderItsServicesLogger) {
    test::ConfigScope config;

    // Notes the logger that each request went out with.
    class LoggerProbe : public test::ScriptedRestClient {
    public:
        void send(const http::Request& request) override {
            ScriptedRestClient::send(request);
            loggers << (logger() ? logger()->name() : QString());
        }
        QStringList loggers;
    } substitute;
    const auto disc = test::apiOver<disc::Api>(substitute);
    const auto loyalty = test::apiOver<loyalty::Api>(substitute);
    const auto sales = test::apiOver<sales::Api>(substitute);

    sales->itemInfo(anItem()).response();
    disc->discCalc(disc::DiscCalcRequest()).response();
    loyalty->processId(loyalty::ProcessIdRequest()).response();
    sales->itemInfo(anItem()).response();

    EXPECT_EQ(substitute.loggers,
              QStringList({QStringLiteral("vesksales"), QStringLiteral("veskdisc"),
                           QStringLiteral("veskloyalty"), QStringLiteral("vesksales")}));
}

} // namespace
} // namespace vesk
