#include "JournalCommand.h"

#include "EmulatorCommand.h"
#include "ExitCodes.h"
#include "Messages.h"

#include <emulator/matching/Condition.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

namespace vesk::cli {

namespace {

// A body in a table's line: compact JSON, cut.
constexpr int bodyChars = 100;

// The longest operation's name, "calcAndReserveBonusPay", and a space.
constexpr int operationColumn = 23;

// Splits at "&&" outside double-quoted text.
QStringList splitConditions(const QString& text) {
    QStringList parts;
    QString part;
    bool quoted = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted && c == QLatin1Char('\\') && i + 1 < text.size()) {
            part += c;
            part += text[++i];
            continue;
        }
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        if (!quoted && c == QLatin1Char('&') && i + 1 < text.size() &&
            text[i + 1] == QLatin1Char('&')) {
            parts.append(part.trimmed());
            part.clear();
            ++i;
            continue;
        }
        part += c;
    }
    parts.append(part.trimmed());
    return parts;
}

// The filter members that the journal's listing and verification share.
QJsonObject filterOf(const CommandLine& line) {
    QJsonObject filter;
    const auto set = [&filter](const char* name, const QString& value) {
        if (!value.isEmpty())
            filter.insert(QLatin1String(name), value);
    };
    set("operation", line.operation);
    set("status", line.status);
    set("since", line.since);
    set("until", line.until);
    if (!line.where.isEmpty())
        filter.insert(QStringLiteral("where"), QJsonArray::fromStringList(line.where));
    return filter;
}

// #3  2026-11-24T10:00:00.123Z  itemInfo  404 code=1001  2 ms  {"barcode":"..."}
QString tableLine(const QJsonObject& request) {
    const int status = request.value(QStringLiteral("status")).toInt();
    QString outcome = status ? QString::number(status) : QStringLiteral("-");
    if (request.contains(QStringLiteral("code")))
        outcome += QStringLiteral(" code=%1").arg(request.value(QStringLiteral("code")).toInt());
    QStringList extras;
    for (const char* name : {"fault", "note"})
        if (request.contains(QLatin1String(name)))
            extras.append(QStringLiteral("%1=%2").arg(
                QLatin1String(name), request.value(QLatin1String(name)).toString()));
    QString body =
        request.contains(QStringLiteral("request"))
            ? QString::fromUtf8(QJsonDocument(request.value(QStringLiteral("request")).toObject())
                                    .toJson(QJsonDocument::Compact))
            : request.value(QStringLiteral("requestText")).toString();
    if (body.size() > bodyChars)
        body = body.left(bodyChars) + QStringLiteral("...");
    extras.append(body);
    for (const QJsonValue& finding : request.value(QStringLiteral("findings")).toArray())
        extras.append(QStringLiteral("\n      ") + finding.toString());
    return QStringLiteral("#%1  %2  %3 %4 %5 ms  %6")
        .arg(QString::number(request.value(QStringLiteral("seq")).toInteger()).leftJustified(5),
             request.value(QStringLiteral("time")).toString(),
             request.value(QStringLiteral("operation")).toString().leftJustified(operationColumn),
             outcome.leftJustified(14),
             QString::number(request.value(QStringLiteral("ms")).toInteger()).rightJustified(5),
             extras.join(QLatin1Char(' ')));
}

} // namespace

std::optional<QJsonObject> parseCall(const QString& text, QString* error) {
    const QString trimmed = text.trimmed();
    const qsizetype space = trimmed.indexOf(QRegularExpression(QStringLiteral("\\s")));
    const QString operation = space < 0 ? trimmed : trimmed.left(space);
    if (operation.isEmpty() || operation.startsWith(QLatin1Char('$'))) {
        *error = QStringLiteral("\"%1\": a call starts with an operation's name, e.g. "
                                "'commitCheque $.chequeId == \"C-1\"'")
                     .arg(text);
        return std::nullopt;
    }
    QJsonObject call{{QStringLiteral("operation"), operation}};
    if (space < 0)
        return call;
    QJsonArray where;
    for (const QString& condition : splitConditions(trimmed.mid(space + 1))) {
        QString why;
        if (!emulator::Condition::parse(condition, &why)) {
            *error = QStringLiteral("\"%1\": %2").arg(condition, why);
            return std::nullopt;
        }
        where.append(condition);
    }
    call.insert(QStringLiteral("where"), where);
    return call;
}

