// The pattern the three service clients share: base URL, shared HTTP client,
// logger, and the preparation of a call.

#include "support/ConfigScope.h"
#include "support/Json.h"
#include "support/LogCapture.h"
#include "support/ScriptedRestClient.h"
#include "support/TestRecords.h"

#include <vesk/vesk.h>

#include <gtest/gtest.h>

#include <ostream>

namespace vesk {
namespace {

using test::ConfigScope;

// Reaches the protected preparation of a client, as the operations do.
template <class Client>
class Probe : public Client {
public:
    using Client::endpointUrl;
    using Client::prepare;
};

struct BaseUrlCase {
    const char* name;
    const char* configured; // nullptr: not configured
    const char* expectedBase;
    const char* expectedDiscCalc;
};

class DiscBaseUrlTest : public testing::TestWithParam<BaseUrlCase> {};

TEST_P(DiscBaseUrlTest, ResolvesTheEndpointAgainstTheConfiguredBase) {
    ConfigScope scope;
    if (GetParam().configured)
        scope.config().setValue("Vesk.disc:url", QString::fromUtf8(GetParam().configured));
    const Probe<disc::Api> api;
    EXPECT_EQ(api.baseUrl().toString(), QString::fromUtf8(GetParam().expectedBase));
    EXPECT_EQ(api.endpointUrl("./discCalc").toString(),
              QString::fromUtf8(GetParam().expectedDiscCalc));
}

INSTANTIATE_TEST_SUITE_P(
    Bases, DiscBaseUrlTest,
    testing::Values(BaseUrlCase{"not_configured_loopback_default", nullptr,
                                "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/",
                                "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc"},
                    BaseUrlCase{"path_api_gains_slash", "http://host:8080/api",
                                "http://host:8080/api/", "http://host:8080/api/discCalc"},
                    BaseUrlCase{"trailing_slash_unchanged", "http://host/api/", "http://host/api/",
                                "http://host/api/discCalc"},
                    BaseUrlCase{"two_slashes_kept", "http://host/api//", "http://host/api//",
                                "http://host/api//discCalc"},
                    BaseUrlCase{"query_and_fragment_dropped", "http://host/a/?x=1#f",
                                "http://host/a/?x=1#f/", "http://host/a/discCalc"},
                    BaseUrlCase{"host_only", "https://host", "https://host/",
                                "https://host/discCalc"}),
    [](const auto& info) { return std::string(info.param.name); });

struct ServiceCase {
    const char* name;
    QUrl (*baseUrl)();
    const char* expected;
};

template <class Client>
QUrl defaultBase() {
    ConfigScope scope;
    return Client().baseUrl();
}

class DefaultBaseUrlTest : public testing::TestWithParam<ServiceCase> {};

TEST_P(DefaultBaseUrlTest, IsTheLoopbackAddressOnPort55555) {
    EXPECT_EQ(GetParam().baseUrl().toString(), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Services, DefaultBaseUrlTest,
    testing::Values(ServiceCase{"disc", &defaultBase<disc::Api>,
                                "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/"},
                    ServiceCase{"loyalty", &defaultBase<loyalty::Api>,
                                "http://127.0.0.1:55555/api/axapta/ExchangeData_Loyalty/"},
                    ServiceCase{"sales", &defaultBase<sales::Api>,
                                "http://127.0.0.1:55555/api/axapta/ExchangeData_Sales/"}),
    [](const auto& info) { return std::string(info.param.name); });

struct BadUrlRow {
    const char* name;
    const char* configured;
};

void PrintTo(const BadUrlRow& row, std::ostream* out) {
    *out << row.name;
}

class BadBaseUrlTest : public testing::TestWithParam<BadUrlRow> {};

TEST_P(BadBaseUrlTest, IsUsedAsGivenWithAWarning) {
    const QString configured = QString::fromUtf8(GetParam().configured);
    test::ConfigScope scope({{"Vesk.disc:url", configured}});
    test::LogCapture log;

    const disc::Api api;

    EXPECT_EQ(api.baseUrl(), QUrl(configured + QLatin1Char('/'), QUrl::TolerantMode));
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first(),
              QStringLiteral("veskdisc warning: Vesk.disc:url = \"%1\" is not an absolute http or "
                             "https URL; it is used as given, so the calls of vesk::disc::Api will "
                             "fail")
                  .arg(configured));
}

INSTANTIATE_TEST_SUITE_P(Urls, BadBaseUrlTest,
                         testing::Values(BadUrlRow{"NoScheme", "127.0.0.1:8080/api"},
                                         BadUrlRow{"HostOnly", "backoffice/api"},
                                         BadUrlRow{"OtherScheme", "ftp://backoffice/api"},
                                         BadUrlRow{"NoHost", "http:///api"}),
                         [](const testing::TestParamInfo<BadUrlRow>& info) {
                             return std::string(info.param.name);
                         });

TEST(ServiceClient, HttpsBaseUrlIsTakenWithoutAWarning) {
    test::ConfigScope scope({{"Vesk.disc:url", "https://backoffice.shop.lan/disc"}});
    test::LogCapture log;

    const disc::Api api;

    EXPECT_EQ(api.baseUrl().toString(), QStringLiteral("https://backoffice.shop.lan/disc/"));
    EXPECT_EQ(log.all(), "");
}

TEST(ServiceClient, ReadsEachServicesOwnKey) {
    ConfigScope scope({{"Vesk.disc:url", "http://d/"},
                       {"Vesk.loyalty:url", "http://l/"},
                       {"Vesk.sales:url", "http://s/"}});
    EXPECT_EQ(disc::Api().baseUrl(), QUrl("http://d/"));
    EXPECT_EQ(loyalty::Api().baseUrl(), QUrl("http://l/"));
    EXPECT_EQ(sales::Api().baseUrl(), QUrl("http://s/"));
}

TEST(ServiceClient, MakesTheConfigSingletonWhenThereIsNone) {
    Config* previous = Singleton<Config>::instance;
    Singleton<Config>::instance = nullptr;
    const sales::Api api;
    EXPECT_NE(Singleton<Config>::instance, nullptr);
    delete Singleton<Config>::instance;
    Singleton<Config>::instance = previous;
}

TEST(ServiceClient, GivesItsClientTheServicesLogger) {
    ConfigScope scope;
    EXPECT_EQ(disc::Api().restClient()->logger()->name(), QStringLiteral("veskdisc"));
    EXPECT_EQ(loyalty::Api().restClient()->logger()->name(), QStringLiteral("veskloyalty"));
    EXPECT_EQ(sales::Api().restClient()->logger()->name(), QStringLiteral("vesksales"));
    EXPECT_EQ(disc::Api().restClient()->logger(),
              Log4Qt::LogManager::logger(QStringLiteral("veskdisc")));
}

TEST(ServiceClient, EachInstanceWithoutSubstituteMakesItsOwnClient) {
    ConfigScope scope;
    const disc::Api a;
    const disc::Api b;
    EXPECT_NE(a.restClient(), b.restClient());
}

TEST(ServiceClient, SubstituteServesEveryPreparedRequestAndOutlivesThem) {
    ConfigScope scope;
    test::ScriptedRestClient substitute;
    MockFactory<RestClient>::mocked = &substitute;
    {
        const Probe<disc::Api> api;
        MockFactory<RestClient>::mocked = nullptr; // taken once, when the client is made
        EXPECT_EQ(api.restClient().data(), &substitute);
        auto first = api.prepare<test::Reply>("./discCalc", test::SampleEntry());
        auto second = api.prepare<test::Reply>("./discCalcPay", test::SampleEntry());
        EXPECT_EQ(first.client.data(), &substitute);
        EXPECT_EQ(second.client.data(), &substitute);
        substitute.answer(200, R"({"text": "ok"})");
        EXPECT_EQ(first.response().text, QStringLiteral("ok"));
        EXPECT_EQ(substitute.sent.size(), 1u);
    }
    // Every prepared request and the client are gone; the substitute is not.
    EXPECT_EQ(test::ScriptedRestClient::liveInstances, 1);
    substitute.answer(200, "{}");
    EXPECT_EQ(substitute.response().statusCode, 200);
}

TEST(ServiceClient, PreparedRequestHoldsTheSerialisedRecordAndAnAbsoluteUrl) {
    ConfigScope scope;
    const Probe<disc::Api> api;
    test::SampleEntry record;
    record.rank = 3;
    const auto prepared = api.prepare<test::Reply>("./discCalc", record);
    EXPECT_EQ(prepared.url,
              QStringLiteral("http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc"));
    EXPECT_FALSE(QUrl(prepared.url).isRelative());
    EXPECT_EQ(prepared.body, serder::serialize(record));
    EXPECT_EQ(test::compactJson(prepared.body), R"({"qty":0,"rank":3})");
    EXPECT_EQ(prepared.client, api.restClient());
    EXPECT_FALSE(prepared.keptResponse().has_value());
}

TEST(ServiceClient, PreparingSendsNothing) {
    ConfigScope scope;
    test::ScriptedRestClient substitute;
    MockFactory<RestClient>::mocked = &substitute;
    const Probe<sales::Api> api;
    MockFactory<RestClient>::mocked = nullptr;
    api.prepare<test::Reply>("./itemInfo", test::SampleEntry());
    EXPECT_TRUE(substitute.sent.empty());
}

TEST(ServiceClient, SingletonMakesOneInstanceOnFirstUse) {
    ConfigScope scope;
    ASSERT_EQ(Singleton<loyalty::Api>::instance, nullptr);
    loyalty::Api* first = loyalty::Api::getInstance();
    EXPECT_EQ(Singleton<loyalty::Api>::instance, first);
    EXPECT_EQ(loyalty::Api::getInstance(), first);
}

} // namespace
} // namespace vesk
