#include "FaultInjector.h"

#include "Log.h"
#include "ServedConnection.h"
#include "StopSignal.h"

#include <httplib.h>

#include <QElapsedTimer>
#include <QJsonDocument>

#include <algorithm>

namespace vesk::emulator {

namespace {

const char* const jsonType = "application/json; charset=utf-8";

const char* const notJsonPage =
    "<html><head><title>502 Bad Gateway</title></head>\n"
    "<body><h1>Bad Gateway</h1><p>The back office is not answering (a fault injected by "
    "vesk-emulator).</p></body></html>\n";

QByteArray compact(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

int codeOf(const HttpFront::Answer& answer) {
    return answer.status == 200 ? 0 : answer.object.value(QStringLiteral("code")).toInt();
}

// What the operation answered, for the log, when the client is not to see it:
// "operation=200", "operation=409 code=3006".
QString withheld(const HttpFront::Answer& answer) {
    QString note = QStringLiteral("operation=%1").arg(answer.status);
    if (answer.status != 200)
        note += QStringLiteral(" code=%1").arg(codeOf(answer));
    if (!answer.note.isEmpty())
        note += QLatin1Char(' ') + answer.note;
    return note;
}

const char* reasonPhrase(int status) {
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 409:
        return "Conflict";
    default:
        return status >= 500 ? "Internal Server Error" : "Error";
    }
}

// The status line and headers of a reply that a fault writes on the socket,
// for a body of `bodySize` bytes; the connection closes after it.
QByteArray replyHead(int status, qsizetype bodySize) {
    return QStringLiteral("HTTP/1.1 %1 %2\r\nContent-Type: %3\r\n"
                          "Content-Length: %4\r\nConnection: close\r\n\r\n")
        .arg(status)
        .arg(QLatin1String(reasonPhrase(status)), QLatin1String(jsonType))
        .arg(bodySize)
        .toLatin1();
}

FaultInjector::Played replyError(httplib::Response& response, int status, int code,
                                 const QString& userMsg) {
    const QByteArray body =
        compact(QJsonObject{{QStringLiteral("code"), code}, {QStringLiteral("userMsg"), userMsg}});
    response.status = status;
    response.set_content(body.toStdString(), jsonType);
    return {false, status, code, body};
}

// The fault could not be played on the socket (it was not found): say so
// rather than pretend.
FaultInjector::Played cannotPlay(httplib::Response& response, const char* what) {
    const QString message =
        QStringLiteral("The emulator could not %1: the connection's socket was not found")
            .arg(QLatin1String(what));
    qCWarning(lcEmulator).noquote() << message;
    return replyError(response, 500, 500, message);
}

} // namespace

FaultInjector::Played FaultInjector::play(const Fault& fault, const httplib::Request& request,
                                          httplib::Response& response,
                                          const std::function<HttpFront::Answer()>& perform) const {
    const auto connection = [&] {
        return ServedConnection::find(request.local_port, request.remote_addr, request.remote_port);
    };
    switch (fault.kind) {
    case Fault::Kind::Error:
        return replyError(response, fault.status, fault.code, fault.userMsg);
    case Fault::Kind::Delay:
        stop_.wait(fault.ms);
        return Played::asUsual();
    case Fault::Kind::Hang: {
        ServedConnection served = connection();
        if (!served.isValid())
            return cannotPlay(response, "hang");
        Played played;
        if (fault.after)
            played.note = withheld(perform());
        served.waitIdle(fault.ms, stop_);
        served.close();
        return played;
    }
    case Fault::Kind::NotJson:
        response.status = 200;
        response.set_content(notJsonPage, "text/html; charset=utf-8");
        return {false, 200, 0, QByteArray(notJsonPage)};
    case Fault::Kind::Truncate: {
        ServedConnection served = connection();
        if (!served.isValid())
            return cannotPlay(response, "truncate the reply");
        const HttpFront::Answer answer = perform();
        const QByteArray body = compact(answer.object);
        const QByteArray half = body.left(body.size() / 2);
        served.send(replyHead(answer.status, body.size()) + half);
        served.close();
        // No reply went out whole: the log shows "-" and what the operation answered.
        return {false, 0, 0, half, withheld(answer)};
    }
    case Fault::Kind::Dribble: {
        ServedConnection served = connection();
        if (!served.isValid())
            return cannotPlay(response, "dribble the reply");
        const HttpFront::Answer answer = perform();
        const QByteArray body = compact(answer.object);
        bool whole = served.send(replyHead(answer.status, body.size()));
        const int chunks = std::max(1, std::min(fault.chunks, int(body.size())));
        // The first piece at once and the last when the fault's time is up
        // (a single piece then), each at its due time from the start, so
        // that the pauses' rounding does not add up.
        QElapsedTimer clock;
        clock.start();
        qsizetype sent = 0;
        for (int i = 1; whole && i <= chunks; ++i) {
            const qint64 due = chunks == 1 ? fault.ms : qint64(fault.ms) * (i - 1) / (chunks - 1);
            const qint64 pause = due - clock.elapsed();
            if (pause > 0)
                whole = served.waitIdle(int(pause), stop_) == ServedConnection::Waited::TimedOut;
            if (!whole)
                break;
            const qsizetype end = body.size() * i / chunks;
            whole = served.send(body.mid(sent, end - sent));
            sent = end;
        }
        served.close();
        if (!whole)
            return {false, 0, 0, body.left(sent), withheld(answer)};
        return {false, answer.status, codeOf(answer), body, answer.note};
    }
    case Fault::Kind::Stall: {
        ServedConnection served = connection();
        if (!served.isValid())
            return cannotPlay(response, "stall the reply");
        const HttpFront::Answer answer = perform();
        served.send(replyHead(answer.status, compact(answer.object).size()));
        served.waitIdle(fault.ms, stop_);
        served.close();
        return {false, 0, 0, QByteArray(), withheld(answer)};
    }
    case Fault::Kind::Oversize: {
        const HttpFront::Answer answer = perform();
        QByteArray body = compact(answer.object);
        // Trailing spaces keep it one valid JSON value of the size asked.
        if (body.size() < fault.bytes)
            body.append(QByteArray(fault.bytes - body.size(), ' '));
        response.status = answer.status;
        response.set_content(body.toStdString(), jsonType);
        return {false, answer.status, codeOf(answer), body, answer.note};
    }
    case Fault::Kind::Reset: {
        ServedConnection served = connection();
        if (!served.isValid())
            return cannotPlay(response, "reset the connection");
        Played played;
        // The operation commits before the reset: the client cannot tell that it did.
        if (fault.after)
            played.note = withheld(perform());
        served.reset();
        return played;
    }
    }
    return Played::asUsual();
}

} // namespace vesk::emulator