int journalAction(const CommandLine& line, const emulator::AdminClient& client, QTextStream& out,
                  QTextStream& err) {
    using Result = emulator::AdminClient::Result;
    const QString what = line.arguments.value(1);
    if (!what.isEmpty() && what != QLatin1String("count") && what != QLatin1String("clear"))
        return usageError(
            err, QStringLiteral("emulator journal takes count or clear, not \"%1\"").arg(what),
            line.command);
    if (what == QLatin1String("clear")) {
        const Result cleared = client.call("DELETE", QStringLiteral("requests"));
        if (cleared.kind != Result::Kind::Done)
            return adminFailure(cleared, client.baseUrl(), err);
        out << "cleared " << cleared.body.value(QStringLiteral("cleared")).toInt() << " requests\n";
        return exitCode::success;
    }
    QJsonObject filter = filterOf(line);
    filter.insert(QStringLiteral("limit"), what == QLatin1String("count") ? 1 : line.limit);
    const Result found = client.call("POST", QStringLiteral("requests/find"), filter);
    if (found.kind != Result::Kind::Done)
        return adminFailure(found, client.baseUrl(), err);
    const qint64 total = found.body.value(QStringLiteral("total")).toInteger();
    const qint64 dropped = found.body.value(QStringLiteral("dropped")).toInteger();
    if (what == QLatin1String("count")) {
        out << total << '\n';
        return exitCode::success;
    }
    if (line.json) {
        out << QString::fromUtf8(QJsonDocument(found.body).toJson(QJsonDocument::Indented));
        return exitCode::success;
    }
    const QJsonArray requests = found.body.value(QStringLiteral("requests")).toArray();
    for (const QJsonValue& request : requests)
        out << tableLine(request.toObject()) << '\n';
    out << requests.size() << (requests.size() == 1 ? " request" : " requests");
    if (requests.size() < total)
        out << " (the newest of " << total << "; --limit 0 shows all)";
    if (dropped > 0)
        out << "; the journal dropped " << dropped << " older ones";
    out << '\n';
    return exitCode::success;
}

int verifyAction(const CommandLine& line, const emulator::AdminClient& client, QTextStream& out,
                 QTextStream& err) {
    using Result = emulator::AdminClient::Result;
    const QStringList calls = line.arguments.mid(1);
    if (!line.inOrder && calls.size() > 1)
        return usageError(err,
                          QStringLiteral("emulator verify takes one CALL, or several with "
                                         "--in-order"),
                          line.command);
    if (line.inOrder && (!line.countKind.isEmpty() || !line.where.isEmpty()))
        return usageError(err,
                          QStringLiteral("--in-order takes no count and no --where: write the "
                                         "conditions into each CALL"),
                          line.command);
    QJsonObject verification;
    QJsonArray steps;
    for (const QString& text : calls) {
        QString why;
        const std::optional<QJsonObject> call = parseCall(text, &why);
        if (!call)
            return usageError(err, QStringLiteral("emulator verify: ") + why, line.command);
        steps.append(*call);
    }
    if (line.inOrder) {
        verification.insert(QStringLiteral("inOrder"), steps);
    } else {
        verification = steps.first().toObject();
        QJsonArray where = verification.value(QStringLiteral("where")).toArray();
        for (const QString& condition : line.where)
            where.append(condition);
        if (!where.isEmpty())
            verification.insert(QStringLiteral("where"), where);
        if (!line.countKind.isEmpty())
            verification.insert(line.countKind, line.countTimes);
    }
    for (const char* name : {"since", "until"}) {
        const QString value = filterOf(line).value(QLatin1String(name)).toString();
        if (!value.isEmpty())
            verification.insert(QLatin1String(name), value);
    }
    const Result result = client.call("POST", QStringLiteral("verify"), verification);
    const QString message = result.body.value(QStringLiteral("message")).toString();
    if (result.kind == Result::Kind::Done) {
        out << message << '\n';
        return exitCode::success;
    }
    if (result.kind == Result::Kind::Refused && result.status == 409 && !message.isEmpty()) {
        out << message << '\n';
        return exitCode::failure;
    }
    return adminFailure(result, client.baseUrl(), err);
}

} // namespace vesk::cli
