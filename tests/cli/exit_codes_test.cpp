// The exit status of a call that failed on the way, by kind, with curl's
// number where curl has one: against real servers on the loopback address
// that fail that way.

#include "EmulatorFixture.h"

#include <support/RawServer.h>

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

namespace vesk::cli::test {
namespace {

// What listens where the call goes.
enum class Peer { NameUnderInvalid, ClosedPort, TlsToPlainHttp, ClosesWithoutReply, NotHttp };

struct ExitRow {
    const char* name;
    Peer peer;
    int exitCode;
    const char* errStart;
};

void PrintTo(const ExitRow& row, std::ostream* out) {
    *out << row.name;
}

class NetworkExit : public EmulatorTest, public testing::WithParamInterface<ExitRow> {};

TEST_P(NetworkExit, HasTheNumberOfItsKind) {
    const ExitRow& row = GetParam();
    std::unique_ptr<ClosedPort> closed;
    std::unique_ptr<vesk::test::RawServer> raw;
    QString url;
    switch (row.peer) {
    case Peer::NameUnderInvalid:
        url = QStringLiteral("http://vesk-no-such-host.invalid/");
        break;
    case Peer::ClosedPort:
        closed = std::make_unique<ClosedPort>();
        url = QStringLiteral("http://127.0.0.1:%1/").arg(closed->port());
        break;
    case Peer::TlsToPlainHttp:
        url = QStringLiteral("https://127.0.0.1:%1/").arg(port());
        break;
    case Peer::ClosesWithoutReply:
        raw = std::make_unique<vesk::test::RawServer>(std::string(),
                                                      vesk::test::RawServer::Then::Close);
        url = raw->url();
        break;
    case Peer::NotHttp:
        raw = std::make_unique<vesk::test::RawServer>("no HTTP at all\r\n\r\n",
                                                      vesk::test::RawServer::Then::Close);
        url = raw->url();
        break;
    }
    QElapsedTimer timer;
    timer.start();
    const VeskRun run =
        runVesk({QStringLiteral("call"), QStringLiteral("sales"), QStringLiteral("itemInfo"),
                 QStringLiteral("{}"), QStringLiteral("--url"), QStringLiteral("sales=") + url,
                 QStringLiteral("--timeout"), QStringLiteral("3s")});
    EXPECT_EQ(run.exitCode, row.exitCode) << testing::PrintToString(run);
    EXPECT_TRUE(run.err.startsWith(QString::fromUtf8(row.errStart))) << run.err.toStdString();
    EXPECT_LT(timer.elapsed(), 10000);
}

INSTANTIATE_TEST_SUITE_P(
    Cli, NetworkExit,
    testing::Values(
        ExitRow{"Unresolved6", Peer::NameUnderInvalid, 6,
                "vesk: error: network: Cannot resolve the host of http://vesk-no-such-host"
                ".invalid/itemInfo"},
        ExitRow{"Refused7", Peer::ClosedPort, 7, "vesk: error: network: Connection refused by"},
        ExitRow{"Tls35", Peer::TlsToPlainHttp, 35, "vesk: error: network: TLS with https://"},
        ExitRow{"EmptyReply52", Peer::ClosesWithoutReply, 52,
                "vesk: error: network: The connection to http://127.0.0.1:"},
        ExitRow{"NoCurlNumber3", Peer::NotHttp, 3,
                "vesk: error: network: Malformed reply from http://127.0.0.1:"}),
    [](const testing::TestParamInfo<ExitRow>& info) { return std::string(info.param.name); });

} // namespace
} // namespace vesk::cli::test
