#pragma once

// Table-driven checks of a client's operations. A service's test names one
// row per operation and instantiates the suite:
//
//     INSTANTIATE_TEST_SUITE_P(Disc, OperationTableTest, testing::Values(
//         operationRow(&disc::Api::discCalc, "Vesk.disc:url",
//                      "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/discCalc",
//                      fullRequestJson, fullReplyJson),
//         ...), OperationTableTest::rowName);
//
// Compile OperationTable.cpp into the test program that instantiates it.

#include "ConfigScope.h"
#include "LoopbackServer.h"
#include "RecordTable.h"

#include <vesk/PreparedRequest.h>

#include <morva/Serder.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <string>

namespace vesk::test {

// What one call of an operation produced, for the checks to look at.
struct PreparedCall {
    QString url;
    QVariant body;
    QVariant expectedBody; // the request record's own serialisation
    QSharedPointer<RestClient> client;
    QSharedPointer<RestClient> clientOfTheApi;
    bool responseKept = true;
};

struct OperationRow {
    std::string name;       // the endpoint: "discCalc"
    const char* configKey;  // "Vesk.disc:url"
    QString defaultUrl;     // the endpoint's URL with the default configuration
    QByteArray fullRequest; // JSON object that sets every member of the request
    QByteArray fullReply;   // JSON object that sets every member of the reply
    // Prepares a call from fullRequest on a client made with the current Config.
    std::function<PreparedCall()> prepare;
    // Performs the call from fullRequest against a base URL; true when the
    // typed reply equals fullReply read into the response record and differs
    // from a default-made one.
    std::function<testing::AssertionResult(const QString& baseUrl)> performAgainst;
};

template <class Api, class Request, class Response>
OperationRow operationRow(PreparedRequest<Response> (Api::*operation)(const Request&),
                          const char* configKey, const char* defaultUrl, QByteArray fullRequest,
                          QByteArray fullReply) {
    const QString url = QString::fromUtf8(defaultUrl);
    OperationRow row;
    row.name = url.mid(url.lastIndexOf(QLatin1Char('/')) + 1).toStdString();
    row.configKey = configKey;
    row.defaultUrl = url;
    row.fullRequest = fullRequest;
    row.fullReply = fullReply;
    const auto request = [fullRequest] {
        return serder::deserialize<Request>(
            QJsonDocument::fromJson(fullRequest).object().toVariantMap());
    };
    row.prepare = [operation, request] {
        Api api;
        const Request record = request();
        const PreparedRequest<Response> prepared = (api.*operation)(record);
        return PreparedCall{prepared.url,    prepared.body,    serder::serialize(record),
                            prepared.client, api.restClient(), prepared.keptResponse().has_value()};
    };
    row.performAgainst = [operation, request, configKey, fullReply](const QString& baseUrl) {
        ConfigScope config({{QString::fromLatin1(configKey), baseUrl}});
        Api api;
        PreparedRequest<Response> prepared = (api.*operation)(request());
        const Response& reply = prepared.response();
        const auto expected = serder::deserialize<Response>(
            QJsonDocument::fromJson(fullReply).object().toVariantMap());
        if (!(reply == expected))
            return testing::AssertionFailure() << "the reply was not read as sent";
        if (reply == Response())
            return testing::AssertionFailure() << "the full reply left the record at its defaults";
        return testing::AssertionSuccess();
    };
    return row;
}

class OperationTableTest : public testing::TestWithParam<OperationRow> {
public:
    static std::string rowName(const testing::TestParamInfo<OperationRow>& info) {
        return info.param.name;
    }
};

} // namespace vesk::test
