// Requests whose bodies have keys that name no member, or values of the
// wrong kind: refused with every finding by --strict-requests, served and
// noted in the log and the journal without it.

#include "HttpHelpers.h"

#include "support/LogCapture.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace vesk::emulator::test {
namespace {

struct Misfit {
    const char* name;
    std::string path;
    const char* body;
    const char* findings; // joined by "; ", as the refusal names them
    const char* record;
};

void PrintTo(const Misfit& row, std::ostream* out) {
    *out << row.body;
}

const Misfit misfits[] = {
    {"MisspeltKey", salesPath("itemInfo"), R"({"barCod": "4601234000017"})",
     "$.barCod names no member of vesk::sales::ItemInfoRequest; did you mean barcode?",
     "vesk::sales::ItemInfoRequest"},
    {"TextForANumberInALine", salesPath("reserveCheque"),
     R"({"chequeId": "C-1", "lines": [{"lineNum": 1, "barcode": "4601234000017", "qty": "2"}]})",
     "$.lines[0].qty \"2\" is not a number", "vesk::sales::ReserveChequeRequest"},
    {"ObjectForAList", discPath("discCalc"), R"({"lines": {"barcode": "1"}})",
     "$.lines an object is not a list of objects", "vesk::disc::DiscCalcRequest"},
    {"CardNumberAsANumberIsMasked", loyaltyPath("processId"),
     R"({"discCardId": 2775000000011, "pinCod": "1234"})",
     "$.discCardId \"***0011\" is not text; $.pinCod names no member of "
     "vesk::loyalty::ProcessIdRequest",
     "vesk::loyalty::ProcessIdRequest"},
    {"MisspeltKeyInALine", discPath("discCalc"),
     R"({"lines": [{"lineNum": 1, "barcde": "4601234000017", "qty": 1}]})",
     "$.lines[0].barcde names no member of vesk::disc::LinesEntryRequest; did you mean barcode?",
     "vesk::disc::DiscCalcRequest"},
    {"TokenOfTheWrongKindIsMasked", loyaltyPath("processPin"),
     R"({"discCardId": "2775000000011", "token": 918273})", "$.token \"***\" is not text",
     "vesk::loyalty::ProcessPinRequest"},
};

class StrictRequests : public ::testing::TestWithParam<Misfit> {
protected:
    void SetUp() override {
        Options options;
        options.port = 0;
        options.strictRequests = true;
        emulator = std::make_unique<Emulator>(options);
        QString error;
        ASSERT_TRUE(emulator->start(&error)) << error.toStdString();
    }
    std::unique_ptr<Emulator> emulator;
};

TEST_P(StrictRequests, RefuseWithEveryFindingByItsPath) {
    const Misfit& row = GetParam();
    const Reply refused = post(emulator->port(), row.path, row.body);
    EXPECT_EQ(refused.status, 422) << refused.raw;
    EXPECT_EQ(refused.body.value("code").toInt(), 422);
    EXPECT_EQ(refused.body.value("userMsg").toString().toStdString(),
              std::string("The request does not fit ") + row.record + ": " + row.findings);
    const QJsonObject kept = send(emulator->port(), "GET", "/_emulator/requests")
                                 .body.value("requests")
                                 .toArray()
                                 .first()
                                 .toObject();
    EXPECT_EQ(kept.value("status").toInt(), 422);
    EXPECT_EQ(kept.value("findings").toArray().size(),
              QString::fromUtf8(row.findings).count(QStringLiteral("$.")));
}

INSTANTIATE_TEST_SUITE_P(Table, StrictRequests, ::testing::ValuesIn(misfits),
                         [](const ::testing::TestParamInfo<Misfit>& info) {
                             return std::string(info.param.name);
                         });

TEST_F(RunningEmulator, ServesAMisfitWithoutStrictRequestsAndNotesItInTheLogAndTheJournal) {
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.warning=true"));
    const Reply served = post(emulator->port(), salesPath("itemInfo"),
                              R"({"barcode": "4601234000017", "sectionID": "HALL"})");
    EXPECT_EQ(served.status, 200) << served.raw;
    EXPECT_EQ(served.body.value("barcode").toString(), "4601234000017");
    const QString finding = QStringLiteral(
        "$.sectionID names no member of vesk::sales::ItemInfoRequest; did you mean sectionId?");
    EXPECT_TRUE(log.lines().contains(
        QStringLiteral("vesk.emulator warning: itemInfo request does not fit its record: ") +
        finding))
        << log.all();
    const QJsonObject kept = send(emulator->port(), "GET", "/_emulator/requests")
                                 .body.value("requests")
                                 .toArray()
                                 .first()
                                 .toObject();
    EXPECT_EQ(kept.value("findings").toArray(), QJsonArray{finding});
}

TEST_F(RunningEmulator, ServesAMisfitWithoutStrictRequestsAndMasksItsSecretsInTheLog) {
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.warning=true"));
    const Reply served = post(emulator->port(), loyaltyPath("processPin"),
                              R"({"discCardId": 2775000000011, "token": 918273})");
    EXPECT_NE(served.status, 422) << served.raw;
    EXPECT_NE(served.status, 0) << served.raw;
    EXPECT_TRUE(log.lines().contains(
        QStringLiteral("vesk.emulator warning: processPin request does not fit its record: "
                       "$.discCardId \"***0011\" is not text; $.token \"***\" is not text")))
        << log.all();
    EXPECT_EQ(log.all().find("2775000000011"), std::string::npos) << log.all();
    EXPECT_EQ(log.all().find("918273"), std::string::npos) << log.all();
}

TEST_F(RunningEmulator, AFittingRequestHasNoFindings) {
    vesk::test::LogCapture log(QStringLiteral("vesk.emulator.warning=true"));
    EXPECT_EQ(
        post(emulator->port(), salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status,
        200);
    EXPECT_FALSE(log.all().find("does not fit") != std::string::npos) << log.all();
    const QJsonObject kept = send(emulator->port(), "GET", "/_emulator/requests")
                                 .body.value("requests")
                                 .toArray()
                                 .first()
                                 .toObject();
    EXPECT_FALSE(kept.contains("findings"));
}

} // namespace
} // namespace vesk::emulator::test
