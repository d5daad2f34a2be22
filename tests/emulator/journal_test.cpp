// The request journal: its bounds, what it shows and what its filters admit.

#include "JournalEntries.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

namespace vesk::emulator::test {
namespace {

QList<qint64> seqs(const QList<JournalEntry>& entries) {
    QList<qint64> numbers;
    for (const JournalEntry& kept : entries)
        numbers.append(kept.seq);
    return numbers;
}

TEST(Journal, KeepsTheLastRequestsAndCountsTheDropped) {
    Journal journal(Journal::Limits{3, 1 << 20});
    for (int i = 1; i <= 5; ++i)
        journal.add(entry(i, "itemInfo", R"({"barcode": "1"})"));
    EXPECT_EQ(seqs(journal.select({})), (QList<qint64>{3, 4, 5}));
    const Journal::Totals totals = journal.totals();
    EXPECT_EQ(totals.size, 3);
    EXPECT_EQ(totals.dropped, 2);
    EXPECT_EQ(totals.firstSeq, 3);
}

TEST(Journal, StaysWithinItsBytes) {
    Journal journal(Journal::Limits{1000, 10000});
    const QByteArray large = "{\"note\": \"" + QByteArray(3000, 'x') + "\"}";
    for (int i = 1; i <= 10; ++i)
        journal.add(entry(i, "commitCheque", large.constData()));
    const Journal::Totals totals = journal.totals();
    EXPECT_EQ(totals.size, 3);
    EXPECT_EQ(totals.dropped, 7);
    EXPECT_LE(totals.bytes, 10000);
    EXPECT_EQ(seqs(journal.select({})), (QList<qint64>{8, 9, 10}));
}

TEST(Journal, ARequestLargerThanAllItsBytesIsCountedAsDropped) {
    Journal journal(Journal::Limits{1000, 10000});
    journal.add(entry(1, "itemInfo", R"({"barcode": "1"})"));
    const QByteArray huge = "{\"note\": \"" + QByteArray(20000, 'x') + "\"}";
    journal.add(entry(2, "commitCheque", huge.constData()));
    EXPECT_EQ(journal.totals().size, 0);
    EXPECT_EQ(journal.totals().dropped, 2);
    EXPECT_EQ(journal.totals().bytes, 0);
}

TEST(Journal, OfNoEntriesKeepsNothing) {
    Journal journal(Journal::Limits{0, 1 << 20});
    EXPECT_FALSE(journal.enabled());
    journal.add(entry(1, "itemInfo", "{}"));
    EXPECT_EQ(journal.totals().size, 0);
    EXPECT_EQ(journal.totals().dropped, 0);
}

TEST(Journal, KeepsARequestFromItsArrivalAndCompletesItInPlace) {
    Journal journal;
    const qint64 first =
        journal.add(JournalEntry::arrived(firstArrival, "commitCheque", "{}", "hang"));
    const qint64 second = journal.add(JournalEntry::arrived(firstArrival, "itemInfo", "{}", {}));
    QJsonObject shown = journal.select({}).first().toJson();
    EXPECT_TRUE(shown.value("inFlight").toBool());
    EXPECT_EQ(shown.value("status").toInt(), 0);
    EXPECT_EQ(shown.value("fault").toString(), "hang");
    journal.complete(second, 404, 1001, 3, "");
    journal.complete(first, 0, std::nullopt, 1000, "");
    const QList<JournalEntry> kept = journal.select({});
    EXPECT_EQ(seqs(kept), (QList<qint64>{first, second}));
    EXPECT_TRUE(kept[0].done);
    EXPECT_EQ(kept[0].ms, 1000);
    EXPECT_EQ(kept[1].status, 404);
    EXPECT_EQ(kept[1].code, 1001);
    shown = kept[1].toJson();
    EXPECT_FALSE(shown.contains("inFlight"));
    EXPECT_EQ(shown.value("ms").toInt(), 3);
}

TEST(Journal, CompletingADroppedRequestChangesNothing) {
    Journal journal(Journal::Limits{1, 1 << 20});
    const qint64 dropped = journal.add(JournalEntry::arrived(firstArrival, "itemInfo", "{}", {}));
    const qint64 kept = journal.add(JournalEntry::arrived(firstArrival, "itemInfo", "{}", {}));
    journal.complete(dropped, 500, 1, 9, "");
    const QList<JournalEntry> left = journal.select({});
    ASSERT_EQ(seqs(left), (QList<qint64>{kept}));
    EXPECT_FALSE(left[0].done);
    EXPECT_EQ(left[0].status, 0);
}

TEST(Journal, NumbersGoOnAfterAClear) {
    Journal journal;
    journal.add(entry(1, "itemInfo", "{}"));
    journal.add(entry(2, "itemInfo", "{}"));
    EXPECT_EQ(journal.clear(), 2);
    journal.add(entry(3, "itemInfo", "{}"));
    EXPECT_EQ(seqs(journal.select({})), (QList<qint64>{3}));
}

TEST(Journal, ShowsTheBodyWithItsSecretsMaskedButMatchesItAsItArrived) {
    Journal journal;
    journal.add(entry(1, "checkPin",
                      R"({"card": "2775000000011", "pinCode": "1234", "token": "T1"})", 200));
    const QJsonObject shown = journal.select({}).first().toJson();
    EXPECT_EQ(QJsonDocument(shown.value("request").toObject()).toJson(QJsonDocument::Compact),
              R"({"card":"***0011","pinCode":"***","token":"***"})");
    EXPECT_EQ(shown.value("time").toString(), "2026-11-29T09:00:00.000Z");
    EXPECT_EQ(shown.value("operation").toString(), "checkPin");
    EXPECT_EQ(shown.value("status").toInt(), 200);
    EXPECT_FALSE(shown.contains("code"));

    QString error;
    const std::optional<JournalFilter> byCard =
        JournalFilter::fromJson(QJsonObject{{"where", R"($.card == "2775000000011")"}}, &error);
    ASSERT_TRUE(byCard) << error.toStdString();
    EXPECT_EQ(journal.count(*byCard), 1);
}

TEST(Journal, ShowsABodyThatIsNoObjectAsText) {
    Journal journal;
    journal.add(entry(1, "itemInfo", "not json", 400, 1002));
    const QJsonObject shown = journal.select({}).first().toJson();
    EXPECT_FALSE(shown.contains("request"));
    EXPECT_EQ(shown.value("requestText").toString(), "<8 bytes, not JSON>");
    EXPECT_EQ(shown.value("code").toInt(), 1002);
}

struct FilterCase {
    const char* name;
    const char* filter; // JSON object
    QList<qint64> admitted;
};

void PrintTo(const FilterCase& row, std::ostream* out) {
    *out << row.filter;
}

class JournalFilterAdmits : public testing::TestWithParam<FilterCase> {};

TEST_P(JournalFilterAdmits, TheEntriesThatMeetIt) {
    Journal journal;
    journal.add(entry(1, "itemInfo", R"({"barcode": "4601234000017"})"));
    journal.add(entry(2, "itemInfo", R"({"barcode": "0000000000000"})", 404, 1001));
    journal.add(entry(3, "reserveCheque",
                      R"({"chequeId": "C-1", "lines": [{"barcode": "4601234000017"}]})"));
    journal.add(entry(4, "commitCheque", R"({"chequeId": "C-1"})", 0));
    journal.add(entry(5, "commitCheque", R"({"chequeId": "C-1"})", 503, 42));
    QString error;
    const std::optional<JournalFilter> filter =
        JournalFilter::fromJson(QJsonDocument::fromJson(GetParam().filter).object(), &error);
    ASSERT_TRUE(filter) << error.toStdString();
    EXPECT_EQ(seqs(journal.select(*filter)), GetParam().admitted);
    EXPECT_EQ(journal.count(*filter), GetParam().admitted.size());
}

INSTANTIATE_TEST_SUITE_P(
    Table, JournalFilterAdmits,
    testing::Values(
        FilterCase{"Nothing", "{}", {1, 2, 3, 4, 5}},
        FilterCase{"Operation", R"({"operation": "commitCheque"})", {4, 5}},
        FilterCase{"ExactStatus", R"({"status": "404"})", {2}},
        FilterCase{"StatusAsNumber", R"({"status": 200})", {1, 3}},
        FilterCase{"StatusClass", R"({"status": "5xx"})", {5}},
        FilterCase{"NoReply", R"({"status": "none"})", {4}},
        FilterCase{"NoReplyAsZero", R"({"status": "0"})", {4}},
        FilterCase{"SinceIsoTime", R"({"since": "2026-11-29T09:00:02Z"})", {3, 4, 5}},
        FilterCase{"UntilMilliseconds", R"({"until": 1795942801000})", {1, 2}},
        FilterCase{"UntilMillisecondsAsText", R"({"until": "1795942801000"})", {1, 2}},
        FilterCase{"WhereOnAList", R"({"where": "$.lines[*].barcode == \"4601234000017\""})", {3}},
        FilterCase{"WhereOnEither", R"({"where": ["$.barcode == \"4601234000017\""]})", {1}},
        FilterCase{"AllTogether",
                   R"({"operation": "commitCheque", "status": "5xx",
                       "where": ["$.chequeId == \"C-1\""], "since": "2026-11-29T09:00:00Z"})",
                   {5}}),
    [](const testing::TestParamInfo<FilterCase>& info) { return std::string(info.param.name); });

