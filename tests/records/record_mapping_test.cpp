// Reading and writing record members through their properties, and what a
// record's serialisation holds.

#include "support/Json.h"
#include "support/TestRecords.h"

#include <morva/Serder.h>

#include <QDateTime>
#include <QMetaProperty>

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

template <class R>
QVariant read(const R& record, const char* key) {
    const QMetaObject& type = R::staticMetaObject;
    return type.property(type.indexOfProperty(key)).readOnGadget(&record);
}

template <class R>
void write(R& record, const char* key, const QVariant& value) {
    const QMetaObject& type = R::staticMetaObject;
    ASSERT_TRUE(type.property(type.indexOfProperty(key)).writeOnGadget(&record, value));
}

const QVariant jsonNull = QVariant::fromValue(nullptr);

TEST(RecordSerialisation, RecordOfOptionalMembersOnlySerialisesToEmptyObject) {
    EXPECT_EQ(compactJson(serder::serialize(OnlyOptional())), "{}");
}

TEST(RecordSerialisation, DefaultRecordSerialisesEveryPlainMemberAsZeroEmptyOrEmptyArray) {
    EXPECT_EQ(compactJson(serder::serialize(EveryKind())),
              R"({"boolean":false,"dateTime":"","entries":[],"exactNumber":0,"integer":0,)"
              R"("number":0,"quantity":0,"string":"","stringList":[]})");
}

TEST(RecordSerialisation, PresentOptionalMembersAreSentAbsentOnesAreNot) {
    OnlyOptional record;
    record.count = 0;
    record.flag = false;
    record.entries = QList<SampleEntry>();
    EXPECT_EQ(compactJson(serder::serialize(record)), R"({"count":0,"entries":[],"flag":false})");
}

TEST(RecordSerialisation, ListMemberSerialisesEachEntryThroughItsStrategy) {
    EveryKind record;
    SampleEntry first;
    first.name = QStringLiteral("a");
    first.rank = 1;
    SampleEntry second;
    second.qty = 2.5;
    record.entries = {first, second};
    const QVariantList entries = serder::serialize(record).toMap().value("entries").toList();
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(compactJson(entries[0]), R"({"name":"a","qty":0,"rank":1})");
    EXPECT_EQ(compactJson(entries[1]), R"({"qty":2.5,"rank":0})");
}

TEST(OptionalString, SetToEmptyStringIsPresentAndSentAsEmptyString) {
    OnlyOptional record;
    write(record, "text", QVariant(QString()));
    ASSERT_TRUE(record.text.has_value());
    EXPECT_EQ(*record.text, QString());
    EXPECT_EQ(compactJson(serder::serialize(record)), R"({"text":""})");
}

TEST(OptionalString, SetToNullVariantIsAbsentAndNotSent) {
    OnlyOptional record;
    record.text = QStringLiteral("x");
    write(record, "text", QVariant());
    EXPECT_FALSE(record.text.has_value());
    EXPECT_EQ(compactJson(serder::serialize(record)), "{}");
}

TEST(OptionalString, AbsentReadsAsNullVariant) {
    EXPECT_TRUE(read(OnlyOptional(), "text").isNull());
    EXPECT_FALSE(read(OnlyOptional(), "text").isValid());
}

// Writing a variant to an optional integer: what the member holds afterwards.
struct OptionalIntegerWrite {
    const char* name;
    QVariant written;
    std::optional<int> expected;
};

class OptionalIntegerWriteTest : public testing::TestWithParam<OptionalIntegerWrite> {};

