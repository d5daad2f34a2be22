// A reply body is read into exactly the map that Qt's reader gives, for every
// form of number, string, duplicate and broken document, and the direct
// reader takes the common replies itself.

#include "support/SameVariant.h"

#include <vesk/json/ReplyJson.h>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace vesk {
namespace {

using Shape = json::Reply::Shape;

struct ReaderRow {
    const char* name;
    QByteArray body;
    Shape shape;
    bool direct; // read by the direct reader, not handed to Qt
};

void PrintTo(const ReaderRow& row, std::ostream* out) {
    *out << row.name;
}

class ReplyJsonTest : public testing::TestWithParam<ReaderRow> {};

TEST_P(ReplyJsonTest, IsWhatQtReads) {
    const ReaderRow& row = GetParam();
    const json::Reply qt = json::readReplyWithQt(row.body);

    const json::Reply read = json::readReply(row.body);

    EXPECT_TRUE(test::sameVariant(read.object, qt.object));
    EXPECT_EQ(read.shape, qt.shape);
    EXPECT_EQ(read.shape, row.shape);
    json::Reply direct;
    EXPECT_EQ(json::readReplyDirectly(row.body, direct), row.direct && json::directReaderBuilt());
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, ReplyJsonTest,
    testing::Values(
        ReaderRow{"Object", R"({"chequeId":"CHQ-1","lines":[{"lineNum":1,"qty":2.5}],"ok":true})",
                  Shape::Object, true},
        ReaderRow{"Spaces", " \n{ \"a\" : [ 1 , null , false ] }\r\n\t", Shape::Object, true},
        ReaderRow{"Integer", R"({"a":17})", Shape::Object, true},
        ReaderRow{"NegativeZero", R"({"a":-0})", Shape::Object, true},
        ReaderRow{"NegativeZeroFraction", R"({"a":-0.0})", Shape::Object, true},
        ReaderRow{"WholeFraction", R"({"a":100.0})", Shape::Object, true},
        ReaderRow{"Exponent", R"({"a":1E2,"b":1e-2})", Shape::Object, true},
        ReaderRow{"Int64Max", R"({"a":9223372036854775807})", Shape::Object, true},
        ReaderRow{"Int64Min", R"({"a":-9223372036854775808})", Shape::Object, true},
        ReaderRow{"TwoTo63", R"({"a":9223372036854775808})", Shape::Object, true},
        ReaderRow{"TwoTo53Plus1", R"({"a":9007199254740993})", Shape::Object, true},
        ReaderRow{"TwoTo53Plus1AsFraction", R"({"a":9007199254740993.0})", Shape::Object, true},
        ReaderRow{"UInt64Max", R"({"a":18446744073709551615})", Shape::Object, true},
        ReaderRow{"BeyondUInt64", R"({"a":123456789012345678901})", Shape::Object, false},
        ReaderRow{"Fraction", R"({"a":2752.5,"b":0.1})", Shape::Object, true},
        ReaderRow{"Denormal", R"({"a":5e-324})", Shape::Object, true},
        ReaderRow{"SmallestNormal", R"({"a":2.2250738585072011e-308})", Shape::Object, true},
        ReaderRow{"Underflow", R"({"a":1e-400})", Shape::NotJson, false},
        ReaderRow{"Overflow", R"({"a":1e400})", Shape::NotJson, false},
        ReaderRow{"DuplicateKeys", R"({"a":1,"b":0,"a":2})", Shape::Object, true},
        ReaderRow{"Escapes", R"({"a":"\"\\\/\b\f\n\r\t\u00e9\u0000x"})", Shape::Object, true},
        ReaderRow{"SurrogatePair", R"({"a":"\ud83d\ude00"})", Shape::Object, true},
        ReaderRow{"LoneSurrogate", R"({"a":"\ud800"})", Shape::Object, false},
        ReaderRow{"Utf8", "{\"name\":\"\xd0\x90\xd0\xbd\xd0\xbd\xd0\xb0\"}", Shape::Object, true},
        ReaderRow{"InvalidUtf8", "{\"a\":\"\xff\xfe\"}", Shape::NotJson, false},
        ReaderRow{"ByteOrderMark", "\xef\xbb\xbf{\"a\":1}", Shape::Object, false},
        ReaderRow{"Nested", R"({"a":{"b":{"c":[[[]]]}}})", Shape::Object, true},
        ReaderRow{"EmptyObject", "{}", Shape::Object, true},
        ReaderRow{"Array", "[1,2]", Shape::Array, true},
        ReaderRow{"Scalar", "5", Shape::NotJson, false},
        ReaderRow{"String", R"("s")", Shape::NotJson, false},
        ReaderRow{"Empty", "", Shape::Empty, false},
        ReaderRow{"Html", "<html>502</html>", Shape::NotJson, false},
        ReaderRow{"Cut", R"({"a":[1,2)", Shape::NotJson, false},
        ReaderRow{"TrailingGarbage", R"({"a":1}x)", Shape::NotJson, false},
        ReaderRow{"TwoDocuments", R"({"a":1}{"b":2})", Shape::NotJson, false},
        ReaderRow{"LeadingZero", R"({"a":01})", Shape::NotJson, false},
        ReaderRow{"TrailingComma", R"({"a":1,})", Shape::NotJson, false},
        ReaderRow{"NaN", R"({"a":NaN})", Shape::NotJson, false},
        ReaderRow{"DeepNesting", QByteArray(300, '[') + QByteArray(300, ']'), Shape::Array, false}),
    [](const testing::TestParamInfo<ReaderRow>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk
