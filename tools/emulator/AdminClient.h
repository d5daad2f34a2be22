#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace vesk::emulator {

// The client side of an emulator's admin API (AdminApi.h) at a base URL
// ("http://127.0.0.1:55555"), through the host's HTTP client with its
// configured settings.
class AdminClient {
public:
    explicit AdminClient(QString baseUrl)
        : baseUrl_(std::move(baseUrl)) {}

    struct Result {
        enum class Kind { Done, Refused, NoReply };
        Kind kind = Kind::NoReply;
        int status = 0;
        QJsonObject body; // the reply object; for Refused, {"code", "userMsg"} if it had them
        QString message;  // for Refused and NoReply: what went wrong, for people
    };

    // `method` on /_emulator/`resource`, with a JSON body for POST.
    Result call(const QByteArray& method, const QString& resource,
                const QJsonObject& body = QJsonObject()) const;

    Result health() const { return call("GET", QStringLiteral("health")); }
    Result faults() const { return call("GET", QStringLiteral("faults")); }
    Result addFault(const QString& spec) const {
        return call("POST", QStringLiteral("faults"), {{QStringLiteral("spec"), spec}});
    }
    Result clearFaults() const { return call("DELETE", QStringLiteral("faults")); }
    Result reset() const { return call("POST", QStringLiteral("reset")); }

    // GET /_emulator/`resource` whose reply is text (the metrics): its body,
    // or what went wrong.
    struct Text {
        QByteArray body;
        QString error;
    };
    Text text(const QString& resource) const;

    QString baseUrl() const { return baseUrl_; }

private:
    QString baseUrl_;
};

} // namespace vesk::emulator
