// The request body's JSON text is byte for byte what Qt's writer makes of
// the same map: every kind of value a body holds, every escape, every
// number form, and the types left to Qt.

#include <vesk/json/CompactJson.h>

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariantHash>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

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
        WriterRow{"IntegralDouble", 1200.0, true}, WriterRow{"HundredThousand", 100000.0, true},
        WriterRow{"MinusNineTimesTenTo15", -9e15, true}, WriterRow{"TenTo16", 1e16, true},
        WriterRow{"Fraction", 0.1, true}, WriterRow{"Amount", 2752.5, true},
        WriterRow{"NegativeZero", -0.0, true}, WriterRow{"TwoTo53", 9007199254740992.0, true},
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

// Compares the writer with Qt's on `count` doubles, `valueAt(i)` each, a
// few thousand to a body; on a difference, names the first double that
// differs and both texts of it.
template <class ValueAt>
testing::AssertionResult writesEveryDoubleAsQt(qint64 count, ValueAt valueAt) {
    constexpr qint64 batch = 8192;
    QVariantList list;
    for (qint64 from = 0; from < count; from += batch) {
        list.clear();
        for (qint64 i = from; i < std::min(count, from + batch); ++i)
            list.append(valueAt(i));
        const QVariantMap body{{QStringLiteral("v"), list}};
        if (json::compactJson(body) == qtJson(body))
            continue;
        for (const QVariant& value : std::as_const(list)) {
            const QVariantMap one{{QStringLiteral("v"), value}};
            const QByteArray ours = json::compactJson(one);
            const QByteArray qts = qtJson(one);
            if (ours != qts) {
                char text[32];
                std::snprintf(text, sizeof text, "%.17g", value.toDouble());
                return testing::AssertionFailure() << text << " is written " << ours.constData()
                                                   << ", Qt writes " << qts.constData();
            }
        }
    }
    return testing::AssertionSuccess();
}

// A sanitizer build slows Qt's writer and ours tenfold; it looks for memory
// errors, which every sixteenth number finds as well as all of them. The
// plain build compares them all.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr qint64 sweepStride = 16;
#else
constexpr qint64 sweepStride = 1;
#endif

TEST(CompactJsonDoubles, EveryWholeNumberUpToTenMillionIsWrittenAsQtWritesIt) {
    constexpr qint64 limit = 10'000'000;
    EXPECT_TRUE(writesEveryDoubleAsQt(2 * limit / sweepStride + 1,
                                      [](qint64 i) { return double(i * sweepStride - limit); }));
}

TEST(CompactJsonDoubles, EveryDigitTimesAPowerOfTenIsWrittenAsQtWritesIt) {
    // 1..9 x 10^0..10^18, both signs: 100000 and 9e15 among them.
    std::vector<double> values;
    for (int digit = 1; digit <= 9; ++digit) {
        for (int exponent = 0; exponent <= 18; ++exponent) {
            const double value = digit * std::pow(10.0, exponent);
            values.push_back(value);
            values.push_back(-value);
        }
    }
    EXPECT_TRUE(writesEveryDoubleAsQt(qint64(values.size()),
                                      [&values](qint64 i) { return values[std::size_t(i)]; }));
}

TEST(CompactJsonDoubles, PowersOfTwoAndTheirNeighboursAroundTwoTo53And63AreWrittenAsQtWritesThem) {
    std::vector<double> values;
    for (int exponent : {52, 53, 54, 62, 63, 64}) {
        const double power = std::ldexp(1.0, exponent);
        for (double value : {power, std::nextafter(power, 0.0), std::nextafter(power, 2 * power)}) {
            for (double whole = -2; whole <= 2; ++whole) {
                values.push_back(value + whole);
                values.push_back(-(value + whole));
            }
        }
    }
    EXPECT_TRUE(writesEveryDoubleAsQt(qint64(values.size()),
                                      [&values](qint64 i) { return values[std::size_t(i)]; }));
}

TEST(CompactJsonDoubles, RandomBitPatternsAreWrittenAsQtWritesThem) {
    std::mt19937_64 bits(20261124); // fixed: a failure repeats
    EXPECT_TRUE(writesEveryDoubleAsQt(3'000'000, [&bits](qint64) {
        double value;
        const quint64 pattern = bits();
        std::memcpy(&value, &pattern, sizeof value);
        return value;
    }));
}

TEST(CompactJson, AWholeNumberAmountIsWrittenWithAllItsDigits) {
    const QVariantMap line{{QStringLiteral("retailPrice"), 100000.0},
                           {QStringLiteral("sum"), -9e15}};
    EXPECT_EQ(json::compactJson(line),
              QByteArray("{\"retailPrice\":100000,\"sum\":-9000000000000000}"));
}

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
