// Durations on the command line: a unit, or a bare number in the option's own unit.

#include "EmulatorFixture.h"
#include "InProcess.h"

#include <cli/Duration.h>

#include <emulator/AdminClient.h>

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

namespace vesk::cli::test {
namespace {

struct DurationRow {
    const char* name;
    const char* text;
    BareUnit bare;
    std::optional<qint64> ms; // nullopt: refused
    const char* error;        // when refused
};

void PrintTo(const DurationRow& row, std::ostream* out) {
    *out << row.name;
}

class DurationParser : public testing::TestWithParam<DurationRow> {};

TEST_P(DurationParser, ReadsTheTextAsTheRowSays) {
    const DurationRow& row = GetParam();
    QString error;
    const std::optional<qint64> ms =
        parseDuration(QString::fromUtf8(row.text), row.bare, 1, 3600000, &error);
    EXPECT_EQ(ms, row.ms);
    EXPECT_EQ(error, QString::fromUtf8(row.error));
}

constexpr BareUnit ms = BareUnit::Milliseconds;
constexpr BareUnit s = BareUnit::Seconds;

INSTANTIATE_TEST_SUITE_P(
    Cli, DurationParser,
    testing::Values(
        DurationRow{"BareNumberIsMilliseconds", "1500", ms, 1500, ""},
        DurationRow{"BareNumberIsSecondsForBench", "30", s, 30000, ""},
        DurationRow{"Milliseconds", "1500ms", ms, 1500, ""},
        DurationRow{"MillisecondsForBench", "1500ms", s, 1500, ""},
        DurationRow{"Seconds", "2s", ms, 2000, ""},
        DurationRow{"FractionOfSeconds", "1.5s", ms, 1500, ""},
        DurationRow{"BareFractionOfSecondsForBench", "2.5", s, 2500, ""},
        DurationRow{"Largest", "3600s", ms, 3600000, ""},
        DurationRow{"BareFractionOfAMillisecond", "1.5", ms, std::nullopt,
                    "\"1.5\" is not a whole number of milliseconds"},
        DurationRow{"FractionOfAMillisecond", "0.5ms", s, std::nullopt,
                    "\"0.5ms\" is not a whole number of milliseconds"},
        DurationRow{"Negative", "-1", ms, std::nullopt,
                    "\"-1\" is not a duration: write 1500ms, 2s or 1.5s (a bare number counts "
                    "milliseconds), from 1ms to 3600s"},
        DurationRow{"Hours", "2h", s, std::nullopt,
                    "\"2h\" is not a duration: write 1500ms, 2s or 1.5s (a bare number counts "
                    "seconds), from 1ms to 3600s"},
        DurationRow{"Word", "abc", ms, std::nullopt,
                    "\"abc\" is not a duration: write 1500ms, 2s or 1.5s (a bare number counts "
                    "milliseconds), from 1ms to 3600s"},
        DurationRow{"Empty", "", ms, std::nullopt,
                    "\"\" is not a duration: write 1500ms, 2s or 1.5s (a bare number counts "
                    "milliseconds), from 1ms to 3600s"},
        DurationRow{"SpaceBeforeUnit", "2 s", ms, std::nullopt,
                    "\"2 s\" is not a duration: write 1500ms, 2s or 1.5s (a bare number counts "
                    "milliseconds), from 1ms to 3600s"},
        DurationRow{"Zero", "0", ms, std::nullopt,
                    "\"0\" is out of range: a duration from 1ms to 3600s"},
        DurationRow{"OverAnHour", "3601s", ms, std::nullopt,
                    "\"3601s\" is out of range: a duration from 1ms to 3600s"}),
    [](const testing::TestParamInfo<DurationRow>& info) { return std::string(info.param.name); });

TEST(DurationOptions, EveryDurationOptionTakesUnits) {
    QString error;
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                      QStringLiteral("--timeout"), QStringLiteral("2h")},
          QStringList{QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                      QStringLiteral("--connect-timeout"), QStringLiteral("2h")},
          QStringList{QStringLiteral("bench"), QStringLiteral("--scenario"), QStringLiteral("sale"),
                      QStringLiteral("--duration"), QStringLiteral("2h")}}) {
        const CliRun run = runInProcess(arguments);
        EXPECT_EQ(run.exitCode, 64) << run.err.toStdString();
        EXPECT_TRUE(run.err.startsWith(QStringLiteral("vesk: error: --")) &&
                    run.err.contains(QStringLiteral(": \"2h\" is not a duration")))
            << run.err.toStdString();
    }
}

class DurationOption : public EmulatorTest {};

TEST_F(DurationOption, TimeoutWithAUnitEndsAHangingCallInTime) {
    const emulator::AdminClient admin(QStringLiteral("http://127.0.0.1:%1").arg(port()));
    ASSERT_EQ(admin.addFault(QStringLiteral("itemInfo:hang=10000")).kind,
              emulator::AdminClient::Result::Kind::Done);
    QElapsedTimer timer;
    timer.start();
    const VeskRun run = runVesk(QStringList{QStringLiteral("call"), QStringLiteral("sales"),
                                            QStringLiteral("itemInfo"), QStringLiteral("{}"),
                                            QStringLiteral("--timeout"), QStringLiteral("0.5s")} +
                                urlOptions());
    EXPECT_EQ(run.exitCode, 28) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.contains(QStringLiteral("within 500 ms"))) << run.err.toStdString();
    EXPECT_LT(timer.elapsed(), 8000);
}

} // namespace
} // namespace vesk::cli::test
