// Delays drawn from distributions: their shape over many draws with a fixed
// seed, their bounds and their cap, without a socket or a sleep.

#include <emulator/DelayDraw.h>
#include <emulator/FaultRules.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace vesk::emulator::test {
namespace {

constexpr int draws = 20001;

std::vector<int> drawMany(const Fault& fault, quint64 seed) {
    std::mt19937_64 generator(seed);
    std::vector<int> values;
    for (int i = 0; i < draws; ++i)
        values.push_back(drawDelayMs(fault, generator));
    std::sort(values.begin(), values.end());
    return values;
}

Fault delay(const char* spec) {
    QString error;
    const std::optional<FaultRule> rule =
        parseFaultSpec(QStringLiteral("itemInfo:delay=") + QLatin1String(spec), &error);
    EXPECT_TRUE(rule) << error.toStdString();
    return rule ? rule->fault : Fault();
}

struct OneValue {
    const char* name;
    const char* delay;
    int ms;
};

class DelayOfOneValue : public testing::TestWithParam<OneValue> {};

TEST_P(DelayOfOneValue, GivesThatValueEveryTime) {
    const std::vector<int> values = drawMany(delay(GetParam().delay), 1);
    EXPECT_EQ(values.front(), GetParam().ms);
    EXPECT_EQ(values.back(), GetParam().ms);
}

INSTANTIATE_TEST_SUITE_P(DelayDraw, DelayOfOneValue,
                         testing::Values(OneValue{"Fixed", "fixed:250", 250},
                                         OneValue{"Plain", "90", 90},
                                         OneValue{"UniformOverOneValue", "uniform:40-40", 40}),
                         [](const testing::TestParamInfo<OneValue>& info) {
                             return std::string(info.param.name);
                         });

TEST(DelayDraw, UniformStaysWithinItsBoundsAndReachesBoth) {
    const std::vector<int> values = drawMany(delay("uniform:20-30"), 7);
    EXPECT_EQ(values.front(), 20);
    EXPECT_EQ(values.back(), 30);
    // Eleven values, each about a draw in eleven.
    const auto twenties = std::count(values.begin(), values.end(), 20);
    EXPECT_NEAR(double(twenties) / draws, 1.0 / 11, 0.01);
    EXPECT_NEAR(values[draws / 2], 25, 1);
}

TEST(DelayDraw, LogNormalHasItsMedianAndSpread) {
    const std::vector<int> values = drawMany(delay("lognormal:80,sigma=0.4"), 11);
    EXPECT_NEAR(values[draws / 2], 80, 2);
    // One sigma either side holds about 68% of the draws: 80 e^-0.4 and 80 e^0.4.
    EXPECT_NEAR(values[draws * 16 / 100], 54, 2);
    EXPECT_NEAR(values[draws * 84 / 100], 119, 3);
    EXPECT_GE(values.front(), 0);
}

TEST(DelayDraw, ALongTailIsCappedAtTheLongestDelay) {
    const std::vector<int> values = drawMany(delay("lognormal:300000,sigma=5"), 5);
    EXPECT_EQ(values.back(), maxDelayMs);
    EXPECT_NEAR(values[draws / 2], 300000, 300000 * 0.1);
}

TEST(DelayDraw, TheSameSeedAndCallsGiveTheSameDelays) {
    const auto delays = [](const char* spec) {
        FaultRules rules;
        rules.add(*parseFaultSpec(QString::fromLatin1(spec), nullptr));
        std::vector<int> ms;
        for (int i = 0; i < 50; ++i)
            ms.push_back(rules.take(QStringLiteral("itemInfo"))->ms);
        return ms;
    };
    const std::vector<int> first = delays("*:delay=uniform:0-10000,seed=42");
    EXPECT_EQ(delays("*:delay=uniform:0-10000,seed=42"), first);
    EXPECT_NE(delays("*:delay=uniform:0-10000,seed=43"), first);
    EXPECT_EQ(delays("itemInfo:delay=lognormal:80,sigma=0.5,seed=9"),
              delays("itemInfo:delay=lognormal:80,sigma=0.5,seed=9"));
}

TEST(FaultRulesLatency, DelaysTheCallsThatNoRuleHits) {
    FaultRules rules;
    rules.setLatency(parseFaultSpec(QStringLiteral("*:delay=uniform:30-40,seed=5"), nullptr));
    rules.add(*parseFaultSpec(QStringLiteral("itemInfo:reset;times=1"), nullptr));
    EXPECT_EQ(rules.take(QStringLiteral("itemInfo"))->kind, Fault::Kind::Reset);
    for (const char* operation : {"itemInfo", "commitCheque"}) {
        const std::optional<Fault> latency = rules.take(QString::fromLatin1(operation));
        ASSERT_TRUE(latency) << operation;
        EXPECT_EQ(latency->kind, Fault::Kind::Delay);
        EXPECT_GE(latency->ms, 30);
        EXPECT_LE(latency->ms, 40);
    }
    // Neither listed nor counted as a rule, and kept when the rules are cleared.
    EXPECT_EQ(rules.list().size(), 1);
    EXPECT_EQ(rules.list().constFirst().fired, 1);
    EXPECT_EQ(rules.clear(), 1);
    EXPECT_TRUE(rules.take(QStringLiteral("itemInfo")));
    rules.setLatency(std::nullopt);
    EXPECT_FALSE(rules.take(QStringLiteral("itemInfo")));
}

} // namespace
} // namespace vesk::emulator::test
