#include "OperationTable.h"

namespace vesk::test {
namespace {

QByteArray compactJson(const QVariant& map) {
    return QJsonDocument(QJsonObject::fromVariantMap(map.toMap())).toJson(QJsonDocument::Compact);
}

} // namespace

TEST_P(OperationTableTest, DefaultConfigurationPreparesTheLoopbackUrl) {
    ConfigScope config;
    const PreparedCall call = GetParam().prepare();
    EXPECT_EQ(call.url, GetParam().defaultUrl);
    EXPECT_FALSE(QUrl(call.url).isRelative());
}

TEST_P(OperationTableTest, ConfiguredBasePreparesItsUrl) {
    ConfigScope config({{QString::fromLatin1(GetParam().configKey),
                         QStringLiteral("https://backoffice.example:8443/svc")}});
    const PreparedCall call = GetParam().prepare();
    EXPECT_EQ(call.url, QStringLiteral("https://backoffice.example:8443/svc/") +
                            QString::fromStdString(GetParam().name));
}

TEST_P(OperationTableTest, BodyIsTheRequestsSerialisation) {
    ConfigScope config;
    const PreparedCall call = GetParam().prepare();
    EXPECT_EQ(call.body, call.expectedBody);
    EXPECT_TRUE(sameJson(compactJson(call.body), GetParam().fullRequest));
}

TEST_P(OperationTableTest, PreparedCallSharesTheClientAndHoldsNoResponse) {
    ConfigScope config;
    const PreparedCall call = GetParam().prepare();
    EXPECT_EQ(call.client, call.clientOfTheApi);
    EXPECT_FALSE(call.responseKept);
}

TEST_P(OperationTableTest, CallPostsTheRequestAndReadsTheFullReply) {
    const OperationRow& row = GetParam();
    LoopbackServer server;
    const std::string path = "/backoffice/" + row.name;
    server.onPost(path, [&row](const httplib::Request&, httplib::Response& response) {
        response.set_content(row.fullReply.toStdString(), "application/json");
    });
    EXPECT_TRUE(row.performAgainst(server.url(QStringLiteral("/backoffice"))));

    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].method, "POST");
    EXPECT_EQ(requests[0].path, path);
    EXPECT_TRUE(sameJson(QByteArray::fromStdString(requests[0].body), row.fullRequest));
}

} // namespace vesk::test
