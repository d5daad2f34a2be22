// vesk::testing::EmulatorJournal, the test library's client of the journal,
// against a running emulator: what a host's own test asks after a sale.

#include "HttpHelpers.h"

#include <vesk/testing/EmulatorJournal.h>

#include <QJsonArray>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

using testing::EmulatorJournal;
using testing::EmulatorUnavailable;
using testing::ExpectedCall;
using testing::Verified;

class EmulatorJournalClient : public RunningEmulator {
protected:
    EmulatorJournal journal() const {
        return EmulatorJournal(QUrl(QStringLiteral("http://127.0.0.1:%1").arg(emulator->port())));
    }

    void reserveAndCommit(const char* cheque) const {
        const quint16 port = emulator->port();
        post(
            port, salesPath("reserveCheque"),
            std::string(R"({"chequeId": ")") + cheque +
                R"(", "sectionId": "HALL", "lines": [{"lineNum": 1, "barcode": "4601234000017", "qty": 1}]})");
        post(port, loyaltyPath("commitCheque"),
             std::string(R"({"dataId": ")") + cheque + R"(", "guid": "G-1"})");
    }
};

TEST_F(EmulatorJournalClient, VerifiesCountsAndOrderOfATillsCalls) {
    reserveAndCommit("C-1");
    const EmulatorJournal asked = journal();
    const Verified once = asked.calledExactly(1, {"commitCheque", {R"($.dataId == "C-1")"}});
    EXPECT_TRUE(once) << once.message.toStdString();
    EXPECT_EQ(once.seen, 1);
    EXPECT_TRUE(
        asked.calledAtLeast(1, {"reserveCheque", {R"($.lines[*].barcode == "4601234000017")"}}));
    EXPECT_TRUE(asked.calledAtMost(0, {"unreserveCheque", {}}));
    EXPECT_TRUE(asked.calledInOrder({{"reserveCheque", {}}, {"commitCheque", {}}}));
    EXPECT_FALSE(asked.calledInOrder({{"commitCheque", {}}, {"reserveCheque", {}}}));
}

TEST_F(EmulatorJournalClient, AFailureCarriesTheEmulatorsMessageWithItsNearestMiss) {
    reserveAndCommit("C-1");
    const Verified missed = journal().calledExactly(1, {"commitCheque", {R"($.dataId == "C-2")"}});
    EXPECT_FALSE(missed);
    EXPECT_EQ(missed.seen, 0);
    EXPECT_TRUE(missed.message.startsWith(
        "Verification failed: expected commitCheque with $.dataId == \"C-2\" called exactly 1 "
        "time, seen 0 times.\nNearest misses:\n  #2 commitCheque at "))
        << missed.message.toStdString();
    EXPECT_TRUE(missed.message.endsWith("    $.dataId: expected \"C-2\", was \"C-1\""))
        << missed.message.toStdString();
    EXPECT_EQ(missed.reply.value("nearMisses").toArray().size(), 1);
}

TEST_F(EmulatorJournalClient, CountsListsAndClears) {
    reserveAndCommit("C-1");
    reserveAndCommit("C-2");
    const EmulatorJournal asked = journal();
    EXPECT_EQ(asked.count(), 4);
    EXPECT_EQ(asked.count({"commitCheque", {}}), 2);
    const QJsonArray commits = asked.requests({"commitCheque", {R"($.dataId == "C-2")"}});
    ASSERT_EQ(commits.size(), 1);
    EXPECT_EQ(commits[0].toObject().value("seq").toInt(), 4);
    EXPECT_EQ(asked.clear(), 4);
    EXPECT_EQ(asked.count(), 0);
}

TEST_F(EmulatorJournalClient, ABadConditionIsNotVerifiedAndSaysWhy) {
    const Verified refused = journal().calledAtLeast(1, {"itemInfo", {"$.barcode = 1"}});
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.message.toStdString(),
              "the emulator refused the verification (HTTP 400): Bad verification: where: bad "
              "condition \"$.barcode = 1\": expected ==, !=, <, <=, >, >=, ~=, exists or absent "
              "after $.barcode at column 11");
    EXPECT_THROW(journal().count({"itemInfo", {"$.barcode = 1"}}), EmulatorUnavailable);
}

TEST(EmulatorJournalClientAlone, NoEmulatorIsNotVerifiedAndThrowsForAQuery) {
    // Port 1 on the loopback address: nothing listens there.
    const EmulatorJournal nowhere(QUrl(QStringLiteral("http://127.0.0.1:1")));
    const Verified result = nowhere.calledAtLeast(1, {"itemInfo", {}});
    EXPECT_FALSE(result);
    EXPECT_TRUE(result.message.startsWith(
        "no emulator answers at http://127.0.0.1:1: Connection refused by"))
        << result.message.toStdString();
    try {
        nowhere.clear();
        FAIL() << "clear() without an emulator returned";
    } catch (const EmulatorUnavailable& e) {
        EXPECT_TRUE(QString::fromUtf8(e.what()).startsWith("no emulator answers at")) << e.what();
    }
}

} // namespace
} // namespace vesk::emulator::test
