// Verification against the journal: counts, order, and what a failure says.

#include "JournalEntries.h"

#include <emulator/verification/Verification.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

// A sale of two cheques: C-1 reserved and committed, C-2 reserved, committed
// with another card, and its commit's reply lost.
QList<JournalEntry> sale() {
    return {
        entry(1, "itemInfo", R"({"barcode": "4601234000017"})"),
        entry(2, "reserveCheque",
              R"({"chequeId": "C-1", "lines": [{"barcode": "4601234000017"}]})"),
        entry(3, "commitCheque", R"({"chequeId": "C-1", "card": "2775000000011", "total": 2400})"),
        entry(4, "reserveCheque",
              R"({"chequeId": "C-2", "lines": [{"barcode": "4601234000024"}]})"),
        entry(5, "commitCheque", R"({"chequeId": "C-2", "card": "2775000000028", "total": 450})",
              0),
    };
}

Verification verification(const char* json) {
    QString error;
    const std::optional<Verification> made =
        Verification::fromJson(QJsonDocument::fromJson(json).object(), &error);
    EXPECT_TRUE(made) << error.toStdString();
    return made.value_or(Verification());
}

TEST(Verification, HoldsForACallMadeExactlyOnce) {
    const VerificationResult result =
        verify(verification(R"({"operation": "commitCheque", "where": ["$.chequeId == \"C-1\""],
                         "exactly": 1})"),
               sale(), 0);
    EXPECT_TRUE(result.verified);
    EXPECT_EQ(result.seen, 1);
    EXPECT_EQ(result.message().toStdString(),
              "Verified: commitCheque with $.chequeId == \"C-1\" called exactly 1 time (seen 1 "
              "time).");
}

TEST(Verification, WithoutACountMeansAtLeastOnce) {
    EXPECT_TRUE(verify(verification(R"({"operation": "reserveCheque"})"), sale(), 0).verified);
    EXPECT_FALSE(verify(verification(R"({"operation": "processPin"})"), sale(), 0).verified);
}

TEST(Verification, ThatFailsNamesTheNearestMissesAndTheirDifferingMembers) {
    const VerificationResult result = verify(verification(R"({"operation": "commitCheque",
                         "where": ["$.chequeId == \"C-3\"", "$.card == \"2775000000011\""],
                         "exactly": 1})"),
                                             sale(), 0);
    EXPECT_FALSE(result.verified);
    EXPECT_EQ(result.seen, 0);
    EXPECT_EQ(result.message().toStdString(),
              "Verification failed: expected commitCheque with $.chequeId == \"C-3\" and $.card == "
              "\"2775000000011\" called exactly 1 time, seen 0 times.\n"
              "Nearest misses:\n"
              "  #3 commitCheque at 2026-11-29T09:00:02.000Z (200)\n"
              "    $.chequeId: expected \"C-3\", was \"C-1\"\n"
              "  #5 commitCheque at 2026-11-29T09:00:04.000Z (no reply)\n"
              "    $.chequeId: expected \"C-3\", was \"C-2\"\n"
              "    $.card: expected \"2775000000011\", was \"***0028\"");
    const QJsonObject json = result.toJson();
    EXPECT_FALSE(json.value("verified").toBool());
    const QJsonArray misses = json.value("nearMisses").toArray();
    // A request of another operation that meets no condition is no near miss.
    ASSERT_EQ(misses.size(), 2);
    EXPECT_EQ(misses[0].toObject().value("seq").toInt(), 3);
    EXPECT_EQ(QJsonDocument(misses[0].toObject().value("differences").toArray())
                  .toJson(QJsonDocument::Compact),
              R"([{"actual":"\"C-1\"","expected":"\"C-3\"","what":"$.chequeId"}])");
}

TEST(Verification, ThatWentOverListsTheCallsSeen) {
    const VerificationResult result =
        verify(verification(R"({"operation": "commitCheque", "atMost": 1})"), sale(), 0);
    EXPECT_FALSE(result.verified);
    EXPECT_EQ(result.message().toStdString(),
              "Verification failed: expected commitCheque called at most 1 time, seen 2 times.\n"
              "The calls seen:\n"
              "  #3 commitCheque at 2026-11-29T09:00:02.000Z (200)\n"
              "  #5 commitCheque at 2026-11-29T09:00:04.000Z (no reply)");
}

TEST(Verification, OfNoCallHoldsForNone) {
    EXPECT_TRUE(
        verify(verification(R"({"operation": "processPin", "exactly": 0})"), sale(), 0).verified);
    const VerificationResult none =
        verify(verification(R"({"operation": "processPin", "atLeast": 1})"), sale(), 0);
    EXPECT_EQ(none.message().toStdString(),
              "Verification failed: expected processPin called at least 1 time, seen 0 times.\n"
              "No request came close.");
}

