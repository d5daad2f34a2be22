// The emulator's HTTP side: every error reply, bad bodies, and concurrent tills.

#include "HttpHelpers.h"

#include <emulator/Emulator.h>

#include <QJsonArray>

#include <future>
#include <set>
#include <thread>

namespace vesk::emulator::test {
namespace {

class HttpFrontTest : public RunningEmulator {
protected:
    Reply post(const std::string& path, const std::string& body) {
        return test::post(emulator->port(), path, body);
    }
};

struct ErrorRow {
    const char* name;
    std::string path;
    std::string body;
    int status;
    int code;
    const char* userMsg;
};

void PrintTo(const ErrorRow& row, std::ostream* out) {
    *out << row.name;
}

class HttpErrorTest : public HttpFrontTest, public ::testing::WithParamInterface<ErrorRow> {};

TEST_P(HttpErrorTest, RepliesWithStatusCodeAndUserMessage) {
    const ErrorRow& row = GetParam();
    const Reply reply = post(row.path, row.body);
    EXPECT_EQ(reply.status, row.status);
    ASSERT_TRUE(reply.isObject) << reply.raw;
    EXPECT_EQ(reply.body.size(), 2) << reply.raw;
    EXPECT_EQ(reply.body.value("code").toInt(-1), row.code);
    EXPECT_EQ(reply.body.value("userMsg").toString().toStdString(), row.userMsg);
}

INSTANTIATE_TEST_SUITE_P(
    Errors, HttpErrorTest,
    ::testing::Values(
        ErrorRow{"unknown_barcode", salesPath("itemInfo"), R"({"barcode": "0"})", 404, 1001,
                 "No item with barcode \"0\""},
        ErrorRow{"unknown_reservation", salesPath("unreserveCheque"), R"({"chequeId": "X"})", 404,
                 1002, "No reservation for cheque \"X\""},
        ErrorRow{"quantity_that_is_no_number", salesPath("reserveCheque"),
                 R"({"chequeId": "A", "lines": [{"barcode": "4601234000017", "lineNum": 1,
                     "qty": "many"}]})",
                 400, 1000, "Line 1: the quantity must be more than 0 and at most 1000000"},
        ErrorRow{"negative_price", discPath("discCalc"),
                 R"({"lines": [{"barcode": "1", "lineNum": 2, "qty": 1, "retailPrice": -5}]})", 400,
                 2000, "Line 2: the retail price must be from 0 to 1000000000"},
        ErrorRow{"unknown_card", loyaltyPath("processId"), R"({"discCardId": "5551234"})", 404,
                 3001, "No loyalty card ****1234"},
        ErrorRow{"token_of_no_card", loyaltyPath("getCardBalance"),
                 R"({"discCardId": "2775000000011", "token": "nope"})", 401, 3002,
                 "The token is not valid for card ****0011: identify the card again"},
        ErrorRow{"parking_of_a_cheque_not_committed", loyaltyPath("getParkingInfo"),
                 R"({"chequeId": "Z", "parkingId": "P-000123"})", 404, 3007,
                 "Cheque Z has not been committed"},
        ErrorRow{"malformed_json", salesPath("itemInfo"), R"({"barcode":)", 400, 400,
                 "The body is not JSON: unterminated object at offset 11"},
        ErrorRow{"empty_body", salesPath("itemInfo"), "", 400, 400,
                 "The body is empty: a JSON object is expected"},
        ErrorRow{"array_body", loyaltyPath("commitCheque"), "[{}]", 400, 400,
                 "The body is JSON but not an object"},
        ErrorRow{"bare_string_body", discPath("discCalc"), R"("text")", 400, 400,
                 "The body is not JSON: illegal value at offset 1"},
        ErrorRow{"unknown_operation", salesPath("nothing"), "{}", 404, 404,
                 "No operation at /api/axapta/ExchangeData_Sales/nothing"},
        ErrorRow{"unknown_service", "/api/axapta/ExchangeData_Other/itemInfo", "{}", 404, 404,
                 "No operation at /api/axapta/ExchangeData_Other/itemInfo"}),
    [](const auto& info) { return std::string(info.param.name); });

