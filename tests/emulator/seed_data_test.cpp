// Reading a seed: the shipped one, and the complaints about bad ones.

#include <emulator/SeedData.h>

#include <gtest/gtest.h>

#include <functional>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vesk::emulator::test {
namespace {

TEST(SeedDataTest, ShippedSeedHoldsTheStoreGoodsCardsPromotionsAndParking) {
    const SeedData seed = SeedData::shipped();
    EXPECT_EQ(seed.storeId, "S01");
    EXPECT_EQ(seed.shopNum, 101);
    EXPECT_EQ(seed.defaultSection, "HALL");
    ASSERT_EQ(seed.items.size(), 6);
    EXPECT_EQ(seed.items[0].barcode, "4601234000017");
    EXPECT_EQ(seed.items[0].price, 120000);
    EXPECT_EQ(seed.items[0].stock.value("HALL"), 20000);
    EXPECT_EQ(seed.items[5].stock.value("HALL"), 25500);
    ASSERT_EQ(seed.cards.size(), 2);
    EXPECT_TRUE(seed.cards[0].pinRequired);
    EXPECT_FALSE(seed.cards[1].pinRequired);
    EXPECT_EQ(seed.cards[0].balance, 50000);
    ASSERT_EQ(seed.promotions.size(), 4);
    EXPECT_EQ(seed.promotions[2].kind, SeedPromotion::Kind::Set);
    EXPECT_EQ(seed.promotions[3].kind, SeedPromotion::Kind::Payment);
    EXPECT_EQ(seed.promotions[3].payCodes, QList<int>({2}));
    EXPECT_EQ(seed.promotions[3].minTotal, 100000);
    EXPECT_EQ(seed.bonusAccount, 1);
    EXPECT_EQ(seed.maxWriteOffPercent, 50.0);
    EXPECT_EQ(seed.parkingHourlyRate, 10000);
    ASSERT_EQ(seed.parkingRules.size(), 3);
    EXPECT_EQ(seed.parkingRules[1].freeHours, 2);
    ASSERT_EQ(seed.parkingTickets.size(), 2);
    EXPECT_EQ(seed.parkingTickets[0].entry.toString(Qt::ISODate), "2026-11-20T09:30:00");
}

// The shipped seed with one change at a JSON path ("items/0/price").
QByteArray shippedWith(const QStringList& path, const QJsonValue& value) {
    const std::optional<QByteArray> text = SeedData::read(QString(), nullptr);
    QJsonValue root = QJsonDocument::fromJson(*text).object();
    std::function<QJsonValue(QJsonValue, qsizetype)> set = [&](QJsonValue node, qsizetype depth) {
        if (depth == path.size())
            return value;
        const QString& key = path[depth];
        bool isIndex = false;
        const int index = key.toInt(&isIndex);
        if (isIndex) {
            QJsonArray array = node.toArray();
            array[index] = set(array[index], depth + 1);
            return QJsonValue(array);
        }
        QJsonObject object = node.toObject();
        if (depth + 1 == path.size() && value.isUndefined())
            object.remove(key);
        else
            object[key] = set(object[key], depth + 1);
        return QJsonValue(object);
    };
    return QJsonDocument(set(root, 0).toObject()).toJson();
}

struct BadSeed {
    const char* name;
    QByteArray json;
    const char* error;
};

void PrintTo(const BadSeed& seed, std::ostream* out) {
    *out << seed.name;
}

class BadSeedTest : public ::testing::TestWithParam<BadSeed> {};

TEST_P(BadSeedTest, IsRefusedWithWhereAndWhy) {
    QString error;
    EXPECT_FALSE(SeedData::parse(GetParam().json, &error));
    EXPECT_EQ(error.toStdString(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Seeds, BadSeedTest,
    ::testing::Values(
        BadSeed{"not_json", "{\"store\": ", "not JSON: unterminated object at offset 10"},
        BadSeed{"not_an_object", "[1, 2]", "the seed must be a JSON object"},
        BadSeed{"no_store", shippedWith({"store"}, QJsonValue::Undefined), "store: missing"},
        BadSeed{"negative_price", shippedWith({"items", "0", "price"}, -1),
                "items[0].price: a number from 0 to 1000000000 expected"},
        BadSeed{"price_as_text", shippedWith({"items", "1", "price"}, "450"),
                "items[1].price: a number from 0 to 1000000000 expected"},
        BadSeed{"duplicate_barcode", shippedWith({"items", "1", "barcode"}, "4601234000017"),
                "items[1].barcode: barcode 4601234000017 appears twice"},
        BadSeed{"stock_not_a_number", shippedWith({"items", "0", "stock", "HALL"}, true),
                "items[0].stock.HALL: a number from 0 to 1000000 expected"},
        BadSeed{"empty_pin", shippedWith({"cards", "0", "pin"}, ""),
                "cards[0].pin: must not be empty"},
        BadSeed{"unknown_promotion_kind", shippedWith({"promotions", "0", "kind"}, "bogus"),
                "promotions[0].kind: \"card\", \"set\" or \"payment\" expected, not \"bogus\""},
        BadSeed{"percent_over_100", shippedWith({"promotions", "2", "percent"}, 150),
                "promotions[2].percent: a number from 0 to 100 expected"},
        BadSeed{"bad_ticket_time", shippedWith({"parking", "tickets", "0", "entry"}, "20.11.2026"),
                "parking.tickets[0].entry: an ISO 8601 date and time expected, not \"20.11.2026\""},
        BadSeed{"fractional_free_hours", shippedWith({"parking", "rules", "0", "freeHours"}, 1.5),
                "parking.rules[0].freeHours: a whole number expected"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SeedDataTest, MissingFileIsReportedByName) {
    QString error;
    EXPECT_FALSE(SeedData::read(QStringLiteral("/nonexistent/seed.json"), &error));
    EXPECT_EQ(error,
              QStringLiteral("cannot read /nonexistent/seed.json: No such file or directory"));
}

} // namespace
} // namespace vesk::emulator::test
