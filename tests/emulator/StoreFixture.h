#pragma once

#include <emulator/SeedData.h>
#include <emulator/ServiceError.h>
#include <emulator/Store.h>

#include <gtest/gtest.h>

#include <optional>

namespace vesk::emulator::test {

// A store in memory with the shipped seed loaded.
class StoreFixture : public ::testing::Test {
protected:
    void SetUp() override {
        QString error;
        const std::optional<QByteArray> text = SeedData::read(QString(), &error);
        ASSERT_TRUE(text) << error.toStdString();
        seed = SeedData::shipped();
        ASSERT_TRUE(store.open(QString(), &error)) << error.toStdString();
        store.transaction([&] { store.loadSeed(seed, *text); });
    }

    Milli stock(const QString& section, const QString& barcode) {
        return store.transaction([&] { return store.stock(section, barcode); });
    }
    Cents balance(const QString& card) {
        return store.transaction([&] { return store.card(card)->balance; });
    }

    Store store;
    SeedData seed;
};

// The refusal that `call` throws; a failed expectation when it throws none.
template <class Call>
ServiceError refusal(Call call) {
    try {
        call();
    } catch (const ServiceError& e) {
        return e;
    }
    ADD_FAILURE() << "the call was not refused";
    return ServiceError(0, 0, QString());
}

inline const QString coffee = QStringLiteral("4601234000017");
inline const QString mug = QStringLiteral("4601234000024");
inline const QString tea = QStringLiteral("4601234000031");
inline const QString teapot = QStringLiteral("4601234000048");
inline const QString chocolate = QStringLiteral("4601234000055");
inline const QString sugar = QStringLiteral("4601234000062");
inline const QString goldCard = QStringLiteral("2775000000011");
inline const QString silverCard = QStringLiteral("2775000000028");

} // namespace vesk::emulator::test

// Readable failures for the Qt strings in assertions.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
