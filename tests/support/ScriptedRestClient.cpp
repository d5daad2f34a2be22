#include "ScriptedRestClient.h"

namespace vesk::test {

int ScriptedRestClient::liveInstances = 0;

ScriptedRestClient::ScriptedRestClient()
    : RestClient(Settings{}) {
    ++liveInstances;
    answer(200, "{}");
}

ScriptedRestClient::~ScriptedRestClient() {
    --liveInstances;
}

void ScriptedRestClient::send(const http::Request& request) {
    sent.push_back(request);
}

http::Response ScriptedRestClient::response() {
    ++responsesTaken;
    return next;
}

void ScriptedRestClient::answer(int statusCode, const QByteArray& body) {
    next = http::Response();
    next.statusCode = statusCode;
    next.body = body;
}

void ScriptedRestClient::failWith(http::Response::Failure failure, const QString& message,
                                  int statusCode) {
    next = http::Response();
    next.statusCode = statusCode;
    next.failure = failure;
    next.error = tr::Tr(message);
}

} // namespace vesk::test
