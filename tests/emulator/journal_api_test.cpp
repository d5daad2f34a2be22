// The request journal and verification through the admin API of a running
// emulator: what a till's calls leave there, and how a test asks about them.

#include "HttpHelpers.h"

#include <emulator/FaultRules.h>
#include <emulator/journal/Journal.h>

#include <QJsonArray>
#include <QUrl>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

std::string query(const QList<QPair<const char*, QString>>& parameters) {
    QStringList pairs;
    for (const auto& [name, value] : parameters)
        pairs.append(QLatin1String(name) + QLatin1Char('=') +
                     QString::fromLatin1(QUrl::toPercentEncoding(value)));
    return '?' + pairs.join(QLatin1Char('&')).toStdString();
}

QList<int> seqsOf(const Reply& reply) {
    QList<int> seqs;
    for (const QJsonValue& request : reply.body.value("requests").toArray())
        seqs.append(request.toObject().value("seq").toInt());
    return seqs;
}

class JournalApiTest : public RunningEmulator {
protected:
    quint16 port() const { return emulator->port(); }

    // 1: itemInfo 200, 2: itemInfo 404, 3: itemInfo reset by a fault,
    // 4: checkPin with a card and a PIN, 5: commitCheque refused (no such token).
    void sendSomeCalls() {
        ASSERT_EQ(post(port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status,
                  200);
        ASSERT_EQ(post(port(), salesPath("itemInfo"), R"({"barcode": "0000000000000"})").status,
                  404);
        QString error;
        emulator->faults().add(*parseFaultSpec("itemInfo:reset;times=1", &error));
        ASSERT_EQ(post(port(), salesPath("itemInfo"), R"({"barcode": "4601234000024"})").status, 0);
        post(port(), loyaltyPath("checkPin"),
             R"({"discCardId": "2775000000011", "pinCode": "1234", "token": "T9"})");
        post(port(), loyaltyPath("commitCheque"), R"({"dataId": "C-7", "token": "nope"})");
    }
};

TEST_F(JournalApiTest, KeepsEachOperationsRequestWithItsOutcomeButNotTheAdminCalls) {
    sendSomeCalls();
    const Reply listed = send(port(), "GET", "/_emulator/requests");
    ASSERT_EQ(listed.status, 200) << listed.raw;
    EXPECT_EQ(seqsOf(listed), (QList<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(listed.body.value("total").toInt(), 5);
    EXPECT_EQ(listed.body.value("dropped").toInt(), 0);
    const QJsonArray requests = listed.body.value("requests").toArray();
    const QJsonObject first = requests[0].toObject();
    EXPECT_EQ(first.value("operation").toString(), "itemInfo");
    EXPECT_EQ(first.value("status").toInt(), 200);
    EXPECT_EQ(first.value("request").toObject(), (QJsonObject{{"barcode", "4601234000017"}}));
    EXPECT_FALSE(first.contains("fault"));
    EXPECT_EQ(requests[1].toObject().value("status").toInt(), 404);
    EXPECT_TRUE(requests[1].toObject().contains("code"));
    EXPECT_EQ(requests[2].toObject().value("status").toInt(), 0);
    EXPECT_EQ(requests[2].toObject().value("fault").toString(), "reset");
    EXPECT_EQ(requests[3].toObject().value("request").toObject(),
              (QJsonObject{{"discCardId", "***0011"}, {"pinCode", "***"}, {"token", "***"}}));
}

TEST_F(JournalApiTest, ListsWhatTheQueryParametersAdmit) {
    sendSomeCalls();
    EXPECT_EQ(
        seqsOf(send(port(), "GET", "/_emulator/requests" + query({{"operation", "itemInfo"}}))),
        (QList<int>{1, 2, 3}));
    EXPECT_EQ(seqsOf(send(port(), "GET", "/_emulator/requests" + query({{"status", "none"}}))),
              (QList<int>{3}));
    EXPECT_EQ(
        seqsOf(send(port(), "GET",
                    "/_emulator/requests" + query({{"where", R"($.barcode ~= "^4601")"},
                                                   {"where", R"($.barcode != "4601234000017")"}}))),
        (QList<int>{3}));
    // The newest, when there are more than the limit.
    EXPECT_EQ(seqsOf(send(port(), "GET", "/_emulator/requests" + query({{"limit", "2"}}))),
              (QList<int>{4, 5}));
    // A card is found by the number that the till sent.
    EXPECT_EQ(seqsOf(send(port(), "GET",
                          "/_emulator/requests" +
                              query({{"where", R"($.discCardId == "2775000000011")"}}))),
              (QList<int>{4}));
}

TEST_F(JournalApiTest, FindsByAFilterInAJsonBodyAndCounts) {
    sendSomeCalls();
    const Reply found =
        post(port(), "/_emulator/requests/find", R"({"operation": "itemInfo", "status": "4xx"})");
    EXPECT_EQ(seqsOf(found), (QList<int>{2}));
    const Reply counted =
        send(port(), "GET", "/_emulator/requests/count" + query({{"operation", "itemInfo"}}));
    EXPECT_EQ(counted.body, (QJsonObject{{"count", 3}, {"dropped", 0}}));
}

TEST_F(JournalApiTest, IsEmptiedByItsClearAndByAReset) {
    sendSomeCalls();
    EXPECT_EQ(send(port(), "DELETE", "/_emulator/requests").body, (QJsonObject{{"cleared", 5}}));
    EXPECT_EQ(send(port(), "GET", "/_emulator/requests/count").body.value("count").toInt(), 0);
    post(port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})");
    EXPECT_EQ(send(port(), "POST", "/_emulator/reset").status, 200);
    EXPECT_EQ(send(port(), "GET", "/_emulator/requests/count").body.value("count").toInt(), 0);
}

TEST_F(JournalApiTest, RefusesABadFilterSayingWhatIsWrong) {
    const Reply refused =
        send(port(), "GET", "/_emulator/requests" + query({{"where", "$.barcode = 1"}}));
    EXPECT_EQ(refused.status, 400);
    EXPECT_EQ(refused.body.value("userMsg").toString(),
              "Bad filter: where: bad condition \"$.barcode = 1\": expected ==, !=, <, <=, >, >=, "
              "~=, exists or absent after $.barcode at column 11");
    EXPECT_EQ(send(port(), "GET", "/_emulator/requests" + query({{"limit", "-1"}})).status, 400);
    EXPECT_EQ(post(port(), "/_emulator/requests/find", "[1]").status, 400);
}

TEST_F(JournalApiTest, VerifiesACountAndAnOrder) {
    sendSomeCalls();
    const Reply held = post(port(), "/_emulator/verify",
                            R"({"operation": "itemInfo", "where": ["$.barcode ~= \"^4601\""],
                                "exactly": 2})");
    EXPECT_EQ(held.status, 200) << held.raw;
    EXPECT_TRUE(held.body.value("verified").toBool());
    EXPECT_EQ(held.body.value("seen").toInt(), 2);
    const Reply order = post(port(), "/_emulator/verify",
                             R"({"inOrder": [{"operation": "itemInfo"}, {"operation": "checkPin"},
                                             {"operation": "commitCheque"}]})");
    EXPECT_EQ(order.status, 200) << order.raw;
}

