// The double of the process: installed before the service clients are
// made, it is the HTTP client of each of them.

#include "support/ScriptedRestClient.h"

#include <vesk/testing/FakeBackOffice.h>
#include <vesk/vesk.h>

#include <gtest/gtest.h>

namespace {

using vesk::testing::FakeBackOffice;

TEST(FakeBackOfficeInstall, EveryServiceMadeAfterwardsCallsThroughIt) {
    FakeBackOffice& fake = FakeBackOffice::install();
    fake.reset();
    fake.on(QStringLiteral("itemInfo")).replyJson(R"({"name": "Milk"})");
    fake.on(QStringLiteral("discCalc")).replyJson(R"({"chequeId": "c-1"})");
    fake.on(QStringLiteral("processId")).replyJson(R"({"discCardId": "c-2"})");

    EXPECT_EQ(MockFactory<RestClient>::mocked, &fake);
    EXPECT_EQ(vesk::sales::Api::getInstance()->restClient().data(), &fake);
    EXPECT_EQ(vesk::disc::Api::getInstance()->restClient().data(), &fake);
    EXPECT_EQ(vesk::loyalty::Api::getInstance()->restClient().data(), &fake);
    EXPECT_EQ(vesk::sales::Api::getInstance()->itemInfo({}).response().name, "Milk");
    EXPECT_EQ(vesk::disc::Api::getInstance()->discCalc({}).response().chequeId, "c-1");
    EXPECT_EQ(vesk::loyalty::Api::getInstance()->processId({}).response().discCardId, "c-2");
    EXPECT_EQ(fake.requests().size(), 3);
}

TEST(FakeBackOfficeInstall, InstallingAgainGivesTheSameDouble) {
    FakeBackOffice& first = FakeBackOffice::install();
    vesk::sales::Api::getInstance();

    EXPECT_EQ(&FakeBackOffice::install(), &first);
}

TEST(FakeBackOfficeInstall, RefusedWhileAnotherSubstituteIsInstalled) {
    FakeBackOffice& fake = FakeBackOffice::install();
    vesk::test::ScriptedRestClient other;
    MockFactory<RestClient>::mocked = &other;

    try {
        FakeBackOffice::install();
        ADD_FAILURE() << "install() over another substitute must throw";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "FakeBackOffice::install(): another substitute RestClient is "
                               "installed in MockFactory");
    }
    MockFactory<RestClient>::mocked = &fake;
}

} // namespace