// The raw reply to a POST that offers `encodings`, as the HTTP library leaves it.
httplib::Result postOffering(quint16 port, const std::string& path, const std::string& body,
                             const char* encodings) {
    httplib::Client client("127.0.0.1", port);
    client.set_read_timeout(10, 0);
    client.set_decompress(false);
    return client.Post(path, {{"Accept-Encoding", encodings}}, body, "application/json");
}

TEST_F(HttpFrontTest, SmallRepliesGoOutUncompressedWhateverIsOffered) {
    const auto result =
        postOffering(emulator->port(), salesPath("itemInfo"),
                     R"({"sectionId": "HALL", "barcode": "4601234000017"})", "br, gzip, deflate");

    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 200);
    EXPECT_FALSE(result->has_header("Content-Encoding"));
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(result->body))
                  .object()
                  .value(QLatin1String("barcode"))
                  .toString(),
              QStringLiteral("4601234000017"));
}

TEST_F(HttpFrontTest, LargeRepliesAreGzippedWhenGzipIsOffered) {
    QJsonArray lines;
    for (int n = 1; n <= 40; ++n)
        lines.append(QJsonObject{{QStringLiteral("lineNum"), n},
                                 {QStringLiteral("barcode"), QStringLiteral("4601234000017")},
                                 {QStringLiteral("qty"), 1},
                                 {QStringLiteral("retailPrice"), 1200},
                                 {QStringLiteral("amount"), 1200}});
    const std::string request =
        QJsonDocument(QJsonObject{{QStringLiteral("chequeId"), QStringLiteral("CHQ-9")},
                                  {QStringLiteral("storeId"), QStringLiteral("S01")},
                                  {QStringLiteral("lines"), lines}})
            .toJson(QJsonDocument::Compact)
            .toStdString();

    const auto gzipped = postOffering(emulator->port(), discPath("discCalc"), request, "br, gzip");
    const auto plain = postOffering(emulator->port(), discPath("discCalc"), request, "br");

    ASSERT_TRUE(gzipped);
    ASSERT_TRUE(plain);
    EXPECT_EQ(gzipped->get_header_value("Content-Encoding"), "gzip");
    EXPECT_FALSE(plain->has_header("Content-Encoding"));
    EXPECT_GE(plain->body.size(), 1024u);
    EXPECT_LT(gzipped->body.size(), plain->body.size());
}

TEST_F(HttpFrontTest, OperationsTakePostOnly) {
    httplib::Client client("127.0.0.1", emulator->port());
    const httplib::Result get = client.Get(salesPath("itemInfo"));
    ASSERT_TRUE(get);
    EXPECT_EQ(get->status, 405);
    EXPECT_EQ(
        get->body,
        R"({"code":405,"userMsg":"/api/axapta/ExchangeData_Sales/itemInfo takes POST only"})");
    const httplib::Result other = client.Get("/");
    ASSERT_TRUE(other);
    EXPECT_EQ(other->status, 404);
    EXPECT_EQ(other->body, R"({"code":404,"userMsg":"No operation at /"})");
}

TEST_F(HttpFrontTest, ReplyIsTheResponseRecordAsCompactJson) {
    const Reply reply = post(salesPath("itemInfo"), R"({"barcode": "4601234000031"})");
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.raw,
              R"({"article":"TEA-100","barcode":"4601234000031","barcodeType":1,"colorId":"",)"
              R"("countryCode":"CN","groupId":"TEA","itemId":"IT-1003","name":"Green tea, 100 g",)"
              R"("price":300,"priceGroupId":"REGULAR","properties":0,"sizeId":"",)"
              R"("skuId":"SKU-TEA-100G","unitId":"pcs","vendorId":"V-TEAHOUSE"})");
}

