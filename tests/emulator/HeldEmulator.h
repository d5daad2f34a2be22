#pragma once

#include "StoreFixture.h"

#include <emulator/Emulator.h>
#include <emulator/Store.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace vesk::emulator::test {

// An emulator on a free port whose state is in a database file, and a store
// of the test's own on the same file: what the back office holds, whatever
// the till was told.
class HeldEmulatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        Options options;
        options.port = 0;
        options.databaseFile = dir.filePath(QStringLiteral("state.db"));
        emulator = std::make_unique<Emulator>(options);
        QString error;
        ASSERT_TRUE(emulator->start(&error)) << error.toStdString();
        ASSERT_TRUE(held.open(options.databaseFile, &error)) << error.toStdString();
    }

    template <class Read>
    auto read(Read query) {
        return held.transaction(query);
    }
    Cents balance(const QString& card) {
        return read([&] { return held.card(card)->balance; });
    }
    Milli stock(const QString& section, const QString& barcode) {
        return read([&] { return held.stock(section, barcode); });
    }

    QTemporaryDir dir;
    std::unique_ptr<Emulator> emulator;
    Store held;
};

} // namespace vesk::emulator::test
