#pragma once

#include <morva/RestClient.h>

#include <vector>

namespace vesk::test {

// A RestClient substitute that records what is sent and answers with a
// scripted response, for tests of the call frame without a network.
class ScriptedRestClient : public RestClient {
public:
    ScriptedRestClient();
    ~ScriptedRestClient() override;

    void send(const http::Request& request) override;
    http::Response response() override;

    // The response that response() gives from now on.
    void answer(int statusCode, const QByteArray& body);
    void failWith(http::Response::Failure failure, const QString& message, int statusCode = 0);

    std::vector<http::Request> sent;
    http::Response next;
    int responsesTaken = 0;
    static int liveInstances; // made and not yet destroyed
};

} // namespace vesk::test