struct BadFilter {
    const char* name;
    const char* filter;
    const char* error;
};

void PrintTo(const BadFilter& row, std::ostream* out) {
    *out << row.filter;
}

class JournalFilterRefused : public testing::TestWithParam<BadFilter> {};

TEST_P(JournalFilterRefused, WithWhatIsWrong) {
    QString error;
    EXPECT_FALSE(
        JournalFilter::fromJson(QJsonDocument::fromJson(GetParam().filter).object(), &error));
    EXPECT_EQ(error.toStdString(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Table, JournalFilterRefused,
    testing::Values(
        BadFilter{"StatusClassOutOfRange", R"({"status": "6xx"})",
                  "status: \"6xx\" is none of 200, 4xx, 5xx, ... or none (no reply)"},
        BadFilter{"StatusWord", R"({"status": "ok"})",
                  "status: \"ok\" is none of 200, 4xx, 5xx, ... or none (no reply)"},
        BadFilter{"SinceNoTime", R"({"since": "yesterday"})",
                  "since: \"yesterday\" is no time: give ISO 8601 (2026-11-24T10:00:00Z) or "
                  "milliseconds since the epoch"},
        BadFilter{"WhereBroken", R"({"where": ["$.barcode = 1"]})",
                  "where: bad condition \"$.barcode = 1\": expected ==, !=, <, <=, >, >=, ~=, "
                  "exists or absent after $.barcode at column 11"}),
    [](const testing::TestParamInfo<BadFilter>& info) { return std::string(info.param.name); });

TEST(Journal, TillsAddingAtOnceGetNumbersOfTheirOwnWithinTheBound) {
    Journal journal(Journal::Limits{500, 1 << 24});
    std::vector<std::thread> tills;
    for (int t = 0; t < 8; ++t)
        tills.emplace_back([&journal] {
            for (int i = 0; i < 1000; ++i)
                journal.add(entry(1, "itemInfo", R"({"barcode": "4601234000017"})"));
        });
    for (std::thread& till : tills)
        till.join();
    const QList<JournalEntry> kept = journal.select({});
    ASSERT_EQ(kept.size(), 500);
    EXPECT_EQ(journal.totals().dropped, 7500);
    const QList<qint64> numbers = seqs(kept);
    const std::set<qint64> distinct(numbers.begin(), numbers.end());
    EXPECT_EQ(distinct.size(), 500u);
    EXPECT_EQ(*distinct.rbegin(), 8000);
}

} // namespace
} // namespace vesk::emulator::test