TEST_F(HttpFrontTest, EveryOperationAnswersThroughTheLibrary) {
    using namespace vesk::loyalty;
    ProcessIdRequest id;
    id.chequeId = QStringLiteral("A");
    id.discCardId = QStringLiteral("2775000000028");
    const QString token = call<ProcessIdResponse>(*emulator, "loyalty", "processId", id).token;
    EXPECT_EQ(token, "T000001");

    ProcessPinRequest pin;
    pin.discCardId = id.discCardId;
    pin.token = token;
    EXPECT_EQ(call<ProcessPinResponse>(*emulator, "loyalty", "processPin", pin).pinCodeSended, 1);
    CheckPinRequest check;
    check.discCardId = id.discCardId;
    check.token = token;
    check.pinCode = QStringLiteral("1111");
    EXPECT_EQ(call<CheckPinResponse>(*emulator, "loyalty", "checkPin", check).correctPin, 1);
    CardBalanceRequest balance;
    balance.discCardId = id.discCardId;
    balance.token = token;
    EXPECT_EQ(call<CardBalanceResponse>(*emulator, "loyalty", "getCardBalance", balance).balance,
              80.0);

    LinesEntry line;
    line.barCode = QStringLiteral("4601234000031");
    line.lineNum = 1;
    line.salesPrice = 300;
    line.qty = 2;
    CardListEntry card;
    card.card = id.discCardId;
    CalcBonusAmountRequest bonus;
    bonus.cardList = {card};
    bonus.lines = {line};
    bonus.dataId = QStringLiteral("A");
    bonus.token = token;
    EXPECT_EQ(call<CalcBonusAmountResponse>(*emulator, "loyalty", "calcBonusAmount", bonus)
                  .lines.value(0)
                  .bonusUnit,
              3.0);
    AccountsEntry account;
    account.codeAccount = 1;
    account.requestAmount = 10;
    card.accounts = {account};
    CalcAndReserveBonusPayRequest reserve;
    reserve.cardList = {card};
    reserve.lines = {line};
    reserve.dataId = QStringLiteral("A");
    reserve.token = token;
    EXPECT_EQ(call<CalcAndReserveBonusPayResponse>(*emulator, "loyalty", "calcAndReserveBonusPay",
                                                   reserve)
                  .cardList.value(0)
                  .accounts.value(0)
                  .confirmedAmount,
              10.0);
    CommitChequeRequest commit;
    commit.cardList = {card};
    commit.lines = {line};
    commit.dataId = QStringLiteral("A");
    commit.token = token;
    commit.totalAmount = 600;
    const CommitChequeResponse committed =
        call<CommitChequeResponse>(*emulator, "loyalty", "commitCheque", commit);
    EXPECT_EQ(committed.discAmount, 10.0);
    EXPECT_EQ(committed.bonusAmount, 5.9); // 1% of 600.00 - 10.00
    ParkingInfoRequest parking;
    parking.chequeId = QStringLiteral("A");
    parking.parkingId = QStringLiteral("P-000124");
    const ParkingInfoResponse validated =
        call<ParkingInfoResponse>(*emulator, "loyalty", "getParkingInfo", parking);
    EXPECT_EQ(validated.parkingValidateStatus, "NOT_VALIDATED");
    EXPECT_EQ(validated.parkingPayAmount, 100.0);
    EXPECT_EQ(validated.parkingDateTimeEntry.toDateTime().toString(Qt::ISODate),
              "2026-11-20T10:00:00");
    AdditionalInfoRequest info;
    info.chequeId = QStringLiteral("A");
    info.discCardId = id.discCardId;
    info.token = token;
    EXPECT_EQ(call<AdditionalInfoResponse>(*emulator, "loyalty", "cashierAdditionalInfo", info)
                  .cashierText,
              "Boris Ivanov, SILVER card ****0028: 75.90 bonuses available.");
    EXPECT_EQ(
        call<AdditionalInfoResponse>(*emulator, "loyalty", "chequeAdditionalInfo", info).chequeText,
        "Thank you, Boris Ivanov! Bonuses paid: 10.00, accrued: 5.90. Balance: 75.90.");

    disc::LinesEntryRequest discLine;
    discLine.barcode = QStringLiteral("4601234000048");
    discLine.lineNum = 1;
    discLine.qty = 1;
    discLine.retailPrice = 1500;
    disc::DiscCalcRequest calc;
    calc.lines = {discLine};
    EXPECT_EQ(call<disc::DiscCalcResponse>(*emulator, "disc", "discCalc", calc).lines.size(), 1);
    disc::DiscCalcPayRequest calcPay;
    calcPay.lines = {discLine};
    disc::PaymentsEntryRequest payment;
    payment.payLineNum = 1;
    payment.code = 2;
    payment.amount = 1500;
    calcPay.payments = {payment};
    EXPECT_EQ(call<disc::DiscCalcPayResponse>(*emulator, "disc", "discCalcPay", calcPay)
                  .payments.value(0)
                  .payAmount,
              1455.0);
    disc::GetPublicityListRequest publicity;
    publicity.lines = {discLine};
    EXPECT_EQ(call<disc::GetPublicityListResponse>(*emulator, "disc", "getPublicityList", publicity)
                  .variants.size(),
              1);

    sales::ItemInfoRequest item;
    item.barcode = QStringLiteral("4601234000048");
    EXPECT_EQ(call<sales::ItemInfoResponse>(*emulator, "sales", "itemInfo", item).price, 1500.0);
    sales::ReserveLinesEntryRequest reserveLine;
    reserveLine.barcode = item.barcode;
    reserveLine.lineNum = 1;
    reserveLine.qty = 1;
    sales::ReserveChequeRequest reservation;
    reservation.chequeId = QStringLiteral("A");
    reservation.lines = {reserveLine};
    EXPECT_EQ(call<sales::ReserveChequeResponse>(*emulator, "sales", "reserveCheque", reservation)
                  .lines.value(0)
                  .qty,
              1.0);
    sales::UnreserveChequeRequest release;
    release.chequeId = QStringLiteral("A");
    EXPECT_EQ(call<sales::UnreserveChequeResponse>(*emulator, "sales", "unreserveCheque", release)
                  .chequeId,
              "A");
}

