// The commands that need no service, run in the test process: ops, record,
// help, and the options that can no longer take effect once the process has
// made its configuration or a client.

#include "InProcess.h"
#include "VeskProcess.h"

#include <cli/CommandLine.h>

#include <vesk/PreparedRequestBase.h>
#include <vesk/sales/Api.h>

#include <morva/Config.h>

#include <QFile>
#include <QMetaType>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vesk::cli::test {
namespace {

TEST(OpsCommand, ListsTheSixteenOperationsWithTheirEndpointsAndRecords) {
    const CliRun run = runInProcess({QStringLiteral("ops")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(run.out.count(QLatin1Char('\n')), 16);
    EXPECT_EQ(
        run.out,
        QStringLiteral(
            "disc     discCalc                POST /api/axapta/ExchangeData_Disc/discCalc          "
            "         "
            "vesk::disc::DiscCalcRequest                   vesk::disc::DiscCalcResponse\n"
            "disc     discCalcPay             POST /api/axapta/ExchangeData_Disc/discCalcPay       "
            "         "
            "vesk::disc::DiscCalcPayRequest                vesk::disc::DiscCalcPayResponse\n"
            "disc     getPublicityList        POST /api/axapta/ExchangeData_Disc/getPublicityList  "
            "         "
            "vesk::disc::GetPublicityListRequest           vesk::disc::GetPublicityListResponse\n"
            "loyalty  processId               POST /api/axapta/ExchangeData_Loyalty/processId      "
            "         "
            "vesk::loyalty::ProcessIdRequest               vesk::loyalty::ProcessIdResponse\n"
            "loyalty  processPin              POST /api/axapta/ExchangeData_Loyalty/processPin     "
            "         "
            "vesk::loyalty::ProcessPinRequest              vesk::loyalty::ProcessPinResponse\n"
            "loyalty  getCardBalance          POST /api/axapta/ExchangeData_Loyalty/getCardBalance "
            "         "
            "vesk::loyalty::CardBalanceRequest             vesk::loyalty::CardBalanceResponse\n"
            "loyalty  calcBonusAmount         POST "
            "/api/axapta/ExchangeData_Loyalty/calcBonusAmount         "
            "vesk::loyalty::CalcBonusAmountRequest         vesk::loyalty::CalcBonusAmountResponse\n"
            "loyalty  calcAndReserveBonusPay  POST "
            "/api/axapta/ExchangeData_Loyalty/calcAndReserveBonusPay  "
            "vesk::loyalty::CalcAndReserveBonusPayRequest  "
            "vesk::loyalty::CalcAndReserveBonusPayResponse\n"
            "loyalty  checkPin                POST /api/axapta/ExchangeData_Loyalty/checkPin       "
            "         "
            "vesk::loyalty::CheckPinRequest                vesk::loyalty::CheckPinResponse\n"
            "loyalty  commitCheque            POST /api/axapta/ExchangeData_Loyalty/commitCheque   "
            "         "
            "vesk::loyalty::CommitChequeRequest            vesk::loyalty::CommitChequeResponse\n"
            "loyalty  getParkingInfo          POST /api/axapta/ExchangeData_Loyalty/getParkingInfo "
            "         "
            "vesk::loyalty::ParkingInfoRequest             vesk::loyalty::ParkingInfoResponse\n"
            "loyalty  cashierAdditionalInfo   POST "
            "/api/axapta/ExchangeData_Loyalty/cashierAdditionalInfo   "
            "vesk::loyalty::AdditionalInfoRequest          vesk::loyalty::AdditionalInfoResponse\n"
            "loyalty  chequeAdditionalInfo    POST "
            "/api/axapta/ExchangeData_Loyalty/chequeAdditionalInfo    "
            "vesk::loyalty::AdditionalInfoRequest          vesk::loyalty::AdditionalInfoResponse\n"
            "sales    itemInfo                POST /api/axapta/ExchangeData_Sales/itemInfo         "
            "         "
            "vesk::sales::ItemInfoRequest                  vesk::sales::ItemInfoResponse\n"
            "sales    reserveCheque           POST /api/axapta/ExchangeData_Sales/reserveCheque    "
            "         "
            "vesk::sales::ReserveChequeRequest             vesk::sales::ReserveChequeResponse\n"
            "sales    unreserveCheque         POST /api/axapta/ExchangeData_Sales/unreserveCheque  "
            "         "
            "vesk::sales::UnreserveChequeRequest           "
            "vesk::sales::UnreserveChequeResponse\n"));
}

TEST(OpsCommand, ProgramListsExactlySixteenLines) {
    const VeskRun run = runVesk({QStringLiteral("ops")});
    EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(run);
    EXPECT_EQ(run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts).size(), 16);
    EXPECT_EQ(run.out, runInProcess({QStringLiteral("ops")}).out);
}

TEST(RecordCommand, ListsTheMembersOfTheDiscountRequestLine) {
    const CliRun run =
        runInProcess({QStringLiteral("record"), QStringLiteral("disc::LinesEntryRequest")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, QString());
    EXPECT_EQ(run.out,
              QStringLiteral("barcode        string                                     plain\n"
                             "colorId        string                                     optional\n"
                             "itemId         string                                     optional\n"
                             "sizeId         string                                     optional\n"
                             "skuId          string                                     optional\n"
                             "discounts      list of vesk::disc::DiscountsEntryRequest  plain\n"
                             "lineNum        integer                                    plain\n"
                             "locationId     string                                     plain\n"
                             "retailPrice    number                                     plain\n"
                             "qty            number                                     plain\n"
                             "extraDataLine  list of vesk::disc::ExtraDataLineEntry     plain\n"));
}

TEST(RecordCommand, ShowsTheDateTimesOfTheParkingReply) {
    const CliRun run = runInProcess(
        {QStringLiteral("record"), QStringLiteral("vesk::loyalty::ParkingInfoResponse")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, QStringLiteral("parkingId                    string     plain\n"
                                      "parkingValidateStatus        string     plain\n"
                                      "parkingTotalAmount           number     plain\n"
                                      "parkingDiscAmount            number     plain\n"
                                      "parkingPayAmount             number     plain\n"
                                      "parkingDiscHours             number     plain\n"
                                      "parkingDateTimeEntry         date-time  plain\n"
                                      "parkingDateTimePrivilegeEnd  date-time  plain\n"));
}

TEST(RecordCommand, ShowsBooleansAndOptionalNumbersOfTheReservationLine) {
    const CliRun run =
        runInProcess({QStringLiteral("record"), QStringLiteral("ReserveLinesEntryResponse")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, QStringLiteral("barcode                    string   plain\n"
                                      "sectionId                  string   plain\n"
                                      "skuId                      string   plain\n"
                                      "lineNum                    integer  plain\n"
                                      "price                      number   optional\n"
                                      "qty                        number   plain\n"
                                      "taxCode                    string   plain\n"
                                      "vendorId                   string   optional\n"
                                      "existWithoutReservation    boolean  plain\n"
                                      "qtyWithoutReservation      number   optional\n"
                                      "withoutReservationMessage  string   optional\n"));
}

TEST(RecordCommand, ShowsTheStringListOfTheDiscountRequest) {
    const CliRun run = runInProcess({QStringLiteral("record"), QStringLiteral("DiscCalcRequest")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out,
              QStringLiteral("cardList      list of vesk::disc::CardListEntry      plain\n"
                             "chequeId      string                                 plain\n"
                             "calcDateTime  string                                 plain\n"
                             "lines         list of vesk::disc::LinesEntryRequest  plain\n"
                             "publicities   string list                            plain\n"
                             "salesChannel  integer                                plain\n"
                             "storeId       string                                 plain\n"));
}

TEST(RecordCommand, FindsARecordByEachFormOfItsName) {
    const QString expected =
        runInProcess({QStringLiteral("record"), QStringLiteral("vesk::sales::ItemInfoRequest")})
            .out;
    EXPECT_EQ(expected, QStringLiteral("sectionId  string  plain\nbarcode    string  plain\n"));
    for (const QString& name :
         {QStringLiteral("sales::ItemInfoRequest"), QStringLiteral("ItemInfoRequest")}) {
        const CliRun run = runInProcess({QStringLiteral("record"), name});
        EXPECT_EQ(run.exitCode, 0) << name.toStdString();
        EXPECT_EQ(run.out, expected) << name.toStdString();
    }
}

TEST(RecordCommand, ShortNameOfRecordsOfTwoServicesListsBoth) {
    const CliRun run = runInProcess({QStringLiteral("record"), QStringLiteral("CardListEntry")});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.out, QString());
    EXPECT_EQ(run.err, QStringLiteral("vesk: error: \"CardListEntry\" names more than one record:\n"
                                      "  vesk::disc::CardListEntry\n"
                                      "  vesk::loyalty::CardListEntry\n"));
}

TEST(RecordCommand, GadgetThatIsNoRecordIsNotFound) {
    ASSERT_TRUE(QMetaType::fromType<PreparedRequestBase>().isValid());
    QMetaType::fromType<PreparedRequestBase>().id(); // registered, so found by name
    const CliRun run =
        runInProcess({QStringLiteral("record"), QStringLiteral("vesk::PreparedRequestBase")});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.err, QStringLiteral("vesk: error: no record named \"vesk::PreparedRequestBase\"\n"
                                      "Try 'vesk help record' for more information.\n"));
}

TEST(HelpCommand, PrintsTheGeneralUsageOnStandardOutput) {
    const CliRun run = runInProcess({QStringLiteral("help")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, usage());
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("Usage: vesk [OPTIONS] COMMAND [ARGUMENTS]\n")));
    EXPECT_EQ(run.err, QString());
}

TEST(HelpCommand, EveryCommandHasItsOwnUsage) {
    for (const char* command : {"call", "ops", "record", "demo", "help"}) {
        const QString name = QString::fromLatin1(command);
        const CliRun run = runInProcess({name, QStringLiteral("--help")});
        EXPECT_EQ(run.exitCode, 0) << command;
        EXPECT_TRUE(run.out.startsWith(QStringLiteral("Usage: vesk %1 [OPTIONS]").arg(name)))
            << run.out.toStdString();
        EXPECT_EQ(run.out, runInProcess({QStringLiteral("help"), name}).out) << command;
    }
}

TEST(CallCommand, DeeplyNestedRequestIsRefusedNotFatal) {
    const QString nested = QString(100000, QLatin1Char('[')) + QString(100000, QLatin1Char(']'));
    const CliRun run = runInProcess(
        {QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"), nested});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("vesk: error: the request in the argument is not "
                                                  "valid JSON: ")))
        << run.err.toStdString();
}

TEST(CallCommand, RequestFromStandardInputIsReadFromTheInputStream) {
    const CliRun run = runInProcess({QStringLiteral("call"), QStringLiteral("sales"),
                                     QStringLiteral("itemInfo"), QStringLiteral("-")},
                                    QStringLiteral("[]"));
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.err, QStringLiteral("vesk: error: the request in standard input must be a JSON "
                                      "object, not an array\n"));
}

TEST(ProcessSettings, ConfigFileIsRefusedOnceTheConfigurationWasRead) {
    Singleton<Config>::getInstance();
    const QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("vesk.ini"));
    QFile ini(file);
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
    ini.write("[Vesk.sales]\nurl=http://127.0.0.1:1/\n");
    ini.close();
    const CliRun run = runInProcess({QStringLiteral("--config"), file, QStringLiteral("ops")});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_TRUE(run.err.startsWith(
        QStringLiteral("vesk: error: --config: this process has read its configuration already")))
        << run.err.toStdString();
    EXPECT_EQ(run.out, QString());
}

TEST(ProcessSettings, UrlOfAClientMadeAlreadyIsRefused) {
    const ClosedPort closed;
    const QString made = sales::Api::getInstance()->baseUrl().toString();
    const QString other = QStringLiteral("http://127.0.0.1:%1/elsewhere/").arg(closed.port());
    const CliRun run =
        runInProcess({QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                      QStringLiteral("--url"), QStringLiteral("sales=") + other});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.err,
              QStringLiteral("vesk: error: --url sales=%1: the sales client of this process has "
                             "been made already, for %2\n"
                             "Try 'vesk help call' for more information.\n")
                  .arg(other, made));
}

} // namespace
} // namespace vesk::cli::test
