#include "EmulatorJournal.h"

#include <morva/RestClient.h>

#include <QJsonDocument>

namespace vesk::testing {

namespace {

constexpr const char* adminPrefix = "/_emulator/";

QJsonObject callObject(const ExpectedCall& call) {
    QJsonObject object;
    if (!call.operation.isEmpty())
        object.insert(QStringLiteral("operation"), call.operation);
    if (!call.where.isEmpty())
        object.insert(QStringLiteral("where"), QJsonArray::fromStringList(call.where));
    return object;
}

struct AdminReply {
    int status = 0;   // 0: none
    QJsonObject body; // the reply's object
    QString problem;  // why there is no usable reply
};

AdminReply ask(const QUrl& base, const QByteArray& method, const char* resource,
               const QJsonObject& body = QJsonObject()) {
    http::Request request;
    request.method = method;
    request.url = QUrl(base.toString(QUrl::StripTrailingSlash) + QLatin1String(adminPrefix) +
                       QLatin1String(resource));
    if (method == "POST") {
        request.body = QJsonDocument(body).toJson(QJsonDocument::Compact);
        request.headers.insert("Content-Type", "application/json");
    }
    RestClient client;
    client.send(request);
    const http::Response response = client.response();
    AdminReply reply;
    reply.status = response.statusCode;
    if (response.failure != http::Response::Failure::None) {
        reply.problem = QStringLiteral("no emulator answers at %1: %2")
                            .arg(base.toString(), response.error.text());
        return reply;
    }
    const QJsonDocument document = QJsonDocument::fromJson(response.body);
    reply.body = document.object();
    if (!document.isObject())
        reply.problem = QStringLiteral("%1 answered HTTP %2 with no JSON object: is it a "
                                       "vesk-emulator?")
                            .arg(request.url.toString())
                            .arg(response.statusCode);
    return reply;
}

AdminReply answered(const QUrl& base, const QByteArray& method, const char* resource,
                    const QJsonObject& body = QJsonObject()) {
    AdminReply reply = ask(base, method, resource, body);
    if (reply.problem.isEmpty() && reply.status != 200)
        reply.problem = QStringLiteral("the emulator refused (HTTP %1): %2")
                            .arg(reply.status)
                            .arg(reply.body.value(QStringLiteral("userMsg")).toString());
    if (!reply.problem.isEmpty())
        throw EmulatorUnavailable(reply.problem);
    return reply;
}

} // namespace

EmulatorUnavailable::EmulatorUnavailable(const QString& message)
    : std::runtime_error(message.toStdString()) {}

EmulatorJournal::EmulatorJournal(const QUrl& baseUrl)
    : baseUrl_(baseUrl) {}

Verified EmulatorJournal::calledExactly(qint64 times, const ExpectedCall& call) const {
    QJsonObject question = callObject(call);
    question.insert(QStringLiteral("exactly"), times);
    return verify(question);
}

Verified EmulatorJournal::calledAtLeast(qint64 times, const ExpectedCall& call) const {
    QJsonObject question = callObject(call);
    question.insert(QStringLiteral("atLeast"), times);
    return verify(question);
}

Verified EmulatorJournal::calledAtMost(qint64 times, const ExpectedCall& call) const {
    QJsonObject question = callObject(call);
    question.insert(QStringLiteral("atMost"), times);
    return verify(question);
}

Verified EmulatorJournal::calledInOrder(const QList<ExpectedCall>& calls) const {
    QJsonArray steps;
    for (const ExpectedCall& call : calls)
        steps.append(callObject(call));
    return verify(QJsonObject{{QStringLiteral("inOrder"), steps}});
}

Verified EmulatorJournal::verify(const QJsonObject& question) const {
    const AdminReply reply = ask(baseUrl_, "POST", "verify", question);
    Verified result;
    result.reply = reply.body;
    if (!reply.problem.isEmpty()) {
        result.message = reply.problem;
        return result;
    }
    result.verified = reply.status == 200 && reply.body.value(QStringLiteral("verified")).toBool();
    result.seen = reply.body.value(QStringLiteral("seen")).toInteger();
    result.message = reply.body.value(QStringLiteral("message")).toString();
    if (result.message.isEmpty())
        result.message = QStringLiteral("the emulator refused the verification (HTTP %1): %2")
                             .arg(reply.status)
                             .arg(reply.body.value(QStringLiteral("userMsg")).toString());
    return result;
}

qint64 EmulatorJournal::count(const ExpectedCall& call) const {
    QJsonObject filter = callObject(call);
    filter.insert(QStringLiteral("limit"), 1);
    return answered(baseUrl_, "POST", "requests/find", filter)
        .body.value(QStringLiteral("total"))
        .toInteger();
}

QJsonArray EmulatorJournal::requests(const ExpectedCall& call) const {
    QJsonObject filter = callObject(call);
    filter.insert(QStringLiteral("limit"), 0);
    return answered(baseUrl_, "POST", "requests/find", filter)
        .body.value(QStringLiteral("requests"))
        .toArray();
}

int EmulatorJournal::clear() const {
    return answered(baseUrl_, "DELETE", "requests").body.value(QStringLiteral("cleared")).toInt();
}

} // namespace vesk::testing