TEST_F(HttpFrontTest, RefusalsReachTheLibraryWithTheirCodeAndMessage) {
    using namespace vesk::loyalty;
    ProcessIdRequest id;
    id.discCardId = QStringLiteral("2775000000011");
    const QString token = call<ProcessIdResponse>(*emulator, "loyalty", "processId", id).token;
    ProcessPinRequest pin;
    pin.discCardId = id.discCardId;
    pin.token = token;
    call<ProcessPinResponse>(*emulator, "loyalty", "processPin", pin);
    CheckPinRequest check;
    check.discCardId = id.discCardId;
    check.token = token;
    check.pinCode = QStringLiteral("9999");
    EXPECT_EQ(
        libraryRefusal([&] { call<CheckPinResponse>(*emulator, "loyalty", "checkPin", check); }),
        std::make_pair(3003, std::string("Wrong PIN")));

    id.discCardId = QStringLiteral("2775000000028");
    const QString silver = call<ProcessIdResponse>(*emulator, "loyalty", "processId", id).token;
    AccountsEntry account;
    account.codeAccount = 1;
    account.requestAmount = 90;
    CardListEntry card;
    card.card = id.discCardId;
    card.accounts = {account};
    LinesEntry line;
    line.lineNum = 1;
    line.salesPrice = 1000;
    line.qty = 1;
    CalcAndReserveBonusPayRequest reserve;
    reserve.cardList = {card};
    reserve.lines = {line};
    reserve.dataId = QStringLiteral("B");
    reserve.token = silver;
    EXPECT_EQ(
        libraryRefusal([&] {
            call<CalcAndReserveBonusPayResponse>(*emulator, "loyalty", "calcAndReserveBonusPay",
                                                 reserve);
        }),
        std::make_pair(3005, std::string("Not enough bonuses: 90.00 asked for, 80.00 available")));

    CommitChequeRequest commit;
    commit.dataId = QStringLiteral("B");
    commit.totalAmount = 10;
    call<CommitChequeResponse>(*emulator, "loyalty", "commitCheque", commit);
    // The same cheque again: with the same body it gets the first answer, with
    // another body the emulator's refusal, with another guid the service's.
    EXPECT_EQ(call<CommitChequeResponse>(*emulator, "loyalty", "commitCheque", commit).dataId,
              QStringLiteral("B"));
    CommitChequeRequest changed = commit;
    changed.totalAmount = 20;
    EXPECT_EQ(libraryRefusal([&] {
                  call<CommitChequeResponse>(*emulator, "loyalty", "commitCheque", changed);
              }),
              std::make_pair(409, std::string("Cheque B was already sent to commitCheque with a "
                                              "different body: a repeat must be the same "
                                              "request")));
    CommitChequeRequest otherGuid = commit;
    otherGuid.guid = QStringLiteral("G-2");
    EXPECT_EQ(libraryRefusal([&] {
                  call<CommitChequeResponse>(*emulator, "loyalty", "commitCheque", otherGuid);
              }),
              std::make_pair(3006, std::string("Cheque B has already been committed")));
}

