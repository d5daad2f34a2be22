// Prepared requests over the real transport against a loopback server.

#include "support/ConfigScope.h"
#include "support/LoopbackServer.h"

#include <vesk/NetworkException.h>
#include <vesk/PreparedRequest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <gtest/gtest.h>

#include <set>

namespace vesk {
namespace {

// The inodes of the sockets this process has open.
std::set<QByteArray> ownSocketInodes() {
    std::set<QByteArray> inodes;
    const QDir fds(QStringLiteral("/proc/self/fd"));
    for (const QFileInfo& fd : fds.entryInfoList(QDir::System | QDir::NoDotAndDotDot)) {
        char link[256];
        const ssize_t length =
            ::readlink(QFile::encodeName(fd.filePath()).constData(), link, sizeof link - 1);
        const QByteArray target(link, length > 0 ? qsizetype(length) : 0);
        if (target.startsWith("socket:[") && target.endsWith(']'))
            inodes.insert(target.mid(8, target.size() - 9));
    }
    return inodes;
}

// Connections of this process in the ESTABLISHED state whose remote end is
// the given local port: the client side of connections to a loopback server.
// Only this process's own sockets count, as tests run in parallel and
// another one's lingering connection may be to a port that was reused.
int establishedConnectionsTo(int port) {
    QFile table(QStringLiteral("/proc/net/tcp"));
    if (!table.open(QIODevice::ReadOnly))
        return -1;
    const std::set<QByteArray> own = ownSocketInodes();
    int count = 0;
    table.readLine(); // header
    while (!table.atEnd()) {
        const QList<QByteArray> fields = table.readLine().simplified().split(' ');
        if (fields.size() < 10)
            continue;
        const QByteArray remotePort = fields[2].split(':').value(1);
        if (remotePort.toInt(nullptr, 16) == port && fields[3] == "01" && own.count(fields[9]))
            ++count;
    }
    return count;
}

class PreparedRequestTransportTest : public testing::Test {
protected:
    test::ConfigScope config;
    test::LoopbackServer server;
};

TEST_F(PreparedRequestTransportTest, WithoutClientEachPerformanceMakesAndFreesItsOwnClient) {
    server.replyToAll(200, R"({"n": 1})");
    PreparedRequestBase request;
    request.url = server.url("/op");
    request.body = QVariantMap{{"k", "v"}};

    EXPECT_EQ(request.getResponseVariant(), QVariant(QVariantMap{{"n", 1}}));
    EXPECT_EQ(establishedConnectionsTo(server.port()), 0);
    EXPECT_EQ(request.getResponseVariant(), QVariant(QVariantMap{{"n", 1}}));
    EXPECT_EQ(establishedConnectionsTo(server.port()), 0);

    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_NE(requests[0].remotePort, requests[1].remotePort);
    EXPECT_FALSE(request.client);
}

TEST_F(PreparedRequestTransportTest, SharedClientKeepsOneConnectionAcrossPerformances) {
    server.replyToAll(200, "{}");
    PreparedRequestBase request;
    request.url = server.url("/op");
    request.client = QSharedPointer<RestClient>::create();
    for (int i = 0; i < 3; ++i)
        request.getResponseVariant();
    EXPECT_EQ(establishedConnectionsTo(server.port()), 1);
    std::set<int> ports;
    for (const auto& r : server.requests())
        ports.insert(r.remotePort);
    EXPECT_EQ(ports.size(), 1u);
}

TEST_F(PreparedRequestTransportTest, PostsCompactJsonWithJsonContentType) {
    server.replyToAll(200, "{}");
    PreparedRequestBase request;
    request.url = server.url("/op");
    request.body = QVariantMap{{"a", QVariantList{1, 2}}, {"b", "text with spaces"}};
    request.getResponseVariant();
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].method, "POST");
    EXPECT_EQ(requests[0].path, "/op");
    EXPECT_EQ(requests[0].body, R"({"a":[1,2],"b":"text with spaces"})");
    const auto type = requests[0].headers.find("Content-Type");
    ASSERT_NE(type, requests[0].headers.end());
    EXPECT_EQ(type->second, "application/json");
}

TEST_F(PreparedRequestTransportTest, ErrorReplyRaisesTheServicesCodeAndMessage) {
    server.replyToAll(500, R"({"userMsg": "Сервис недоступен", "code": 17})");
    PreparedRequestBase request;
    request.url = server.url("/op");
    try {
        request.getResponseVariant();
        FAIL() << "no exception";
    } catch (const NetworkException&) {
        FAIL() << "a reply was taken for a network failure";
    } catch (const Exception& e) {
        EXPECT_EQ(e.code(), 17);
        EXPECT_EQ(e.message().text(), QStringLiteral("Сервис недоступен"));
    }
}

TEST_F(PreparedRequestTransportTest, RefusedConnectionRaisesNetworkException) {
    const QString url = server.url("/op");
    PreparedRequestBase request;
    request.url = QStringLiteral("http://127.0.0.1:1/op");
    try {
        request.getResponseVariant();
        FAIL() << "no exception";
    } catch (const NetworkException& e) {
        EXPECT_EQ(e.code(), 0);
        EXPECT_FALSE(e.message().text().isEmpty());
    }
}

} // namespace
} // namespace vesk
