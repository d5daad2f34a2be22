// Conditions on request bodies, as the journal, verification and aimed
// faults take them: what holds for which body, and what is refused.

#include <emulator/matching/Condition.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

QJsonObject body(const char* json) {
    return QJsonDocument::fromJson(json).object();
}

const char* const sale = R"({"chequeId": "C-1", "card": "2775000000011", "total": 2752.5,
    "paid": true, "note": null,
    "lines": [{"barcode": "4601234000017", "quantity": 2},
              {"barcode": "4601234000024", "quantity": 1}]})";

struct Case {
    const char* name;
    const char* condition;
    bool holds;
};

void PrintTo(const Case& row, std::ostream* out) {
    *out << row.condition;
}

class ConditionOnASale : public testing::TestWithParam<Case> {};

TEST_P(ConditionOnASale, HoldsExactlyWhenTheBodySaysSo) {
    QString error;
    const std::optional<Condition> condition =
        Condition::parse(QString::fromUtf8(GetParam().condition), &error);
    ASSERT_TRUE(condition) << error.toStdString();
    EXPECT_EQ(condition->holdsFor(body(sale)), GetParam().holds);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ConditionOnASale,
    testing::Values(
        Case{"TextEqual", R"($.chequeId == "C-1")", true},
        Case{"TextDiffers", R"($.chequeId == "C-2")", false},
        Case{"TextIsNotANumber", R"($.card == 2775000000011)", false},
        Case{"AnyElementOfAList", R"($.lines[*].barcode == "4601234000024")", true},
        Case{"NoElementOfAList", R"($.lines[*].barcode == "4601234000031")", false},
        Case{"IndexedElement", R"($.lines[1].barcode == "4601234000024")", true},
        Case{"IndexPastTheEnd", R"($.lines[2].barcode exists)", false},
        Case{"IntegerEqualsItsDouble", "$.lines[0].quantity == 2.0", true},
        Case{"FractionEqual", "$.total == 2752.50", true},
        Case{"LessThan", "$.lines[*].quantity < 2", true},
        Case{"LessOrEqualOnNoSmaller", "$.lines[*].quantity <= 0", false},
        Case{"GreaterOrEqual", "$.total >= 2752.5", true},
        Case{"GreaterOnText", "$.chequeId > 0", false}, Case{"BoolEqual", "$.paid == true", true},
        Case{"NullEqual", "$.note == null", true}, Case{"NullExists", "$.note exists", true},
        Case{"MissingAbsent", "$.pinCode absent", true},
        Case{"PresentAbsent", "$.card absent", false},
        Case{"NotEqualWhenNoneEquals", R"($.lines[*].barcode != "4601234000031")", true},
        Case{"NotEqualWhenOneEquals", R"($.lines[*].barcode != "4601234000017")", false},
        Case{"NotEqualOnAMissingMember", R"($.pinCode != "1234")", true},
        Case{"RegexFindsPart", R"($.card ~= "0011$")", true},
        Case{"RegexOnANumber", R"($.total ~= "2752")", false}, Case{"WholeBody", "$ exists", true},
        Case{"SpacesAround", R"(  $.chequeId==   "C-1"  )", true}),
    [](const testing::TestParamInfo<Case>& info) { return std::string(info.param.name); });

struct Bad {
    const char* name;
    const char* condition;
    const char* error;
};

void PrintTo(const Bad& row, std::ostream* out) {
    *out << row.condition;
}

class ConditionRefused : public testing::TestWithParam<Bad> {};