TEST_F(JournalApiTest, AFailedVerificationIsA409WithItsNearestMisses) {
    sendSomeCalls();
    const Reply failed = post(port(), "/_emulator/verify",
                              R"({"operation": "commitCheque", "where": ["$.dataId == \"C-8\""],
                                  "exactly": 1})");
    EXPECT_EQ(failed.status, 409);
    EXPECT_FALSE(failed.body.value("verified").toBool());
    EXPECT_EQ(failed.body.value("code").toInt(), 409);
    const QString message = failed.body.value("message").toString();
    EXPECT_EQ(failed.body.value("userMsg").toString(), message);
    EXPECT_TRUE(message.startsWith("Verification failed: expected commitCheque with $.dataId == "
                                   "\"C-8\" called exactly 1 time, seen 0 times.\nNearest misses:\n"
                                   "  #5 commitCheque at "))
        << message.toStdString();
    EXPECT_TRUE(message.endsWith("\n    $.dataId: expected \"C-8\", was \"C-7\""))
        << message.toStdString();
    EXPECT_EQ(post(port(), "/_emulator/verify", R"({"operation": "x", "atMost": -2})").status, 400);
}

TEST(JournalOff, KeepsNothingAndVerifiesNothing) {
    Options options;
    options.port = 0;
    options.journalEntries = 0;
    Emulator emulator(options);
    QString error;
    ASSERT_TRUE(emulator.start(&error)) << error.toStdString();
    post(emulator.port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})");
    EXPECT_EQ(send(emulator.port(), "GET", "/_emulator/requests/count").body.value("count").toInt(),
              0);
    EXPECT_EQ(send(emulator.port(), "GET", "/_emulator/health")
                  .body.value("journal")
                  .toObject()
                  .value("limit")
                  .toInt(),
              0);
}

} // namespace
} // namespace vesk::emulator::test
