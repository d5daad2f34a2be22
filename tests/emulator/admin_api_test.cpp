// The emulator's own routes (health, faults, reset), its request log and
// its warning about a seed that a database ignores.

#include "HttpHelpers.h"

#include "support/LogCapture.h"

#include <emulator/FaultRules.h>
#include <emulator/LogFilter.h>
#include <emulator/SeedData.h>

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace vesk::emulator::test {
namespace {

using testing::HasSubstr;

class AdminApiTest : public RunningEmulator {
protected:
    quint16 port() const { return emulator->port(); }
};

TEST_F(AdminApiTest, HealthCountsRequestsAndActiveFaults) {
    EXPECT_EQ(post(port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status, 200);
    const Reply health = send(port(), "GET", "/_emulator/health");
    EXPECT_EQ(health.status, 200);
    EXPECT_EQ(health.body.value("status").toString(), QStringLiteral("ok"));
    EXPECT_EQ(health.body.value("requestsServed").toInt(), 1);
    EXPECT_EQ(health.body.value("faultsActive").toInt(), 0);
    EXPECT_GE(health.body.value("uptimeMs").toInteger(-1), 0);
    EXPECT_EQ(health.body.value("strictRequests"), QJsonValue(false));
}

TEST_F(AdminApiTest, FaultAddedAtRunTimeFiresListsAndClears) {
    const Reply added = send(port(), "POST", "/_emulator/faults",
                             R"({"spec": "itemInfo:error=500,code=7,msg=Out of stock;times=1"})");
    EXPECT_EQ(added.status, 201);
    EXPECT_EQ(added.body.value("spec").toString(),
              QStringLiteral("itemInfo:error=500,code=7,msg=Out of stock;times=1"));

    const Reply refused = post(port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})");
    EXPECT_EQ(refused.status, 500);
    EXPECT_EQ(refused.body, (QJsonObject{{"code", 7}, {"userMsg", "Out of stock"}}));
    EXPECT_EQ(post(port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status, 200);

    const QJsonArray listed =
        send(port(), "GET", "/_emulator/faults").body.value("faults").toArray();
    ASSERT_EQ(listed.size(), 1);
    EXPECT_EQ(listed.at(0).toObject().value("fired").toInt(), 1);
    EXPECT_EQ(listed.at(0).toObject().value("remaining").toInt(), 0);
    EXPECT_EQ(send(port(), "DELETE", "/_emulator/faults").body, (QJsonObject{{"cleared", 1}}));
    EXPECT_TRUE(send(port(), "GET", "/_emulator/faults").body.value("faults").toArray().isEmpty());
}

TEST_F(AdminApiTest, FaultAfterTheOperationIsAddedByItsTextOrItsMembersAndListed) {
    const Reply bySpec = send(port(), "POST", "/_emulator/faults",
                              R"({"spec": "commitCheque:reset,after;times=1"})");
    EXPECT_EQ(bySpec.status, 201);
    EXPECT_EQ(bySpec.body, (QJsonObject{{"operation", "commitCheque"},
                                        {"fault", "reset"},
                                        {"after", true},
                                        {"times", 1},
                                        {"spec", "commitCheque:reset,after;times=1"}}));
    const Reply byMembers =
        send(port(), "POST", "/_emulator/faults",
             R"({"operation": "reserveCheque", "fault": "hang", "ms": 1500, "after": true})");
    EXPECT_EQ(byMembers.status, 201);
    EXPECT_EQ(byMembers.body.value("spec").toString(),
              QStringLiteral("reserveCheque:hang=1500,after"));

    const QJsonArray listed =
        send(port(), "GET", "/_emulator/faults").body.value("faults").toArray();
    ASSERT_EQ(listed.size(), 2);
    EXPECT_EQ(listed.at(0).toObject(), (QJsonObject{{"operation", "commitCheque"},
                                                    {"fault", "reset"},
                                                    {"after", true},
                                                    {"times", 1},
                                                    {"spec", "commitCheque:reset,after;times=1"},
                                                    {"fired", 0},
                                                    {"remaining", 1}}));
    EXPECT_EQ(listed.at(1).toObject(), (QJsonObject{{"operation", "reserveCheque"},
                                                    {"fault", "hang"},
                                                    {"ms", 1500},
                                                    {"after", true},
                                                    {"spec", "reserveCheque:hang=1500,after"},
                                                    {"fired", 0}}));

    const Reply refused =
        send(port(), "POST", "/_emulator/faults",
             R"({"operation": "itemInfo", "fault": "delay", "ms": 5, "after": true})");
    EXPECT_EQ(refused.status, 400);
    EXPECT_EQ(refused.body, (QJsonObject{{"code", 400},
                                         {"userMsg", "Bad fault: delay does not take \"after\""}}));
    EXPECT_EQ(emulator->faults().list().size(), 2);
}

TEST_F(AdminApiTest, BadFaultIsRefusedWithTheReasonAndAddsNothing) {
    const Reply refused =
        send(port(), "POST", "/_emulator/faults", R"({"spec": "itemInfo:explode"})");
    EXPECT_EQ(refused.status, 400);
    EXPECT_EQ(refused.body.value("code").toInt(), 400);
    EXPECT_THAT(refused.body.value("userMsg").toString().toStdString(),
                HasSubstr("Bad fault: unknown fault \"explode\""));
    EXPECT_EQ(send(port(), "POST", "/_emulator/faults", "[1]").body.value("userMsg").toString(),
              QStringLiteral("Bad fault: a JSON object is expected"));
    EXPECT_TRUE(emulator->faults().list().isEmpty());
}

TEST_F(AdminApiTest, WrongMethodAndUnknownRouteAreRefused) {
    EXPECT_EQ(send(port(), "POST", "/_emulator/health").status, 405);
    EXPECT_EQ(send(port(), "GET", "/_emulator/reset").status, 405);
    EXPECT_EQ(send(port(), "PUT", "/_emulator/faults", "{}").status, 405);
    const Reply unknown = send(port(), "GET", "/_emulator/stats");
    EXPECT_EQ(unknown.status, 404);
    EXPECT_EQ(unknown.body.value("userMsg").toString(),
              QStringLiteral("Nothing at /_emulator/stats (health, faults, reset, requests, "
                             "requests/find, requests/count, verify or metrics)"));
}

TEST_F(AdminApiTest, ResetBringsSpentBonusesAndTokensBackToTheSeed) {
    const auto token = [&] {
        return post(port(), loyaltyPath("processId"), R"({"discCardId": "2775000000011"})")
            .body.value("token")
            .toString();
    };
    const auto balance = [&](const QString& t) {
        return post(port(), loyaltyPath("getCardBalance"),
                    QStringLiteral(R"({"discCardId": "2775000000011", "token": "%1"})")
                        .arg(t)
                        .toStdString())
            .body.value("balance")
            .toDouble(-1);
    };
    const QString first = token();
    const double seeded = balance(first);
    ASSERT_GT(seeded, 0);
    EXPECT_NE(token(), first); // tokens count on
    EXPECT_EQ(send(port(), "POST", "/_emulator/reset").body, (QJsonObject{{"reset", true}}));
    EXPECT_EQ(token(), first); // and start again from the seed's state
    EXPECT_EQ(balance(first), seeded);
}

TEST_F(AdminApiTest, EveryRequestIsLoggedAndBodiesOnlyAtDebugWithSecretsMasked) {
    vesk::test::LogCapture log(
        QStringLiteral("vesk.emulator.info=true\nvesk.emulator.body.debug=true"));
    post(port(), loyaltyPath("processId"), R"({"discCardId": "2775000000011"})");
    send(port(), "GET", "/_emulator/health");
    const QStringList lines = log.lines();
    const QRegularExpression request(QStringLiteral(
        R"(^vesk\.emulator info: \d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z processId 200 \d+ ms$)"));
    EXPECT_EQ(lines.filter(request).size(), 1) << log.all();
    EXPECT_EQ(lines.filter(QStringLiteral(" GET /_emulator/health 200 ")).size(), 1) << log.all();
    EXPECT_THAT(log.all(), HasSubstr("vesk.emulator.body debug: processId request: "));
    EXPECT_THAT(log.all(), HasSubstr("vesk.emulator.body debug: processId reply: "));
    EXPECT_THAT(log.all(), testing::Not(HasSubstr("2775000000011")));
}

TEST(EmulatorLogLevels, OnlyRulesThatNameTheEmulatorCount) {
    const auto levels = [](const char* rules, const char* category = "vesk.emulator") {
        return emulatorLogLevels(QString::fromUtf8(rules), QString::fromUtf8(category));
    };
    EXPECT_EQ(levels(""), (LogLevels{false, true, true, true}));
    EXPECT_EQ(levels("*=false;*.debug=true"), (LogLevels{false, true, true, true}));
    EXPECT_EQ(levels("veskdisc.debug=true\nmorvanetwork=false"),
              (LogLevels{false, true, true, true}));
    EXPECT_EQ(levels("vesk.emulator.debug=true"), (LogLevels{true, true, true, true}));
    EXPECT_EQ(levels("vesk*=false"), (LogLevels{false, false, false, false}));
    EXPECT_EQ(levels("vesk.emulator.body.debug=true", "vesk.emulator.body"),
              (LogLevels{true, true, true, true}));
    EXPECT_EQ(levels("vesk.emulator.body.debug=true", "vesk.emulator"),
              (LogLevels{false, true, true, true}));
    EXPECT_EQ(levels("vesk.emulator=false;vesk.emulator.warning=true"),
              (LogLevels{false, false, true, false}));
}

TEST(EmulatorSeed, IgnoredSeedFileIsWarnedAbout) {
    QTemporaryDir dir;
    QByteArray changed = *SeedData::read(QString(), nullptr);
    changed.replace("\"price\": 1200.00", "\"price\": 999.00");
    const QString seedFile = dir.filePath(QStringLiteral("seed.json"));
    QFile file(seedFile);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(changed);
    file.close();
    Options options;
    options.port = 0;
    options.databaseFile = dir.filePath(QStringLiteral("state.db"));
    {
        Emulator first(options); // the shipped seed goes in
        QString error;
        ASSERT_TRUE(first.start(&error)) << error.toStdString();
    }
    options.seedFile = seedFile;
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.warning=true"));
    Emulator again(options);
    QString error;
    ASSERT_TRUE(again.start(&error)) << error.toStdString();
    EXPECT_THAT(log.all(), HasSubstr(QStringLiteral("vesk.emulator warning: --seed %1 is ignored: "
                                                    "database %2 keeps the seed it was made with")
                                         .arg(seedFile, options.databaseFile)
                                         .toStdString()));
    EXPECT_EQ(post(again.port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})")
                  .body.value("price")
                  .toDouble(),
              1200.0);
}

} // namespace
} // namespace vesk::emulator::test