const char* const paths[] = {
    "/api/axapta/ExchangeData_Sales/itemInfo",
    "/api/axapta/ExchangeData_Sales/reserveCheque",
    "/api/axapta/ExchangeData_Sales/unreserveCheque",
    "/api/axapta/ExchangeData_Disc/discCalc",
    "/api/axapta/ExchangeData_Disc/discCalcPay",
    "/api/axapta/ExchangeData_Disc/getPublicityList",
    "/api/axapta/ExchangeData_Loyalty/processId",
    "/api/axapta/ExchangeData_Loyalty/processPin",
    "/api/axapta/ExchangeData_Loyalty/getCardBalance",
    "/api/axapta/ExchangeData_Loyalty/calcBonusAmount",
    "/api/axapta/ExchangeData_Loyalty/calcAndReserveBonusPay",
    "/api/axapta/ExchangeData_Loyalty/checkPin",
    "/api/axapta/ExchangeData_Loyalty/commitCheque",
    "/api/axapta/ExchangeData_Loyalty/getParkingInfo",
    "/api/axapta/ExchangeData_Loyalty/cashierAdditionalInfo",
    "/api/axapta/ExchangeData_Loyalty/chequeAdditionalInfo",
};

struct OddBody {
    const char* name;
    std::string body;
};

void PrintTo(const OddBody& body, std::ostream* out) {
    *out << body.name;
}

class OddBodyTest : public HttpFrontTest, public ::testing::WithParamInterface<OddBody> {};

