// What `vesk call` makes of each fault of the emulator: the exit status and
// the first words a person reads, as the emulator's README tells them.

#include "EmulatorFixture.h"

#include <emulator/AdminClient.h>

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

    const VeskRun run = runVesk(QStringList{QStringLiteral("call"), QStringLiteral("sales"),
                                            QStringLiteral("itemInfo"),
                                            QStringLiteral(R"({"barcode": "4601234000017"})"),
                                            QStringLiteral("--timeout"), QStringLiteral("800")} +
                                urlOptions());

    EXPECT_EQ(run.exitCode, row.exitCode) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.contains(QString::fromUtf8(row.errStart))) << run.err.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    EveryFault, CallFaults,
    testing::Values(
        FaultRow{"Error", "itemInfo:error=503,code=42,msg=Back office busy", 2,
                 "service error: HTTP 503, code 42: Back office busy"},
        FaultRow{"Delay", "itemInfo:delay=100", 0, ""},
        FaultRow{"Hang", "itemInfo:hang=5000", 3, "network error: No reply from"},
        FaultRow{"NotJson", "itemInfo:notjson", 4,
                 "vesk: the reply is not a JSON object: HTTP 200"},
        FaultRow{"Truncate", "itemInfo:truncate", 3, "network error: Incomplete reply from"},
        FaultRow{"Oversize", "itemInfo:oversize=5M", 3, "exceeds the limit of 4194304 bytes"},
        FaultRow{"Reset", "itemInfo:reset", 3,
                 "network error: The connection to http://127.0.0.1:"}),
    [](const testing::TestParamInfo<FaultRow>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::cli::test
