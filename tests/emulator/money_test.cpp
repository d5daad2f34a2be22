// Amounts in cents: rounding, percentages and the split of a sum over parts.

#include <emulator/Money.h>

#include <gtest/gtest.h>

#include <limits>

namespace vesk::emulator::test {
namespace {

TEST(MoneyTest, AmountsRoundToTheNearestCent) {
    EXPECT_EQ(toCents(1051.355 * 2), 210271);
    EXPECT_EQ(toCents(0.1 + 0.2), 30);
    EXPECT_EQ(fromCents(275250), 2752.5);
    EXPECT_EQ(toMilli(0.333), 333);
}

TEST(MoneyTest, PercentRoundsHalvesAwayFromZero) {
    EXPECT_EQ(percentOf(262750, 3), 7883); // 78.825
    EXPECT_EQ(percentOf(250000, 3), 7500);
    EXPECT_EQ(percentOf(120000, 5), 6000);
}

TEST(MoneyTest, LineAmountIsUnitTimesQuantityRounded) {
    EXPECT_EQ(lineAmount(18000, 0.333), 5994);
    EXPECT_EQ(lineAmount(6000, 2), 12000);
}

TEST(MoneyTest, ValidRangesRefuseNonNumbersAndExtremes) {
    EXPECT_TRUE(isValidAmount(0));
    EXPECT_TRUE(isValidAmount(1e9));
    EXPECT_FALSE(isValidAmount(-0.01));
    EXPECT_FALSE(isValidAmount(1e9 + 1));
    EXPECT_FALSE(isValidAmount(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(isValidQuantity(0));
    EXPECT_TRUE(isValidQuantity(0.001));
    EXPECT_FALSE(isValidQuantity(std::numeric_limits<double>::infinity()));
}

struct Split {
    const char* name;
    Cents total;
    QList<Cents> weights;
    QList<Cents> parts;
};

void PrintTo(const Split& split, std::ostream* out) {
    *out << split.name;
}

class DistributeTest : public ::testing::TestWithParam<Split> {};

TEST_P(DistributeTest, PartsAreProportionalAndAddUpExactly) {
    EXPECT_EQ(distribute(GetParam().total, GetParam().weights), GetParam().parts);
}

INSTANTIATE_TEST_SUITE_P(
    Splits, DistributeTest,
    ::testing::Values(Split{"payment_discount", 7500, {216000, 38250, 28500}, {5729, 1015, 756}},
                      Split{"bonus_payment", 32750, {216000, 38250, 28500}, {25019, 4430, 3301}},
                      Split{"tie_goes_to_the_earlier_part", 1, {100, 100}, {1, 0}},
                      Split{"zero_weight_gets_nothing", 10, {0, 3, 7}, {0, 3, 7}},
                      Split{"all_weights_zero", 10, {0, 0}, {10, 0}},
                      Split{"nothing_to_split", 0, {5, 5}, {0, 0}}, Split{"no_parts", 10, {}, {}},
                      Split{"largest_amounts", 100000000000, {100000000000, 1}, {99999999999, 1}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(MoneyTest, CentsFormatWithTwoDecimals) {
    EXPECT_EQ(formatCents(275250), "2752.50");
    EXPECT_EQ(formatCents(5), "0.05");
    EXPECT_EQ(formatCents(-5729), "-57.29");
    EXPECT_EQ(formatCents(0), "0.00");
}

} // namespace
} // namespace vesk::emulator::test
