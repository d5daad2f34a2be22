// A service client made before the double is installed keeps its own HTTP
// client: installing then is refused, naming the service.

#include <vesk/testing/FakeBackOffice.h>
#include <vesk/vesk.h>

#include <gtest/gtest.h>

namespace {

TEST(FakeBackOfficeInstall, RefusedOnceAServiceWasMadeWithAnotherClient) {
    vesk::sales::Api::getInstance();
    try {
        vesk::testing::FakeBackOffice::install();
        FAIL() << "install() after the service was made must throw";
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "FakeBackOffice::install(): vesk::sales::Api was made before with "
                               "another HTTP client, which it keeps; call install() before the "
                               "first use of a service client");
    }
    EXPECT_EQ(MockFactory<RestClient>::mocked, nullptr);
}

} // namespace
