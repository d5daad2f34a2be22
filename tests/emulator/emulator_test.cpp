// Starting and stopping the emulator, its failures, and state kept in a database file.

#include "HttpHelpers.h"

#include <emulator/Emulator.h>
#include <emulator/SeedData.h>

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>

namespace vesk::emulator::test {
namespace {

Options onAnyPort() {
    Options options;
    options.port = 0;
    return options;
}

QString writeFile(const QTemporaryDir& dir, const QString& name, const QByteArray& content) {
    const QString path = dir.filePath(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return path;
}

std::string tokenOf(quint16 port, const char* card) {
    const Reply id =
        post(port, loyaltyPath("processId"), std::string(R"({"discCardId": ")") + card + "\"}");
    return id.body.value("token").toString().toStdString();
}

double balanceOf(quint16 port, const char* card) {
    const Reply reply = post(port, loyaltyPath("getCardBalance"),
                             std::string(R"({"discCardId": ")") + card + R"(", "token": ")" +
                                 tokenOf(port, card) + "\"}");
    return reply.body.value("balance").toDouble(-1);
}

TEST(EmulatorTest, ServesOnAPortOfTheSystemsChoosing) {
    Emulator emulator(onAnyPort());
    QString error;
    ASSERT_TRUE(emulator.start(&error)) << error.toStdString();
    const QString base = QStringLiteral("http://127.0.0.1:%1").arg(emulator.port());
    EXPECT_NE(emulator.port(), 0);
    EXPECT_EQ(emulator.baseUrl(), base);
    EXPECT_EQ(emulator.serviceUrl("disc"), base + "/api/axapta/ExchangeData_Disc/");
    EXPECT_EQ(emulator.serviceUrl("loyalty"), base + "/api/axapta/ExchangeData_Loyalty/");
    EXPECT_EQ(emulator.serviceUrl("sales"), base + "/api/axapta/ExchangeData_Sales/");
    EXPECT_EQ(emulator.serviceUrl("other"), QString());
    EXPECT_EQ(
        post(emulator.port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status,
        200);
}

TEST(EmulatorTest, StopsAndStartsAgainFromTheSeed) {
    Emulator emulator(onAnyPort());
    QString error;
    ASSERT_TRUE(emulator.start(&error));
    const quint16 first = emulator.port();
    post(first, loyaltyPath("processId"), R"({"discCardId": "2775000000011"})");
    emulator.stop();
    emulator.stop();
    EXPECT_EQ(emulator.port(), 0);
    EXPECT_EQ(post(first, salesPath("itemInfo"), "{}").status, 0);
    ASSERT_TRUE(emulator.start(&error)) << error.toStdString();
    EXPECT_EQ(tokenOf(emulator.port(), "2775000000011"), "T000001");
}

TEST(EmulatorTest, SecondEmulatorOnABusyPortFails) {
    Emulator first(onAnyPort());
    QString error;
    ASSERT_TRUE(first.start(&error));
    Options same;
    same.port = first.port();
    Emulator second(same);
    EXPECT_FALSE(second.start(&error));
    EXPECT_EQ(error, QStringLiteral("cannot listen on 127.0.0.1:%1 (is the port in use, or the "
                                    "address not this machine's?)")
                         .arg(first.port()));
    EXPECT_EQ(second.port(), 0);
    EXPECT_EQ(post(first.port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status,
              200);
}

TEST(EmulatorTest, MissingSeedFileFailsTheStart) {
    Options options = onAnyPort();
    options.seedFile = QStringLiteral("/nonexistent/seed.json");
    Emulator emulator(options);
    QString error;
    EXPECT_FALSE(emulator.start(&error));
    EXPECT_EQ(error, "Bad seed: cannot read /nonexistent/seed.json: No such file or directory");
}

TEST(EmulatorTest, BadSeedFailsTheStartSayingWhere) {
    QTemporaryDir dir;
    Options options = onAnyPort();
    options.seedFile = writeFile(dir, "seed.json", R"({"store": {"storeId": "S"}})");
    Emulator emulator(options);
    QString error;
    EXPECT_FALSE(emulator.start(&error));
    EXPECT_EQ(error, QStringLiteral("Bad seed %1: store.shopNum: missing").arg(options.seedFile));
}

TEST(EmulatorTest, DatabaseThatCannotBeOpenedFailsTheStart) {
    QTemporaryDir dir;
    Options options = onAnyPort();
    options.databaseFile = dir.filePath("missing/folder/state.db");
    Emulator emulator(options);
    QString error;
    EXPECT_FALSE(emulator.start(&error));
    EXPECT_TRUE(
        error.startsWith(QStringLiteral("cannot open database %1: ").arg(options.databaseFile)))
        << error.toStdString();
}

TEST(EmulatorTest, FileThatIsNoDatabaseFailsTheStart) {
    QTemporaryDir dir;
    Options options = onAnyPort();
    options.databaseFile = writeFile(dir, "notes.txt", QByteArray(4096, 'x'));
    Emulator emulator(options);
    QString error;
    EXPECT_FALSE(emulator.start(&error));
    EXPECT_TRUE(error.startsWith(
        QStringLiteral("cannot use database %1: file is not a database").arg(options.databaseFile)))
        << error.toStdString();
}

TEST(EmulatorTest, DatabaseFileKeepsTheStateBetweenRuns) {
    QTemporaryDir dir;
    Options options = onAnyPort();
    options.databaseFile = dir.filePath("state.db");
    const std::string commit =
        R"({"dataId": "C-1", "totalAmount": 600, "cardList": [{"card": "2775000000028"}],
            "lines": [{"barCode": "4601234000031", "lineNum": 1, "qty": 2, "salesPrice": 300}]})";
    {
        Emulator emulator(options);
        QString error;
        ASSERT_TRUE(emulator.start(&error)) << error.toStdString();
        EXPECT_EQ(post(emulator.port(), salesPath("reserveCheque"),
                       R"({"chequeId": "R-1", "lines": [{"barcode": "4601234000048",
                           "lineNum": 1, "qty": 1}]})")
                      .status,
                  200);
        EXPECT_EQ(post(emulator.port(), loyaltyPath("commitCheque"), commit).status, 200);
        EXPECT_EQ(balanceOf(emulator.port(), "2775000000028"), 86.0);
    }
    Emulator again(options);
    QString error;
    ASSERT_TRUE(again.start(&error)) << error.toStdString();
    EXPECT_EQ(balanceOf(again.port(), "2775000000028"), 86.0);
    // The commit's first answer is kept too: its repeat gets it and books nothing.
    const Reply repeated = post(again.port(), loyaltyPath("commitCheque"), commit);
    EXPECT_EQ(repeated.status, 200) << repeated.raw;
    EXPECT_EQ(repeated.body.value("bonusAmount").toDouble(-1), 6.0);
    EXPECT_EQ(balanceOf(again.port(), "2775000000028"), 86.0);
    // The teapot is still held by R-1: none left for another cheque until it is released.
    const Reply other = post(again.port(), salesPath("reserveCheque"),
                             R"({"chequeId": "R-2", "lines": [{"barcode": "4601234000048",
                                 "lineNum": 1, "qty": 1}]})");
    EXPECT_EQ(other.body.value("lines").toArray().at(0).toObject().value("qty").toDouble(-1), 0.0);
    EXPECT_EQ(post(again.port(), salesPath("unreserveCheque"), R"({"chequeId": "R-1"})").status,
              200);
    // Tokens go on from where the first run left them.
    EXPECT_EQ(tokenOf(again.port(), "2775000000011"), "T000004");
}

TEST(EmulatorTest, SeedGoesOnlyIntoAnEmptyDatabase) {
    QTemporaryDir dir;
    QByteArray changed = *SeedData::read(QString(), nullptr);
    changed.replace("\"price\": 1200.00", "\"price\": 999.00");
    Options options = onAnyPort();
    options.databaseFile = dir.filePath("state.db");
    options.seedFile = writeFile(dir, "seed.json", changed);
    const std::string coffee = R"({"barcode": "4601234000017"})";
    {
        Emulator emulator(options);
        QString error;
        ASSERT_TRUE(emulator.start(&error)) << error.toStdString();
        EXPECT_EQ(
            post(emulator.port(), salesPath("itemInfo"), coffee).body.value("price").toDouble(),
            999.0);
    }
    options.seedFile.clear(); // the shipped seed now: the database keeps its own
    Emulator again(options);
    QString error;
    ASSERT_TRUE(again.start(&error)) << error.toStdString();
    EXPECT_EQ(post(again.port(), salesPath("itemInfo"), coffee).body.value("price").toDouble(),
              999.0);
}

} // namespace
} // namespace vesk::emulator::test
