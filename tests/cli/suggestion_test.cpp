// "Did you mean": the name that a mistyped service, operation, record or key meant.

#include "InProcess.h"

#include <requestcheck/Suggestion.h>

#include <gtest/gtest.h>

#include <ostream>

namespace vesk::cli::test {
namespace {

struct SuggestionRow {
    const char* name;
    const char* word;
    QStringList candidates;
    const char* closest; // empty: none is close enough
};

void PrintTo(const SuggestionRow& row, std::ostream* out) {
    *out << row.name;
}

class ClosestName : public testing::TestWithParam<SuggestionRow> {};

TEST_P(ClosestName, IsTheOneTheRowExpects) {
    const SuggestionRow& row = GetParam();
    EXPECT_EQ(check::closestName(QString::fromUtf8(row.word), row.candidates),
              QString::fromUtf8(row.closest));
}

const QStringList services{QStringLiteral("disc"), QStringLiteral("loyalty"),
                           QStringLiteral("sales")};
const QStringList salesOperations{QStringLiteral("itemInfo"), QStringLiteral("reserveCheque"),
                                  QStringLiteral("unreserveCheque")};
const QStringList itemInfoKeys{QStringLiteral("sectionId"), QStringLiteral("barcode")};

INSTANTIATE_TEST_SUITE_P(
    Cli, ClosestName,
    testing::Values(SuggestionRow{"LetterCaseFirst", "barCode", itemInfoKeys, "barcode"},
                    SuggestionRow{"OneLetterMissing", "itemInf", salesOperations, "itemInfo"},
                    SuggestionRow{"PluralOfAService", "sale", services, "sales"},
                    SuggestionRow{"OneLetterTooMany", "barcodes", itemInfoKeys, "barcode"},
                    SuggestionRow{"TwoEditsInALongName", "sectoinID", itemInfoKeys, "sectionId"},
                    SuggestionRow{"NothingClose", "price", itemInfoKeys, ""},
                    SuggestionRow{"TwoEditsInAShortNameAreTooMany", "dsic", services, ""},
                    SuggestionRow{"AnExactNameNeedsNoSuggestion", "sales", services, ""},
                    SuggestionRow{"EmptyWord", "", services, ""}),
    [](const testing::TestParamInfo<SuggestionRow>& info) { return std::string(info.param.name); });

struct MistypedRow {
    const char* name;
    QStringList arguments;
    const char* err; // the whole of standard error
};

void PrintTo(const MistypedRow& row, std::ostream* out) {
    *out << row.name;
}

class MistypedName : public testing::TestWithParam<MistypedRow> {};

TEST_P(MistypedName, IsNamedWithWhatItProbablyMeant) {
    const MistypedRow& row = GetParam();
    const CliRun run = runInProcess(row.arguments);
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.err, QString::fromUtf8(row.err));
}

INSTANTIATE_TEST_SUITE_P(
    Cli, MistypedName,
    testing::Values(
        MistypedRow{"Operation",
                    {QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInf")},
                    "vesk: error: unknown operation \"itemInf\" of service sales (its operations "
                    "are itemInfo, reserveCheque, unreserveCheque); did you mean itemInfo?\n"
                    "Try 'vesk help call' for more information.\n"},
        MistypedRow{"Service",
                    {QStringLiteral("call"), QStringLiteral("sale"), QStringLiteral("itemInfo")},
                    "vesk: error: unknown service \"sale\" (the services are disc, loyalty, "
                    "sales); did you mean sales?\n"
                    "Try 'vesk help call' for more information.\n"},
        MistypedRow{"Record",
                    {QStringLiteral("record"), QStringLiteral("disc::DiscCalcReqest")},
                    "vesk: error: no record named \"disc::DiscCalcReqest\"; did you mean "
                    "disc::DiscCalcRequest?\n"
                    "Try 'vesk help record' for more information.\n"},
        MistypedRow{"QualifiedRecord",
                    {QStringLiteral("record"), QStringLiteral("vesk::sales::itemInfoRequest")},
                    "vesk: error: no record named \"vesk::sales::itemInfoRequest\"; did you mean "
                    "vesk::sales::ItemInfoRequest?\n"
                    "Try 'vesk help record' for more information.\n"},
        MistypedRow{"Command",
                    {QStringLiteral("cal")},
                    "vesk: error: unknown command \"cal\"; did you mean call?\n"
                    "Try 'vesk --help' for more information.\n"},
        MistypedRow{"NothingClose",
                    {QStringLiteral("record"), QStringLiteral("Receipt")},
                    "vesk: error: no record named \"Receipt\"\n"
                    "Try 'vesk help record' for more information.\n"}),
    [](const testing::TestParamInfo<MistypedRow>& info) { return std::string(info.param.name); });

TEST(MistypedKey, IsWarnedAboutWithTheMemberItProbablyMeant) {
    // --strict: the check runs, nothing is sent.
    const CliRun run = runInProcess(
        {QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
         QStringLiteral(R"({"barCode": "4601234000017"})"), QStringLiteral("--strict")});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.err,
              QStringLiteral("vesk: error: $.barCode names no member of "
                             "vesk::sales::ItemInfoRequest; did you mean barcode?\n"
                             "vesk: error: 1 problem in the request of "
                             "vesk::sales::ItemInfoRequest; nothing was sent (--strict)\n"));
}

} // namespace
} // namespace vesk::cli::test
