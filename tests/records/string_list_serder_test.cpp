#include <vesk/records/StringListSerder.h>

#include <gtest/gtest.h>

namespace {

using StringListSerder = serder::default_serder_type<QList<QString>>;

TEST(StringListSerder, SerialisesToAVariantHoldingTheList) {
    const QVariant variant = StringListSerder::serialize({"a", "b"});
    EXPECT_EQ(variant.metaType(), QMetaType::fromType<QStringList>());
    EXPECT_EQ(variant.toStringList(), (QStringList{"a", "b"}));
}

TEST(StringListSerder, TakesAListVariantAsItStands) {
    EXPECT_EQ(StringListSerder::deserialize(QStringList{"x"}), QStringList{"x"});
}

TEST(StringListSerder, ConvertsAVariantListOfStrings) {
    EXPECT_EQ(StringListSerder::deserialize(QVariantList{"x", "y"}), (QStringList{"x", "y"}));
}

TEST(StringListSerder, GivesAnEmptyListForWhatDoesNotConvert) {
    EXPECT_EQ(StringListSerder::deserialize(QVariant(5)), QStringList());
    EXPECT_EQ(StringListSerder::deserialize(QVariant()), QStringList());
}

} // namespace
