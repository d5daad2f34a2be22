// How records compare: member by member in declared order, numbers within
// their member's tolerance.

#include "support/TestRecords.h"

#include <gtest/gtest.h>

#include <limits>

namespace vesk::test {
namespace {

struct NumberPair {
    const char* name;
    double left;
    double right;
    bool equalAsAmount;   // tolerance 0.005
    bool equalAsQuantity; // tolerance 0.0005
    bool equalExactly;
};

class NumberToleranceTest : public testing::TestWithParam<NumberPair> {};

TEST_P(NumberToleranceTest, ComparesWithinTheMembersTolerance) {
    EveryKind a;
    EveryKind b;
    a.number = GetParam().left;
    b.number = GetParam().right;
    EXPECT_EQ(a == b, GetParam().equalAsAmount);
    EXPECT_EQ(a != b, !GetParam().equalAsAmount);

    EveryKind c;
    EveryKind d;
    c.quantity = GetParam().left;
    d.quantity = GetParam().right;
    EXPECT_EQ(c == d, GetParam().equalAsQuantity);

    EveryKind e;
    EveryKind f;
    e.exactNumber = GetParam().left;
    f.exactNumber = GetParam().right;
    EXPECT_EQ(e == f, GetParam().equalExactly);
}

const double nan = std::numeric_limits<double>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    Pairs, NumberToleranceTest,
    testing::Values(NumberPair{"same", 10.0, 10.0, true, true, true},
                    NumberPair{"apart_0_004", 10.000, 10.004, true, false, false},
                    NumberPair{"apart_0_006", 10.000, 10.006, false, false, false},
                    NumberPair{"apart_0_0004", 10.0, 10.0004, true, true, false},
                    NumberPair{"apart_0_001", 1.0, 1.001, true, false, false},
                    NumberPair{"negative_apart_0_004", -3.0, -3.004, true, false, false},
                    NumberPair{"nan_with_itself", nan, nan, false, false, false},
                    NumberPair{"nan_with_zero", nan, 0.0, false, false, false}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(RecordEquality, OptionalAbsentAndPresentZeroAreUnequal) {
    OnlyOptional absent;
    OnlyOptional zero;
    zero.count = 0;
    EXPECT_NE(absent, zero);
    EXPECT_NE(zero, absent);
}

TEST(RecordEquality, OptionalBothAbsentAreEqualBothPresentCompareValues) {
    OnlyOptional a;
    OnlyOptional b;
    EXPECT_EQ(a, b);
    a.amount = 1.0;
    b.amount = 1.004;
    EXPECT_EQ(a, b);
    b.amount = 1.006;
    EXPECT_NE(a, b);
}

TEST(RecordEquality, StringsCompareCaseSensitively) {
    EveryKind a;
    EveryKind b;
    a.string = QStringLiteral("abc");
    b.string = QStringLiteral("ABC");
    EXPECT_NE(a, b);
    b.string = QStringLiteral("abc");
    EXPECT_EQ(a, b);
}

TEST(RecordEquality, NullAndEmptyStringAreEqual) {
    EveryKind a;
    EveryKind b;
    a.string = QString();
    b.string = QStringLiteral("");
    EXPECT_EQ(a, b);
}

TEST(RecordEquality, StringListsCompareByLengthThenElements) {
    EveryKind a;
    EveryKind b;
    a.stringList = QStringList{"a"};
    b.stringList = QStringList{"a", "b"};
    EXPECT_NE(a, b);
    a.stringList << "b";
    EXPECT_EQ(a, b);
}

TEST(RecordEquality, ListsCompareEntriesWithTheEntrysTolerance) {
    EveryKind a;
    EveryKind b;
    SampleEntry x;
    x.qty = 1.0;
    SampleEntry y;
    y.qty = 1.0004;
    a.entries = {x};
    b.entries = {y};
    EXPECT_EQ(a, b);
    y.qty = 1.001;
    b.entries = {y};
    EXPECT_NE(a, b);
    b.entries = {x, x};
    EXPECT_NE(a, b);
}

TEST(RecordEquality, OptionalListAbsentDiffersFromPresentEmpty) {
    EveryKind a;
    EveryKind b;
    b.optionalEntries = QList<SampleEntry>();
    EXPECT_NE(a, b);
    a.optionalEntries = QList<SampleEntry>();
    EXPECT_EQ(a, b);
}

TEST(RecordEquality, DateTimesCompareAsVariants) {
    EveryKind a;
    EveryKind b;
    a.dateTime = QDateTime(QDate(2024, 3, 1), QTime(10, 15));
    b.dateTime = QDateTime(QDate(2024, 3, 1), QTime(10, 15));
    EXPECT_EQ(a, b);
    b.dateTime = QDateTime(QDate(2024, 3, 1), QTime(10, 16));
    EXPECT_NE(a, b);
}

TEST(RecordEquality, EveryMemberTakesPart) {
    const EveryKind base;
    std::vector<EveryKind> changed(15, base);
    changed[0].integer = 1;
    changed[1].optionalInteger = 0;
    changed[2].number = 1;
    changed[3].optionalNumber = 0;
    changed[4].quantity = 1;
    changed[5].optionalQuantity = 0;
    changed[6].exactNumber = 1e-9;
    changed[7].boolean = true;
    changed[8].optionalBoolean = false;
    changed[9].string = "s";
    changed[10].optionalString = QString();
    changed[11].stringList = QStringList{""};
    changed[12].entries = {SampleEntry()};
    changed[13].optionalEntries = QList<SampleEntry>();
    changed[14].dateTime = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
    for (size_t i = 0; i < changed.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_NE(changed[i], base);
    }
}

TEST(DerivedRecordEquality, ComparesBaseMembersAndItsOwn) {
    DerivedEntry a;
    DerivedEntry b;
    EXPECT_EQ(a, b);
    b.rank = 1; // a base member
    EXPECT_NE(a, b);
    b.rank = 0;
    b.note = "n"; // its own
    EXPECT_NE(a, b);
}

} // namespace
} // namespace vesk::test
