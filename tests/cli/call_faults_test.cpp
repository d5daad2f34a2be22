// What `vesk call` makes of each fault of the emulator: the exit status (by
// kind of failure, curl's number where curl has one) and the first words a
// person reads.

#include "EmulatorFixture.h"

#include <emulator/AdminClient.h>

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <ostream>

namespace vesk::cli::test {
namespace {

struct FaultRow {
    const char* name;
    const char* fault;
    int exitCode;
    const char* errStart; // of standard error, after any warnings of the library
};

void PrintTo(const FaultRow& row, std::ostream* out) {
    *out << row.name;
}

class CallFaults : public EmulatorTest, public testing::WithParamInterface<FaultRow> {};

TEST_P(CallFaults, ExitWithTheStatusTheEmulatorsReadmeGives) {
    const FaultRow& row = GetParam();
    const emulator::AdminClient admin(QStringLiteral("http://127.0.0.1:%1").arg(port()));
    ASSERT_EQ(admin.addFault(QString::fromUtf8(row.fault)).kind,
              emulator::AdminClient::Result::Kind::Done);

    QElapsedTimer timer;
    timer.start();
    const VeskRun run = runVesk(QStringList{QStringLiteral("call"), QStringLiteral("sales"),
                                            QStringLiteral("itemInfo"),
                                            QStringLiteral(R"({"barcode": "4601234000017"})"),
                                            QStringLiteral("--timeout"), QStringLiteral("800")} +
                                urlOptions());

    EXPECT_EQ(run.exitCode, row.exitCode) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.contains(QString::fromUtf8(row.errStart))) << run.err.toStdString();
    EXPECT_LT(timer.elapsed(), 10000);
}

INSTANTIATE_TEST_SUITE_P(
    EveryFault, CallFaults,
    testing::Values(
        FaultRow{"Error", "itemInfo:error=503,code=42,msg=Back office busy", 2,
                 "vesk: error: service: HTTP 503, code 42: Back office busy"},
        FaultRow{"Delay", "itemInfo:delay=100", 0, ""},
        FaultRow{"DrawnDelay", "itemInfo:delay=uniform:50-150,seed=3", 0, ""},
        FaultRow{"DrawnDelayPastTheTimeout", "itemInfo:delay=lognormal:5000,sigma=0.1", 28,
                 "vesk: error: network: No reply from"},
        FaultRow{"Hang", "itemInfo:hang=5000", 28, "vesk: error: network: No reply from"},
        FaultRow{"NotJson", "itemInfo:notjson", 4,
                 "vesk: error: the reply is not a JSON object: HTTP 200"},
        FaultRow{"Truncate", "itemInfo:truncate", 56,
                 "vesk: error: network: Incomplete reply from"},
        FaultRow{"Oversize", "itemInfo:oversize=5M", 63, "exceeds the limit of 4194304 bytes"},
        FaultRow{"DribbleWithinTheTimeout", "itemInfo:dribble=200,chunks=2", 0, ""},
        FaultRow{"DribblePastTheTimeout", "itemInfo:dribble=10000,chunks=5", 56,
                 "vesk: error: network: Incomplete reply from"},
        FaultRow{"StallAfterTheHeaders", "itemInfo:stall=10000", 56,
                 "vesk: error: network: Incomplete reply from"},
        FaultRow{"Reset", "itemInfo:reset", 56,
                 "vesk: error: network: The connection to http://127.0.0.1:"}),
    [](const testing::TestParamInfo<FaultRow>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::cli::test