TEST(Verification, InOrderHoldsForASubsequence) {
    const VerificationResult result = verify(verification(R"({"inOrder": [
            {"operation": "reserveCheque", "where": ["$.chequeId == \"C-1\""]},
            {"operation": "commitCheque", "where": ["$.chequeId == \"C-1\""]},
            {"operation": "commitCheque", "where": ["$.chequeId == \"C-2\""]}]})"),
                                             sale(), 0);
    EXPECT_TRUE(result.verified) << result.message().toStdString();
    EXPECT_EQ(result.seen, 3);
}

TEST(Verification, InOrderThatFailsSaysWhichStepCameTooEarly) {
    const VerificationResult result = verify(verification(R"({"inOrder": [
            {"operation": "reserveCheque", "where": ["$.chequeId == \"C-2\""]},
            {"operation": "commitCheque", "where": ["$.chequeId == \"C-1\""]}]})"),
                                             sale(), 0);
    EXPECT_FALSE(result.verified);
    EXPECT_EQ(result.seen, 1);
    EXPECT_EQ(result.message().toStdString(),
              "Verification failed: expected in this order: 1. reserveCheque with $.chequeId == "
              "\"C-2\"; 2. commitCheque with $.chequeId == \"C-1\"; found the first 1 in order.\n"
              "The steps found in order:\n"
              "  #4 reserveCheque at 2026-11-29T09:00:03.000Z (200)\n"
              "Nearest misses:\n"
              "  #3 commitCheque at 2026-11-29T09:00:02.000Z (200)\n"
              "    order: expected after #4, was #3, before it\n"
              "  #5 commitCheque at 2026-11-29T09:00:04.000Z (no reply)\n"
              "    $.chequeId: expected \"C-1\", was \"C-2\"");
}

TEST(Verification, SaysWhenTheJournalDroppedRequests) {
    const VerificationResult result =
        verify(verification(R"({"operation": "itemInfo", "exactly": 2})"), sale(), 7);
    EXPECT_FALSE(result.verified);
    EXPECT_EQ(result.message().toStdString(),
              "Verification failed: expected itemInfo called exactly 2 times, seen 1 time.\n"
              "The calls seen:\n"
              "  #1 itemInfo at 2026-11-29T09:00:00.000Z (200)\n"
              "No other request came close.\n"
              "The journal dropped 7 older requests to stay within its limits: they were not "
              "seen.");
}

TEST(Verification, LooksOnlyAtItsTimeRange) {
    EXPECT_TRUE(verify(verification(R"({"operation": "commitCheque", "exactly": 1,
                                        "since": "2026-11-29T09:00:03Z"})"),
                       sale(), 0)
                    .verified);
}

struct Bad {
    const char* name;
    const char* json;
    const char* error;
};

void PrintTo(const Bad& row, std::ostream* out) {
    *out << row.json;
}

class VerificationRefused : public testing::TestWithParam<Bad> {};

TEST_P(VerificationRefused, WithWhatIsWrong) {
    QString error;
    EXPECT_FALSE(Verification::fromJson(QJsonDocument::fromJson(GetParam().json).object(), &error));
    EXPECT_EQ(error.toStdString(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Table, VerificationRefused,
    testing::Values(
        Bad{"TwoCounts", R"({"operation": "itemInfo", "exactly": 1, "atMost": 2})",
            "give one of exactly, atLeast and atMost"},
        Bad{"NegativeCount", R"({"operation": "itemInfo", "atLeast": -1})",
            "atLeast: a whole number from 0 is expected"},
        Bad{"FractionCount", R"({"operation": "itemInfo", "exactly": 1.5})",
            "exactly: a whole number from 0 is expected"},
        Bad{"EmptyOrder", R"({"inOrder": []})",
            "inOrder: a list of calls ({\"operation\": ..., \"where\": [...]}) is expected"},
        Bad{"BadStepCondition", R"({"inOrder": [{"operation": "a"}, {"where": "$.x ="}]})",
            "inOrder[1]: where: bad condition \"$.x =\": expected ==, !=, <, <=, >, >=, ~=, "
            "exists or absent after $.x at column 5"},
        Bad{"BadTime", R"({"operation": "itemInfo", "since": "soon"})",
            "since: \"soon\" is no time: give ISO 8601 (2026-11-24T10:00:00Z) or milliseconds "
            "since the epoch"}),
    [](const testing::TestParamInfo<Bad>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::emulator::test