TEST_P(ConditionRefused, WithWhatIsWrongAndWhere) {
    QString error;
    EXPECT_FALSE(Condition::parse(QString::fromUtf8(GetParam().condition), &error));
    EXPECT_EQ(error.toStdString(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ConditionRefused,
    testing::Values(
        Bad{"Empty", "",
            "expected a path starting with $ (such as $.lines[*].barcode) at column 1"},
        Bad{"NoDollar", "barcode == \"1\"",
            "expected a path starting with $ (such as $.lines[*].barcode) at column 1"},
        Bad{"NoOperator", R"($.lines[*].barcode "1")",
            "expected ==, !=, <, <=, >, >=, ~=, exists or absent after $.lines[*].barcode at "
            "column 20"},
        Bad{"NoValue", "$.barcode ==",
            "expected a JSON value after == (\"text\", a number, true, false or null) at column "
            "13"},
        Bad{"UnquotedText", "$.barcode == abc",
            "abc is not one JSON value (text is written in double quotes: \"4601234000017\") at "
            "column 14"},
        Bad{"TwoValues", "$.barcode == 1 2",
            "1 2 is not one JSON value (text is written in double quotes: \"4601234000017\") at "
            "column 14"},
        Bad{"MemberNameMissing", "$.lines..barcode == 1",
            "expected a member's name after . at column 9"},
        Bad{"IndexMissing", "$.lines[].barcode == 1", "expected an index or * after [ at column 9"},
        Bad{"BracketOpen", "$.lines[0 == 1", "expected ] to close [ at column 10"},
        Bad{"OrderOnText", R"($.total < "3")", "< compares numbers, not \"3\" at column 11"},
        Bad{"RegexNotText", "$.card ~= 11",
            "~= takes a regular expression in double quotes, not 11 at column 11"},
        Bad{"RegexBroken", R"($.card ~= "(")",
            "\"(\" is not a regular expression: missing closing parenthesis at column 11"},
        Bad{"ExistsWithValue", "$.card exists 1",
            "exists takes no value: unexpected 1 at column 15"}),
    [](const testing::TestParamInfo<Bad>& info) { return std::string(info.param.name); });

TEST(Condition, IsWrittenBackCanonically) {
    QString error;
    EXPECT_EQ(Condition::parse(R"(  $.lines[*].barcode=="1" )", &error)->text(),
              R"($.lines[*].barcode == "1")");
    EXPECT_EQ(Condition::parse("$.card   absent", &error)->text(), "$.card absent");
    EXPECT_EQ(Condition::parse("$.total >= 2.50", &error)->text(), "$.total >= 2.5");
}

TEST(Condition, ObjectFormMeansTheSameAsItsText) {
    QString error;
    const std::optional<Condition> condition = Condition::fromJson(
        QJsonDocument::fromJson(R"({"path": "$.lines[*].barcode", "value": "4601234000017"})")
            .object(),
        &error);
    ASSERT_TRUE(condition) << error.toStdString();
    EXPECT_EQ(condition->text(), R"($.lines[*].barcode == "4601234000017")");
    EXPECT_TRUE(condition->holdsFor(body(sale)));
    const std::optional<Condition> absent = Condition::fromJson(
        QJsonDocument::fromJson(R"({"path": "$.pinCode", "op": "absent"})").object(), &error);
    ASSERT_TRUE(absent) << error.toStdString();
    EXPECT_TRUE(absent->holdsFor(body(sale)));
}

TEST(Condition, AListNamesItsFirstBadCondition) {
    QString error;
    const QJsonValue list =
        QJsonDocument::fromJson(R"(["$.chequeId == \"C-1\"", "$.card = 1"])").array();
    EXPECT_FALSE(conditionsFromJson(list, &error));
    EXPECT_EQ(error.toStdString(),
              "bad condition \"$.card = 1\": expected ==, !=, <, <=, >, >=, ~=, exists or absent "
              "after $.card at column 8");
}

TEST(Condition, AllMustHold) {
    QString error;
    const QList<Condition> both = *conditionsFromJson(
        QJsonDocument::fromJson(R"(["$.chequeId == \"C-1\"", "$.lines[*].quantity == 2"])").array(),
        &error);
    EXPECT_TRUE(allHold(both, body(sale)));
    EXPECT_FALSE(allHold(both, body(R"({"chequeId": "C-1", "lines": []})")));
    EXPECT_TRUE(allHold({}, body("{}")));
}

TEST(Condition, FindsTheValuesAtItsPathForAReport) {
    QString error;
    const QList<QJsonValue> found =
        Condition::parse(R"($.lines[*].barcode == "x")", &error)->found(body(sale));
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0].toString(), "4601234000017");
    EXPECT_EQ(found[1].toString(), "4601234000024");
    EXPECT_EQ(Condition::parse(R"($.card != "x")", &error)->expectation(), "not \"x\"");
    EXPECT_EQ(Condition::parse("$.total < 3", &error)->expectation(), "< 3");
}

} // namespace
} // namespace vesk::emulator::test
