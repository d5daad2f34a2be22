// The request body's JSON text is byte for byte what Qt's writer makes of
// the same map: every kind of value a body holds, every escape, every
// number form, and the types left to Qt.

#include <vesk/json/CompactJson.h>

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariantHash>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>

namespace vesk {
namespace {

QByteArray qtJson(const QVariantMap& map) {
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
}

QString units(std::initializer_list<char16_t> list) {
    QString text;
    for (char16_t unit : list)
        text.append(QChar(unit));
    return text;
}

struct WriterRow {
    const char* name;
    QVariant value;
    bool direct; // written by the direct writer, not handed to Qt
};

void PrintTo(const WriterRow& row, std::ostream* out) {
    *out << row.name;
}

class CompactJsonTest : public testing::TestWithParam<WriterRow> {};

TEST_P(CompactJsonTest, IsWhatQtWrites) {
    const WriterRow& row = GetParam();
    const QVariantMap map{{QStringLiteral("v"), row.value},
                          {QStringLiteral("list"), QVariantList{row.value, row.value}},
                          {QStringLiteral("map"), QVariantMap{{QStringLiteral("k"), row.value}}}};

    EXPECT_EQ(json::compactJson(map).toStdString(), qtJson(map).toStdString());
    QByteArray direct;
    EXPECT_EQ(json::writeCompactJson(map, direct), row.direct);
}

const double nan = std::numeric_limits<double>::quiet_NaN();
const double inf = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Values, CompactJsonTest,
    testing::Values(
        WriterRow{"Invalid", QVariant(), true},
        WriterRow{"JsonNull", QVariant::fromValue(nullptr), true}, WriterRow{"True", true, true},
        WriterRow{"False", false, true}, WriterRow{"Zero", 0, true},
        WriterRow{"IntMin", std::numeric_limits<int>::min(), true},
        WriterRow{"UIntMax", std::numeric_limits<uint>::max(), true},
        WriterRow{"LongLongMax", std::numeric_limits<qlonglong>::max(), true},
        WriterRow{"LongLongMin", std::numeric_limits<qlonglong>::min(), true},
        WriterRow{"ULongLongSmall", qulonglong(42), true},
        WriterRow{"ULongLongBeyondInt64", std::numeric_limits<qulonglong>::max(), true},
        WriterRow{"IntegralDouble", 1200.0, true}, WriterRow{"Fraction", 0.1, true},
        WriterRow{"Amount", 2752.5, true}, WriterRow{"NegativeZero", -0.0, true},
        WriterRow{"TwoTo53", 9007199254740992.0, true},
        WriterRow{"BeyondTwoTo53", 9007199254740994.0, true}, WriterRow{"Huge", 1e21, true},
        WriterRow{"Large", 1.5e300, true}, WriterRow{"Tiny", 1e-7, true},
        WriterRow{"Denormal", 5e-324, true}, WriterRow{"NaN", nan, true},
        WriterRow{"Infinity", inf, true}, WriterRow{"MinusInfinity", -inf, true},
        WriterRow{"EmptyText", QString(), true},
        WriterRow{"Text", QStringLiteral("CHQ-1001"), true},
        WriterRow{"QuoteAndBackslash", QStringLiteral("a\"b\\c/d"), true},
        WriterRow{"ShortEscapes", QStringLiteral("\b\f\n\r\t"), true},
        WriterRow{"OtherControls", units({0x0, 0x1, 0x1f, 0x7f}), true},
        WriterRow{"Latin", QStringLiteral("Café, 5% off"), true},
        WriterRow{"Cyrillic", QStringLiteral("Анна Петрова"), true},
        WriterRow{"SurrogatePair", units({0xd83d, 0xde00}), true},
        WriterRow{"LoneHighSurrogate", units({'a', 0xd83d, 'b'}), true},
        WriterRow{"LoneLowSurrogate", units({0xde00}), true},
        WriterRow{"ReversedPair", units({0xde00, 0xd83d}), true},
        WriterRow{"HighSurrogateAtEnd", units({'x', 0xdbff}), true},
        WriterRow{"NonCharacter", units({0xfffe, 0xffff}), true},
        WriterRow{"StringList", QStringList{QStringLiteral("a"), QStringLiteral("\"")}, true},
        WriterRow{"EmptyList", QVariantList(), true}, WriterRow{"EmptyMap", QVariantMap(), true},
        WriterRow{"Nested",
                  QVariantList{QVariantMap{{QStringLiteral("lines"), QVariantList{1, 2.5, "x"}}}},
                  true},
        // Left to Qt's own conversion.
        WriterRow{"Hash", QVariantHash{{QStringLiteral("a"), 1}}, false},
        WriterRow{"Bytes", QByteArray("\x01\xff", 2), false},
        WriterRow{"DateTime", QDateTime(QDate(2026, 11, 23), QTime(10, 0), Qt::UTC), false},
        WriterRow{"Float", 0.1f, false}, WriterRow{"Char", QChar(u'x'), false}),
    [](const testing::TestParamInfo<WriterRow>& info) { return std::string(info.param.name); });

TEST(CompactJson, KeysAreEscapedAndInTheMapsOrder) {
    const QVariantMap map{{QStringLiteral("b\"\n"), 1},
                          {QStringLiteral("a"), 2},
                          {units({0xd800}), 3},
                          {QStringLiteral("Ä"), 4}};
    EXPECT_EQ(json::compactJson(map).toStdString(), qtJson(map).toStdString());
}

TEST(CompactJson, EmptyMapIsAnEmptyObject) {
    EXPECT_EQ(json::compactJson(QVariantMap()), QByteArray("{}"));
}

} // namespace
} // namespace vesk