TEST_P(OptionalIntegerWriteTest, HoldsExpectedValue) {
    OnlyOptional record;
    record.count = 99;
    write(record, "count", GetParam().written);
    EXPECT_EQ(record.count, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Writes, OptionalIntegerWriteTest,
    testing::Values(
        OptionalIntegerWrite{"letters_present_zero", QVariant(QStringLiteral("abc")), 0},
        OptionalIntegerWrite{"digits_present_number", QVariant(QStringLiteral("42")), 42},
        OptionalIntegerWrite{"json_null_absent", jsonNull, std::nullopt},
        OptionalIntegerWrite{"invalid_variant_absent", QVariant(), std::nullopt},
        OptionalIntegerWrite{"json_number_converted", QVariant(17.0), 17},
        OptionalIntegerWrite{"int_taken_as_is", QVariant(-5), -5},
        OptionalIntegerWrite{"list_unconvertible_present_zero", QVariant(QVariantList{1}), 0},
        OptionalIntegerWrite{"empty_string_present_zero", QVariant(QString()), 0}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PlainInteger, NullVariantSetsZero) {
    EveryKind record;
    record.integer = 7;
    write(record, "integer", QVariant());
    EXPECT_EQ(record.integer, 0);
    record.integer = 7;
    write(record, "integer", jsonNull);
    EXPECT_EQ(record.integer, 0);
}

TEST(PlainInteger, MissingKeyInReplyLeavesDefault) {
    const auto record = serder::deserialize<EveryKind>(replyMap(R"({"number": 2})"));
    EXPECT_EQ(record.integer, 0);
    EXPECT_EQ(record.number, 2.0);
}

TEST(PlainInteger, KeyMissingLeavesThePreviousValue) {
    EveryKind record;
    record.integer = 7;
    serder::default_serder_type<EveryKind>::strategy.deserialize(
        &record, replyMap(R"({"string": "s"})"), EveryKind::staticMetaObject);
    EXPECT_EQ(record.integer, 7);
    EXPECT_EQ(record.string, QStringLiteral("s"));
}

// Writing a variant to a plain member of each scalar kind.
struct PlainWrite {
    const char* name;
    const char* key;
    QVariant written;
    QVariant expected; // read back through the property
};

class PlainWriteTest : public testing::TestWithParam<PlainWrite> {};

TEST_P(PlainWriteTest, ReadsBackConvertedValue) {
    EveryKind record;
    write(record, GetParam().key, GetParam().written);
    const QVariant back = read(record, GetParam().key);
    EXPECT_EQ(back.metaType(), GetParam().expected.metaType());
    EXPECT_EQ(back, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Writes, PlainWriteTest,
    testing::Values(
        PlainWrite{"integer_from_numeric_string", "integer", QStringLiteral("12"), 12},
        PlainWrite{"integer_from_letters_zero", "integer", QStringLiteral("x"), 0},
        PlainWrite{"number_from_integer", "number", 2, 2.0},
        PlainWrite{"number_from_numeric_string", "number", QStringLiteral("2.25"), 2.25},
        PlainWrite{"number_from_null_zero", "number", QVariant(), 0.0},
        PlainWrite{"boolean_from_true", "boolean", true, true},
        PlainWrite{"boolean_from_null_false", "boolean", jsonNull, false},
        PlainWrite{"string_from_number", "string", 5.0, QStringLiteral("5")},
        PlainWrite{"string_from_null_empty", "string", QVariant(), QString()},
        PlainWrite{"string_list_from_variant_list", "stringList",
                   QVariantList{QStringLiteral("a"), QStringLiteral("b")},
                   QStringList{QStringLiteral("a"), QStringLiteral("b")}},
        PlainWrite{"string_list_from_number_empty", "stringList", 3, QStringList()},
        PlainWrite{"string_list_from_null_empty", "stringList", QVariant(), QStringList()}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PlainMembers, ReadAsVariantsOfTheirOwnType) {
    const EveryKind record;
    EXPECT_EQ(read(record, "integer").metaType(), QMetaType::fromType<int>());
    EXPECT_EQ(read(record, "number").metaType(), QMetaType::fromType<double>());
    EXPECT_EQ(read(record, "boolean").metaType(), QMetaType::fromType<bool>());
    EXPECT_EQ(read(record, "string").metaType(), QMetaType::fromType<QString>());
    EXPECT_EQ(read(record, "stringList").metaType(), QMetaType::fromType<QStringList>());
    EXPECT_EQ(read(record, "entries").metaType(), QMetaType::fromType<QVariantList>());
}

class ListEmptyingTest : public testing::TestWithParam<std::pair<const char*, QVariant>> {};

TEST_P(ListEmptyingTest, EmptiesTheList) {
    EveryKind record;
    record.entries = {SampleEntry(), SampleEntry()};
    write(record, "entries", GetParam().second);
    EXPECT_TRUE(record.entries.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Writes, ListEmptyingTest,
                         testing::Values(std::make_pair("number", QVariant(3.0)),
                                         std::make_pair("null_variant", QVariant()),
                                         std::make_pair("json_null", jsonNull),
                                         std::make_pair("map", QVariant(QVariantMap{{"a", 1}})),
                                         std::make_pair("text", QVariant(QStringLiteral("ab")))),
                         [](const auto& info) { return std::string(info.param.first); });

TEST(ListMember, WriteReplacesTheWholeList) {
    EveryKind record;
    SampleEntry old;
    old.rank = 9;
    record.entries = {old, old, old};
    write(record, "entries", QVariantList{QVariantMap{{"rank", 1}}});
    ASSERT_EQ(record.entries.size(), 1);
    EXPECT_EQ(record.entries[0].rank, 1);
    EXPECT_FALSE(record.entries[0].name.has_value());
}

TEST(ListMember, ElementThatIsNoObjectBecomesDefaultEntry) {
    EveryKind record;
    write(record, "entries", QVariantList{5, QVariantMap{{"name", "n"}}});
    ASSERT_EQ(record.entries.size(), 2);
    EXPECT_EQ(record.entries[0], SampleEntry());
    EXPECT_EQ(record.entries[1].name, QStringLiteral("n"));
}

TEST(OptionalList, NullMakesAbsentAndAnyOtherValuePresent) {
    EveryKind record;
    write(record, "optionalEntries", QVariantList());
    ASSERT_TRUE(record.optionalEntries.has_value());
    EXPECT_TRUE(record.optionalEntries->isEmpty());
    write(record, "optionalEntries", jsonNull);
    EXPECT_FALSE(record.optionalEntries.has_value());
    write(record, "optionalEntries", QStringLiteral("not a list"));
    ASSERT_TRUE(record.optionalEntries.has_value());
    EXPECT_TRUE(record.optionalEntries->isEmpty());
}

TEST(OptionalList, AbsentIsNotSentPresentEmptyIsSentAsEmptyArray) {
    EveryKind record;
    EXPECT_FALSE(serder::serialize(record).toMap().contains("optionalEntries"));
    record.optionalEntries = QList<SampleEntry>();
    EXPECT_EQ(serder::serialize(record).toMap().value("optionalEntries"), QVariantList());
}

TEST(DateTimeMember, TextIsParsedAsIsoDate) {
    EveryKind record;
    write(record, "dateTime", QStringLiteral("2024-03-01T10:15:00"));
    EXPECT_EQ(record.dateTime.toDateTime(), QDateTime(QDate(2024, 3, 1), QTime(10, 15)));
    EXPECT_EQ(read(record, "dateTime"), QVariant(QDateTime(QDate(2024, 3, 1), QTime(10, 15))));
}

TEST(DateTimeMember, TextThatIsNotIsoGivesInvalidDateTime) {
    EveryKind record;
    write(record, "dateTime", QStringLiteral("01.03.2024 10:15"));
    EXPECT_EQ(record.dateTime.metaType(), QMetaType::fromType<QDateTime>());
    EXPECT_FALSE(record.dateTime.toDateTime().isValid());
}

TEST(DateTimeMember, UnsetReadsAsInvalidDateTimeVariant) {
    const EveryKind record;
    EXPECT_FALSE(record.dateTime.isValid());
    const QVariant value = read(record, "dateTime");
    EXPECT_EQ(value.metaType(), QMetaType::fromType<QDateTime>());
    EXPECT_FALSE(value.toDateTime().isValid());
}

TEST(DateTimeMember, NonTextIsConvertedWithToDateTime) {
    EveryKind record;
    const QDateTime when(QDate(2025, 1, 2), QTime(3, 4, 5));
    write(record, "dateTime", when);
    EXPECT_EQ(record.dateTime, QVariant(when));
    write(record, "dateTime", QVariant());
    EXPECT_EQ(record.dateTime.metaType(), QMetaType::fromType<QDateTime>());
    EXPECT_FALSE(record.dateTime.toDateTime().isValid());
}

TEST(DateTimeMember, DirectAssignmentIsConvertedOnRead) {
    EveryKind record;
    record.dateTime = QStringLiteral("2024-03-01T10:15:00");
    EXPECT_EQ(read(record, "dateTime"), QVariant(QDateTime(QDate(2024, 3, 1), QTime(10, 15))));
}

TEST(Deserialisation, KeysThatNameNoMemberAreIgnored) {
    const auto record =
        serder::deserialize<SampleEntry>(replyMap(R"({"rank": 3, "unknown": true, "x": [1]})"));
    SampleEntry expected;
    expected.rank = 3;
    EXPECT_EQ(record, expected);
}

TEST(Deserialisation, NestedListsAreReadAtEveryDepth) {
    const auto record = serder::deserialize<EveryKind>(replyMap(
        R"({"entries": [{"name": "a", "rank": 1, "qty": 0.25}], "optionalEntries": [{"rank": 2}],)"
        R"( "stringList": ["x", "y"], "optionalBoolean": true, "optionalString": null})"));
    ASSERT_EQ(record.entries.size(), 1);
    EXPECT_EQ(record.entries[0].name, QStringLiteral("a"));
    EXPECT_EQ(record.entries[0].rank, 1);
    EXPECT_EQ(record.entries[0].qty, 0.25);
    ASSERT_TRUE(record.optionalEntries.has_value());
    ASSERT_EQ(record.optionalEntries->size(), 1);
    EXPECT_EQ(record.optionalEntries->at(0).rank, 2);
    EXPECT_EQ(record.stringList, (QStringList{"x", "y"}));
    EXPECT_EQ(record.optionalBoolean, true);
    EXPECT_FALSE(record.optionalString.has_value());
}

TEST(Deserialisation, ValueThatIsNoMapLeavesTheDefaults) {
    EXPECT_EQ(serder::deserialize<EveryKind>(QVariant(5)), EveryKind());
    EXPECT_EQ(serder::deserialize<EveryKind>(QVariant()), EveryKind());
}

TEST(DerivedRecord, SerialisesBaseMembersFirstThenItsOwn) {
    DerivedEntry record;
    record.name = QStringLiteral("n");
    record.rank = 1;
    record.extra = 1.5;
    record.note = QStringLiteral("t");
    EXPECT_EQ(compactJson(serder::serialize(record)),
              R"({"extra":1.5,"name":"n","note":"t","qty":0,"rank":1})");
    EXPECT_EQ(serder::deserialize<DerivedEntry>(serder::serialize(record)), record);
}

} // namespace
} // namespace vesk::test
