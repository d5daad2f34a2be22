// What `vesk call` reports of a request object before it fills the record.

#include <requestcheck/RequestCheck.h>

#include <vesk/disc/DiscCalcRequest.h>
#include <vesk/loyalty/CommitChequeRequest.h>
#include <vesk/sales/ReserveChequeRequest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace vesk::cli::test {
namespace {

struct CheckCase {
    const char* name;
    const QMetaObject* record;
    const char* request;
    std::vector<std::pair<const char*, const char*>> problems; // path, problem
};

void PrintTo(const CheckCase& row, std::ostream* out) {
    *out << row.name;
}

class RequestCheckTest : public testing::TestWithParam<CheckCase> {};

TEST_P(RequestCheckTest, ReportsEveryKeyAndValueTheRecordWouldDropOrChange) {
    const CheckCase& row = GetParam();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(row.request, &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError) << row.request;
    QList<check::RequestProblem> expected;
    for (const auto& [path, problem] : row.problems)
        expected.append({QString::fromUtf8(path), QString::fromUtf8(problem)});
    const QList<check::RequestProblem> found =
        check::checkRequest(document.object().toVariantMap(), *row.record);
    QStringList shown;
    for (const check::RequestProblem& problem : found)
        shown << problem.text();
    EXPECT_EQ(found, expected) << shown.join(QLatin1Char('\n')).toStdString();
}

const QMetaObject* const discCalc = &disc::DiscCalcRequest::staticMetaObject;
const QMetaObject* const reserve = &sales::ReserveChequeRequest::staticMetaObject;
const QMetaObject* const commit = &loyalty::CommitChequeRequest::staticMetaObject;

INSTANTIATE_TEST_SUITE_P(
    Requests, RequestCheckTest,
    testing::Values(
        CheckCase{"WellFormedRequestHasNoProblem",
                  discCalc,
                  R"({"chequeId": "C1", "salesChannel": 2, "publicities": ["P1"],
                      "lines": [{"barcode": "4601234000017", "lineNum": 1, "qty": 1.5,
                                 "retailPrice": 1200, "colorId": "red", "discounts": []}]})",
                  {}},
        CheckCase{
            "NumberForTextAndTextForAList",
            discCalc,
            R"({"chequeId": 17, "lines": "abc"})",
            {{"$.chequeId", "17 is not text"}, {"$.lines", "\"abc\" is not a list of objects"}}},
        CheckCase{"MisspeltKeyInsideALine",
                  discCalc,
                  R"({"lines": [{"barcode": "1", "quantity": 2}, {"barcode": "2", "qty": 1}]})",
                  {{"$.lines[0].quantity", "names no member of vesk::disc::LinesEntryRequest"}}},
        CheckCase{"UnknownTopLevelKey",
                  reserve,
                  R"({"chequeID": "R-1"})",
                  {{"$.chequeID", "names no member of vesk::sales::ReserveChequeRequest; did you "
                                  "mean chequeId?"}}},
        CheckCase{"FractionAndOversizedIntegerForAnInteger",
                  discCalc,
                  R"({"salesChannel": 2.5, "lines": [{"lineNum": 4294967296}]})",
                  {{"$.lines[0].lineNum", "4294967296 is not a 32-bit integer"},
                   {"$.salesChannel", "2.5 is not a 32-bit integer"}}},
        CheckCase{
            "TextForANumberAndAListForText",
            discCalc,
            R"({"storeId": ["S01"], "lines": [{"qty": "2"}]})",
            {{"$.lines[0].qty", "\"2\" is not a number"}, {"$.storeId", "a list is not text"}}},
        CheckCase{"ObjectForAListAndNullForAnything",
                  discCalc,
                  R"({"cardList": {"discCardId": "1"}, "chequeId": null})",
                  {{"$.cardList", "an object is not a list of objects"},
                   {"$.chequeId", "null is not text"}}},
        CheckCase{"ElementsOfListsAreCheckedOneByOne",
                  discCalc,
                  R"({"publicities": ["P1", 2], "lines": [5, {"discounts": [{"amount": true}]}]})",
                  {{"$.lines[0]", "5 is not an object"},
                   {"$.lines[1].discounts[0].amount",
                    "names no member of vesk::disc::DiscountsEntryRequest"},
                   {"$.publicities[1]", "2 is not text"}}},
        CheckCase{"OptionalMembersAreCheckedWhenPresent",
                  commit,
                  R"({"lines": [{"barCode": "1", "extraDataLine": "x"}]})",
                  {{"$.lines[0].extraDataLine", "\"x\" is not a list of objects"}}}),
    [](const testing::TestParamInfo<CheckCase>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::cli::test
