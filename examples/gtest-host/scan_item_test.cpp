// The till's scan, tested without a back office: the double answers the
// sales service's calls as the test scripts them.

#include "ScanItem.h"

#include <vesk/testing/FakeBackOffice.h>
#include <vesk/vesk.h>

#include <gtest/gtest.h>

namespace {

using vesk::testing::FakeBackOffice;

class ScanItemTest : public ::testing::Test {
protected:
    // Once per process, before the till's code first makes a service client.
    static void SetUpTestSuite() { fake = &FakeBackOffice::install(); }
    void TearDown() override { fake->reset(); }

    static FakeBackOffice* fake;
};

FakeBackOffice* ScanItemTest::fake = nullptr;

TEST_F(ScanItemTest, PricesAnItemThatTheBackOfficeKnows) {
    vesk::sales::ItemInfoResponse milk;
    milk.barcode = QStringLiteral("4601234000017");
    milk.name = QStringLiteral("Milk");
    milk.price = 89.9;
    fake->on(QStringLiteral("sales"), QStringLiteral("itemInfo")).reply(milk);

    const till::ScannedLine line = till::scanItem(QStringLiteral("S1"), milk.barcode);

    EXPECT_EQ(line.state, till::ScannedLine::State::Priced);
    EXPECT_EQ(line.name, QStringLiteral("Milk"));
    EXPECT_DOUBLE_EQ(line.price, 89.9);
}

TEST_F(ScanItemTest, ShowsTheBackOfficesRefusal) {
    fake->on(QStringLiteral("itemInfo")).error(4004, QStringLiteral("No such item"), 404);

    const till::ScannedLine line = till::scanItem(QStringLiteral("S1"), QStringLiteral("0"));

    EXPECT_EQ(line.state, till::ScannedLine::State::Refused);
    EXPECT_EQ(line.message, QStringLiteral("No such item (4004)"));
}

TEST_F(ScanItemTest, SellsOfflineWhenTheBackOfficeCannotBeReached) {
    fake->on(QStringLiteral("itemInfo")).fail(vesk::CallOutcome::Failure::Refused);

    const till::ScannedLine line = till::scanItem(QStringLiteral("S1"), QStringLiteral("1"));

    EXPECT_EQ(line.state, till::ScannedLine::State::Offline);
    EXPECT_EQ(vesk::lastCallOutcome().reached(), vesk::CallOutcome::Reached::No);
}

TEST_F(ScanItemTest, AsksForTheScannedBarcodeInItsSection) {
    fake->on(QStringLiteral("itemInfo")).reply(vesk::sales::ItemInfoResponse());

    till::scanItem(QStringLiteral("S7"), QStringLiteral("4601234000017"));

    const auto sent = fake->requests<vesk::sales::ItemInfoRequest>(QStringLiteral("itemInfo"));
    ASSERT_EQ(sent.size(), 1);
    EXPECT_EQ(sent[0].sectionId, QStringLiteral("S7"));
    EXPECT_EQ(sent[0].barcode, QStringLiteral("4601234000017"));
}

} // namespace
