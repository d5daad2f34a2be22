// A request that is not JSON: where it stops being JSON and what was expected there.

#include "InProcess.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vesk::cli::test {
namespace {

struct SyntaxRow {
    const char* name;
    const char* request;
    const char* err; // the whole of standard error
};

void PrintTo(const SyntaxRow& row, std::ostream* out) {
    *out << row.name;
}

class MalformedRequest : public testing::TestWithParam<SyntaxRow> {};

TEST_P(MalformedRequest, SaysWhereAndWhatWasExpected) {
    const CliRun run =
        runInProcess({QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                      QString::fromUtf8(GetParam().request)});
    EXPECT_EQ(run.exitCode, 64);
    EXPECT_EQ(run.out, QString());
    EXPECT_EQ(run.err, QString::fromUtf8(GetParam().err));
}

INSTANTIATE_TEST_SUITE_P(
    Cli, MalformedRequest,
    testing::Values(
        SyntaxRow{"MissingValue", R"({"barcode": })",
                  "vesk: error: the request in the argument is not valid JSON: line 1, column 13: "
                  "expected a value (object, list, \"text\", number, true, false or null)\n"
                  "  {\"barcode\": }\n"
                  "              ^\n"},
        SyntaxRow{"MisspeltLiteral", R"({"barcode": tru})",
                  "vesk: error: the request in the argument is not valid JSON: line 1, column 13: "
                  "expected a value (object, list, \"text\", number, true, false or null)\n"
                  "  {\"barcode\": tru}\n"
                  "              ^\n"},
        SyntaxRow{"TrailingComma", R"({"barcode": "1",})",
                  "vesk: error: the request in the argument is not valid JSON: line 1, column 17: "
                  "expected a member name in double quotes\n"
                  "  {\"barcode\": \"1\",}\n"
                  "                  ^\n"},
        SyntaxRow{"UnterminatedString", R"({"barcode": "4601})",
                  "vesk: error: the request in the argument is not valid JSON: line 1, column 19: "
                  "expected '\"' to close the text\n"
                  "  {\"barcode\": \"4601}\n"
                  "                    ^\n"},
        SyntaxRow{"MissingColon", R"({"barcode" "1"})",
                  "vesk: error: the request in the argument is not valid JSON: line 1, column 12: "
                  "expected ':' after the member name\n"
                  "  {\"barcode\" \"1\"}\n"
                  "             ^\n"},
        SyntaxRow{"MissingComma", R"({"barcode": "1" "sectionId": "A"})",
                  "vesk: error: the request in the argument is not valid JSON: line 1, column 17: "
                  "expected ',' or '}' after the member's value\n"
                  "  {\"barcode\": \"1\" \"sectionId\": \"A\"}\n"
                  "                  ^\n"},
        SyntaxRow{"GarbageAfterTheObject", R"({"barcode": "1"} x)",
                  "vesk: error: the request in the argument is not valid JSON: line 1, column 18: "
                  "expected the end of the input after the object\n"
                  "  {\"barcode\": \"1\"} x\n"
                  "                   ^\n"},
        SyntaxRow{"ErrorOnLine3", "{\n    \"sectionId\": \"A\",\n    \"barcode\" \"1\"\n}",
                  "vesk: error: the request in the argument is not valid JSON: line 3, column 15: "
                  "expected ':' after the member name\n"
                  "      \"barcode\" \"1\"\n"
                  "                ^\n"}),
    [](const testing::TestParamInfo<SyntaxRow>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::cli::test