TEST_P(OddBodyTest, GetsAJsonReplyFromEveryOperationAndNeverStopsTheServer) {
    for (const char* path : paths) {
        const Reply reply = post(path, GetParam().body);
        ASSERT_NE(reply.status, 0) << path << ": no reply";
        EXPECT_LT(reply.status, 500) << path << ": " << reply.raw;
        ASSERT_TRUE(reply.isObject) << path << ": " << reply.raw;
        if (reply.status != 200) {
            EXPECT_TRUE(reply.body.value("code").isDouble()) << path << ": " << reply.raw;
            EXPECT_TRUE(reply.body.value("userMsg").isString()) << path << ": " << reply.raw;
        }
    }
    EXPECT_EQ(post(salesPath("itemInfo"), R"({"barcode": "4601234000017"})").status, 200);
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, OddBodyTest,
    ::testing::Values(
        OddBody{"empty_object", "{}"},
        OddBody{"lists_of_the_wrong_kind",
                R"({"lines": 5, "cardList": "x", "payments": {"a": 1}, "publicities": 3})"},
        OddBody{"list_elements_of_the_wrong_kind",
                R"({"lines": [1, "a", null, [], {}], "cardList": [null, 7, {"accounts": 1}]})"},
        OddBody{"scalars_of_the_wrong_kind",
                R"({"chequeId": [], "dataId": {}, "token": 12, "discCardId": true,
                    "barcode": null, "pinCode": 4321, "parkingId": [1]})"},
        OddBody{"huge_numbers",
                R"({"chequeId": "H", "dataId": "H", "lines": [{"barcode": "4601234000017",
                    "qty": 1e308, "retailPrice": 1e308, "salesPrice": 1e308, "lineNum": 1e20}],
                    "payments": [{"amount": 1e308, "code": 1e30}], "totalAmount": 1e308})"},
        OddBody{"huge_negative_numbers",
                R"({"chequeId": "N", "dataId": "N", "lines": [{"barcode": "4601234000017",
                    "qty": -1e308, "retailPrice": -1e308, "salesPrice": -1e308,
                    "lineNum": -1e20}], "totalAmount": -1e308})"},
        OddBody{"huge_bonus_request",
                R"({"dataId": "Q", "token": "T000001", "cardList": [{"card": "2775000000028",
                    "accounts": [{"codeAccount": 1, "requestAmount": 1e308}]}],
                    "lines": [{"qty": 1, "salesPrice": 100}]})"},
        OddBody{"odd_strings",
                "{\"barcode\": \"\\u0000\\ud800\", \"chequeId\": \"\\u0000\", \"discCardId\": "
                "\"\\u00e9\\u4e2d\"}"},
        OddBody{"not_json", "not json"}, OddBody{"binary", std::string("\xff\xfe\x00\x01", 4)},
        OddBody{"json_null", "null"}, OddBody{"json_number", "12"},
        OddBody{"deep_nesting", std::string(5000, '[') + std::string(5000, ']')},
        OddBody{"deep_nesting_inside_an_object",
                "{\"lines\": " + std::string(2000, '[') + std::string(2000, ']') + "}"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(HttpFrontTest, CommitsRacingFromTwoTillsAreBookedOnce) {
    const std::string commit =
        R"({"dataId": "RACE", "totalAmount": 600, "cardList": [{"card": "2775000000028"}],
            "lines": [{"barCode": "4601234000031", "lineNum": 1, "qty": 2, "salesPrice": 300}]})";
    std::promise<void> go;
    const std::shared_future<void> start = go.get_future().share();
    const auto till = [&] {
        start.wait();
        return post(loyaltyPath("commitCheque"), commit);
    };
    std::future<Reply> first = std::async(std::launch::async, till);
    std::future<Reply> second = std::async(std::launch::async, till);
    go.set_value();
    // One commits, the other gets its answer.
    const Reply a = first.get();
    const Reply b = second.get();
    EXPECT_EQ(a.status, 200) << a.raw;
    EXPECT_EQ(b.status, 200) << b.raw;
    EXPECT_EQ(a.raw, b.raw);

    const Reply id = post(loyaltyPath("processId"), R"({"discCardId": "2775000000028"})");
    const std::string token = id.body.value("token").toString().toStdString();
    const Reply balance = post(loyaltyPath("getCardBalance"),
                               R"({"discCardId": "2775000000028", "token": ")" + token + "\"}");
    EXPECT_EQ(balance.body.value("balance").toDouble(), 86.0);
}

TEST_F(HttpFrontTest, ConcurrentTillsLeaveTheStockConsistent) {
    constexpr int tills = 4;
    constexpr int rounds = 10;
    std::vector<std::future<int>> results;
    for (int t = 0; t < tills; ++t)
        results.push_back(std::async(std::launch::async, [this, t] {
            int failures = 0;
            for (int r = 0; r < rounds; ++r) {
                const std::string cheque = "T" + std::to_string(t) + "-" + std::to_string(r);
                const Reply reserved = post(salesPath("reserveCheque"),
                                            R"({"chequeId": ")" + cheque +
                                                R"(", "lines": [{"barcode": "4601234000017",
                                                "sectionId": "HALL", "lineNum": 1, "qty": 3}]})");
                const Reply released =
                    post(salesPath("unreserveCheque"), R"({"chequeId": ")" + cheque + "\"}");
                failures += (reserved.status != 200) + (released.status != 200);
            }
            return failures;
        }));
    for (std::future<int>& result : results)
        EXPECT_EQ(result.get(), 0);
    // All 20 in the hall again: a cheque of 20 is reserved in full, one more is short.
    const Reply all = post(salesPath("reserveCheque"),
                           R"({"chequeId": "ALL", "lines": [{"barcode": "4601234000017",
                               "sectionId": "HALL", "lineNum": 1, "qty": 21}]})");
    ASSERT_EQ(all.status, 200) << all.raw;
    const QJsonObject line = all.body.value("lines").toArray().at(0).toObject();
    EXPECT_EQ(line.value("qty").toDouble(), 20.0);
    EXPECT_EQ(line.value("qtyWithoutReservation").toDouble(), 1.0);
}

} // namespace
} // namespace vesk::emulator::test
