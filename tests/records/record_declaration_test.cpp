// What a record's declaration generates: its meta-object, its properties and
// its meta-type.

#include "support/TestRecords.h"

#include <QMetaProperty>
#include <QMetaType>

#include <gtest/gtest.h>

#include <type_traits>

namespace vesk::test {
namespace {

static_assert(std::is_default_constructible_v<EveryKind>);
static_assert(std::is_copy_constructible_v<EveryKind> && std::is_copy_assignable_v<EveryKind>);
static_assert(std::is_nothrow_move_constructible_v<SampleEntry>);
static_assert(std::is_same_v<decltype(EveryKind::optionalInteger), std::optional<int>>);
static_assert(std::is_same_v<decltype(EveryKind::entries), QList<SampleEntry>>);
static_assert(
    std::is_same_v<decltype(EveryKind::optionalEntries), std::optional<QList<SampleEntry>>>);
static_assert(std::is_same_v<decltype(EveryKind::dateTime), QVariant>);
static_assert(std::is_same_v<decltype(EveryKind::stringList), QStringList>);
static_assert(std::is_base_of_v<SampleEntry, DerivedEntry>);

QStringList propertyNames(const QMetaObject& type) {
    QStringList names;
    for (int i = 0; i < type.propertyCount(); ++i)
        names << QString::fromLatin1(type.property(i).name());
    return names;
}

TEST(RecordMetaObject, ClassNameIsQualified) {
    EXPECT_STREQ(EveryKind::staticMetaObject.className(), "vesk::test::EveryKind");
}

TEST(RecordMetaObject, PropertiesAreTheMembersInDeclaredOrder) {
    EXPECT_EQ(
        propertyNames(EveryKind::staticMetaObject),
        (QStringList{"integer", "optionalInteger", "number", "optionalNumber", "quantity",
                     "optionalQuantity", "exactNumber", "boolean", "optionalBoolean", "string",
                     "optionalString", "stringList", "entries", "optionalEntries", "dateTime"}));
}

TEST(RecordMetaObject, EveryPropertyIsAVariantReadableWritableDesignableScriptableStored) {
    const QMetaObject& type = EveryKind::staticMetaObject;
    for (int i = 0; i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        SCOPED_TRACE(property.name());
        EXPECT_EQ(property.metaType(), QMetaType::fromType<QVariant>());
        EXPECT_TRUE(property.isReadable());
        EXPECT_TRUE(property.isWritable());
        EXPECT_TRUE(property.isDesignable());
        EXPECT_TRUE(property.isScriptable());
        EXPECT_TRUE(property.isStored());
        EXPECT_FALSE(property.hasNotifySignal());
        EXPECT_FALSE(property.isResettable());
        EXPECT_FALSE(property.isConstant());
        EXPECT_FALSE(property.isFinal());
    }
}

TEST(RecordMetaObject, CarriesOneClassInfoSkipNullTrue) {
    const QMetaObject& type = SampleEntry::staticMetaObject;
    ASSERT_EQ(type.classInfoCount(), 1);
    EXPECT_STREQ(type.classInfo(0).name(), "serder:skipNull");
    EXPECT_STREQ(type.classInfo(0).value(), "true");
}

TEST(RecordMetaObject, IsAGadgetWithoutMethods) {
    const QMetaObject& type = EveryKind::staticMetaObject;
    EXPECT_EQ(type.superClass(), nullptr);
    EXPECT_EQ(type.methodCount(), 0);
    EXPECT_TRUE(QMetaType::fromType<EveryKind>().flags().testFlag(QMetaType::IsGadget));
}

TEST(RecordMetaObject, RecordWithoutMembersHasNoProperties) {
    EXPECT_EQ(EmptyRecord::staticMetaObject.propertyCount(), 0);
    EXPECT_EQ(EmptyRecord(), EmptyRecord());
}

TEST(DerivedRecordMetaObject, NamesTheBaseAsSuperClassAndListsItsPropertiesFirst) {
    const QMetaObject& type = DerivedEntry::staticMetaObject;
    EXPECT_EQ(type.superClass(), &SampleEntry::staticMetaObject);
    EXPECT_EQ(propertyNames(type), (QStringList{"name", "rank", "qty", "extra", "note"}));
    EXPECT_EQ(type.propertyOffset(), 3);
    EXPECT_EQ(type.classInfoCount() - type.classInfoOffset(), 1);
    EXPECT_STREQ(type.classInfo(type.classInfoOffset()).name(), "serder:skipNull");
}

TEST(RecordMetaType, IsFoundByQualifiedClassName) {
    const int id = qMetaTypeId<EveryKind>();
    const QMetaType byName = QMetaType::fromName("vesk::test::EveryKind");
    ASSERT_TRUE(byName.isValid());
    EXPECT_EQ(byName.id(), id);
    EXPECT_EQ(byName.metaObject(), &EveryKind::staticMetaObject);
}

TEST(RecordMetaType, ConstructsCopiesAndComparesThroughTheMetaType) {
    const QMetaType type = QMetaType::fromType<SampleEntry>();
    SampleEntry value;
    value.rank = 4;
    value.name = QStringLiteral("n");
    void* copy = type.create(&value);
    EXPECT_TRUE(type.equals(copy, &value));
    static_cast<SampleEntry*>(copy)->rank = 5;
    EXPECT_FALSE(type.equals(copy, &value));
    type.destroy(copy);
}

TEST(RecordMetaType, RecordTravelsInsideAVariant) {
    SampleEntry value;
    value.rank = 8;
    const QVariant variant = QVariant::fromValue(value);
    EXPECT_EQ(variant.value<SampleEntry>(), value);
    EXPECT_EQ(variant, QVariant::fromValue(value));
}

} // namespace
} // namespace vesk::test
