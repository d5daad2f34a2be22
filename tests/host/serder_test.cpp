// The host's record serialiser, on host gadgets and hand-made gadgets, apart
// from the library's record macros.

#include <morva/Http.h>
#include <morva/Serder.h>
#include <morva/Tr.h>

#include <gtest/gtest.h>

namespace {

TEST(SerderStrategy, SerialisesEveryPropertyOfAGadgetInOrder) {
    http::Part part;
    part.name = "file";
    part.fileName = QStringLiteral("a.txt");
    part.contentType = "text/plain";
    part.body = "hello";
    const QVariantMap map = serder::serialize(part).toMap();
    EXPECT_EQ(map.keys(), (QStringList{"body", "contentType", "fileName", "name"}));
    EXPECT_EQ(map.value("fileName"), QVariant(QStringLiteral("a.txt")));
    EXPECT_EQ(map.value("body"), QVariant(QByteArray("hello")));
}

TEST(SerderStrategy, WithoutSkipNullKeepsNullProperties) {
    // http::Part carries no "serder:skipNull": its null fileName stays in the map.
    const QVariantMap map = serder::serialize(http::Part()).toMap();
    EXPECT_TRUE(map.contains("fileName"));
    EXPECT_EQ(map.size(), 4);
}

TEST(SerderStrategy, DeserialisesByPropertyNameAndIgnoresUnknownKeys) {
    const auto part = serder::deserialize<http::Part>(
        QVariantMap{{"name", QByteArray("n")}, {"unknown", 5}, {"fileName", "f"}});
    EXPECT_EQ(part.name, QByteArray("n"));
    EXPECT_EQ(part.fileName, QStringLiteral("f"));
    EXPECT_TRUE(part.body.isEmpty());
}

TEST(SerderStrategy, ReadOnlyPropertiesAreNotWritten) {
    const auto message = serder::deserialize<tr::Tr>(QVariantMap{{"text", "x"}});
    EXPECT_EQ(message.text(), QString());
    EXPECT_EQ(serder::serialize(tr::Tr(QStringLiteral("y"))).toMap(),
              (QVariantMap{{"text", QStringLiteral("y")}}));
}

TEST(SerderStrategy, IsMadeOnceAndNamesItsType) {
    const auto& strategy = serder::default_serder_type<tr::Tr>::strategy;
    EXPECT_EQ(strategy.metaObject(), &tr::Tr::staticMetaObject);
    EXPECT_EQ(&serder::default_serder_type<tr::Tr>::strategy, &strategy);
}

TEST(SerderStrategy, AskedForAnotherTypeDescribesThatType) {
    const auto strategy = serder::details::Strategy::create(tr::Tr::staticMetaObject);
    QVariant out;
    const http::Part part;
    strategy.serialize(&out, &part, http::Part::staticMetaObject);
    EXPECT_EQ(out.toMap().size(), 4);
}

TEST(SerderStrategy, DefaultMadeStrategyStillWorksFromTheGivenType) {
    const serder::details::Strategy strategy;
    EXPECT_EQ(strategy.metaObject(), nullptr);
    QVariant out;
    const tr::Tr message(QStringLiteral("z"));
    strategy.serialize(&out, &message, tr::Tr::staticMetaObject);
    EXPECT_EQ(out.toMap().value("text"), QVariant(QStringLiteral("z")));
}

TEST(Tr, KeepsItsTextAndComparesByIt) {
    const tr::Tr a(QStringLiteral("a"));
    tr::Tr b = QStringLiteral("a");
    EXPECT_EQ(a.text(), QStringLiteral("a"));
    EXPECT_EQ(a, b);
    b = tr::Tr();
    EXPECT_NE(a, b);
    EXPECT_TRUE(b.text().isEmpty());
}

} // namespace
