#pragma once

#include <emulator/Emulator.h>

#include <vesk/vesk.h>

#include <httplib.h>

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <memory>
#include <string>

namespace vesk::emulator::test {

struct Reply {
    int status = 0; // 0: no reply
    std::string raw;
    QJsonObject body;
    bool isObject = false;
};

// One request on a fresh connection to the emulator at 127.0.0.1:`port`:
// GET, DELETE, PUT or POST (a JSON body).
inline Reply send(quint16 port, const std::string& method, const std::string& path,
                  const std::string& body = std::string()) {
    httplib::Client client("127.0.0.1", port);
    client.set_read_timeout(10, 0);
    const httplib::Result result = method == "GET"      ? client.Get(path)
                                   : method == "DELETE" ? client.Delete(path)
                                   : method == "PUT"    ? client.Put(path, body, "application/json")
                                                     : client.Post(path, body, "application/json");
    Reply reply;
    if (!result)
        return reply;
    reply.status = result->status;
    reply.raw = result->body;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(result->body));
    reply.isObject = document.isObject();
    reply.body = document.object();
    return reply;
}

inline Reply post(quint16 port, const std::string& path, const std::string& body) {
    return send(port, "POST", path, body);
}

// An emulator with the shipped seed, fresh for each test, on a port of the
// system's choosing.
class RunningEmulator : public ::testing::Test {
protected:
    void SetUp() override {
        Options options;
        options.port = 0;
        emulator = std::make_unique<Emulator>(options);
        QString error;
        ASSERT_TRUE(emulator->start(&error)) << error.toStdString();
    }

    std::unique_ptr<Emulator> emulator;
};

inline std::string salesPath(const char* operation) {
    return std::string("/api/axapta/ExchangeData_Sales/") + operation;
}
inline std::string discPath(const char* operation) {
    return std::string("/api/axapta/ExchangeData_Disc/") + operation;
}
inline std::string loyaltyPath(const char* operation) {
    return std::string("/api/axapta/ExchangeData_Loyalty/") + operation;
}

// One typed call through the library's own prepared request (a client of its own per call).
template <class Response, class Request>
Response call(const Emulator& emulator, const char* service, const char* operation,
              const Request& request) {
    PreparedRequest<Response> prepared;
    prepared.url = emulator.serviceUrl(QString::fromLatin1(service)) + QLatin1String(operation);
    prepared.body = serder::serialize(request);
    return prepared.response();
}

// The vesk::Exception that `action` raises; a failed expectation when it raises none.
template <class Action>
std::pair<int, std::string> libraryRefusal(Action action) {
    try {
        action();
    } catch (const NetworkException& e) {
        ADD_FAILURE() << "network failure: " << e.what();
        return {-1, e.what()};
    } catch (const Exception& e) {
        return {e.code(), e.what()};
    }
    ADD_FAILURE() << "the call was not refused";
    return {-1, std::string()};
}

} // namespace vesk::emulator::test
