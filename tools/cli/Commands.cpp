#include "Commands.h"

#include "ExitCodes.h"
#include "FailureExit.h"
#include "Messages.h"
#include "OpenApi.h"
#include "Operations.h"
#include "OrderedJson.h"
#include "ProcessSettings.h"
#include "RecordExample.h"
#include "RecordMembers.h"
#include "RecordingClient.h"
#include "RequestInput.h"
#include <requestcheck/RequestCheck.h>
#include <requestcheck/Suggestion.h>

#include <demo/FailureRehearsal.h>
#include <demo/WholeSale.h>

#include <vesk/CallOutcome.h>
#include <vesk/Exception.h>
#include <vesk/NetworkException.h>

#include <masking/SecretMasking.h>

#include <morva/Log4Qt.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaObject>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

namespace vesk::cli {
namespace {

// Rows of cells, each column as wide as its widest cell, two spaces apart;
// the last column is not padded.
void printColumns(QTextStream& out, const QList<QStringList>& rows) {
    QList<qsizetype> widths;
    for (const QStringList& row : rows)
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (widths.size() <= i)
                widths.append(0);
            widths[i] = std::max(widths[i], row[i].size());
        }
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i)
            line += i + 1 < row.size() ? row[i].leftJustified(widths[i] + 2) : row[i];
        out << line << '\n';
    }
}

QString className(const QMetaObject* meta) {
    return QString::fromLatin1(meta->className());
}

QStringList operationNames(const QString& service) {
    QStringList names;
    for (const Operation* operation : operationsOf(service))
        names.append(operation->name);
    return names;
}

} // namespace

std::optional<OperationRequest> readOperationRequest(const CommandLine& line, QTextStream& in,
                                                     QTextStream& err) {
    const QString& service = line.arguments[0];
    const QString& name = line.arguments[1];
    if (!serviceNames().contains(service)) {
        usageError(err,
                   QStringLiteral("unknown service \"%1\" (the services are %2)%3")
                       .arg(service, serviceNames().join(QStringLiteral(", ")),
                            check::didYouMean(service, serviceNames())),
                   line.command);
        return std::nullopt;
    }
    const Operation* operation = findOperation(service, name);
    if (!operation) {
        usageError(err,
                   QStringLiteral("unknown operation \"%1\" of service %2 (its operations are "
                                  "%3)%4")
                       .arg(name, service, operationNames(service).join(QStringLiteral(", ")),
                            check::didYouMean(name, operationNames(service))),
                   line.command);
        return std::nullopt;
    }
    QString why;
    const std::optional<QVariantMap> request =
        readRequest(line.arguments.size() > 2 ? line.arguments[2] : QString(), in, &why);
    if (!request) {
        error(err) << why << '\n';
        return std::nullopt;
    }
    return OperationRequest{operation, *request,
                            check::checkRequest(*request, *operation->request)};
}

int callCommand(const CommandLine& line, QTextStream& out, QTextStream& err, QTextStream& in) {
    const std::optional<OperationRequest> read = readOperationRequest(line, in, err);
    if (!read)
        return exitCode::usage;
    const Operation* operation = read->operation;
    const QVariantMap& request = read->request;
    const QList<check::RequestProblem>& problems = read->problems;
    if (!line.caFile.isEmpty() && !QFileInfo(line.caFile).isReadable())
        return usageError(err, QStringLiteral("--cacert: cannot read \"%1\"").arg(line.caFile),
                          line.command);
    for (const check::RequestProblem& problem : problems)
        (line.strict ? error(err) : warning(err)) << problem.text() << '\n';
    if (line.strict && !problems.isEmpty()) {
        error(err) << problems.size() << (problems.size() == 1 ? " problem" : " problems")
                   << " in the request of " << className(operation->request)
                   << "; nothing was sent (--strict)\n";
        return exitCode::usage;
    }
    err.flush();

    RestClient::Settings settings = RestClient::Settings::fromConfig();
    if (line.timeoutMs > 0)
        settings.timeoutMs = line.timeoutMs;
    if (line.connectTimeoutMs > 0)
        settings.connectTimeoutMs = line.connectTimeoutMs;
    if (!line.caFile.isEmpty())
        settings.caFile = line.caFile;
    const QSharedPointer<RecordingClient> client =
        QSharedPointer<RecordingClient>::create(settings);
    if (line.verbose)
        client->showHeadersOn(&err);
    // Its exchanges are logged where the service's own client logs them.
    client->setLogger(
        Log4Qt::LogManager::logger(QString::fromLatin1(operation->client->loggerName)));
    const auto bodyStart = [](const QByteArray& body) {
        return body.isEmpty() ? QStringLiteral("(empty)") : masking::excerpt(body, 200);
    };
    try {
        const QVariant response = operation->perform(request, client);
        const CallOutcome outcome = lastCallOutcome();
        if (outcome.failure() == CallOutcome::Failure::NotAnObject && !line.lenient) {
            // The library reads it as an empty object; a person must see it.
            error(err) << "the reply is not a JSON object: HTTP " << outcome.httpStatus()
                       << ", body: " << bodyStart(client->last().body)
                       << "\n  (--lenient takes it as the library does: an empty response)\n";
            return exitCode::notAnObject;
        }
        out << orderedJson(response.toMap(), *operation->response);
        return exitCode::success;
    } catch (const NetworkException& e) {
        error(err) << "network: " << e.message().text() << '\n';
        const int code = exitCodeOf(lastCallOutcome().failure(), client->last());
        return code == exitCode::success ? exitCode::networkError : code;
    } catch (const Exception& e) {
        const http::Response reply = client->last();
        error(err) << "service: HTTP " << reply.statusCode << ", code " << e.code() << ": "
                   << e.message().text() << "\n  body: " << bodyStart(reply.body) << '\n';
        return exitCode::serviceError;
    }
}

int opsCommand(const CommandLine& line, QTextStream& out) {
    QList<QStringList> rows;
    QJsonArray listing;
    for (const Operation& operation : operations()) {
        // Where the service's client will post it, as the operation resolves
        // its name against the base URL.
        const QUrl url = configuredUrl(*operation.client).resolved(QUrl(operation.name));
        const QString endpoint = QStringLiteral("POST ") + url.path();
        rows.append({operation.service, operation.name, endpoint, className(operation.request),
                     className(operation.response)});
        listing.append(QJsonObject{{QStringLiteral("service"), operation.service},
                                   {QStringLiteral("operation"), operation.name},
                                   {QStringLiteral("endpoint"), endpoint},
                                   {QStringLiteral("url"), url.toString()},
                                   {QStringLiteral("request"), className(operation.request)},
                                   {QStringLiteral("response"), className(operation.response)},
                                   {QStringLiteral("path"), url.path()}});
    }
    if (line.json)
        out << QString::fromUtf8(QJsonDocument(listing).toJson(QJsonDocument::Indented));
    else
        printColumns(out, rows);
    return exitCode::success;
}

int recordCommand(const CommandLine& line, QTextStream& out, QTextStream& err) {
    const QString& name = line.arguments[0];
    const QList<QMetaType> found = findRecords(name);
    if (found.isEmpty())
        return usageError(err,
                          QStringLiteral("no record named \"%1\"%2")
                              .arg(name, check::didYouMean(name, recordNamesLike(name))),
                          line.command);
    if (found.size() > 1) {
        error(err) << "\"" << name << "\" names more than one record:\n";
        for (const QMetaType& type : found)
            err << "  " << type.name() << '\n';
        return exitCode::usage;
    }
    if (line.example) {
        out << recordExampleJson(*found.first().metaObject());
        return exitCode::success;
    }
    QList<QStringList> rows;
    QJsonArray listing;
    for (const RecordMember& member : recordMembers(found.first())) {
        rows.append({member.key, member.kind,
                     member.optional ? QStringLiteral("optional") : QStringLiteral("plain")});
        listing.append(
            QJsonObject{{QStringLiteral("key"), member.key},
                        {QStringLiteral("kind"), member.kind},
                        {QStringLiteral("optional"), member.optional},
                        {QStringLiteral("entry"), member.entry ? QJsonValue(className(member.entry))
                                                               : QJsonValue(QJsonValue::Null)}});
    }
    if (line.json)
        out << QString::fromUtf8(QJsonDocument(listing).toJson(QJsonDocument::Indented));
    else
        printColumns(out, rows);
    return exitCode::success;
}

int openApiCommand(const CommandLine& line, QTextStream& out, QTextStream& err) {
    const QByteArray document = QJsonDocument(openApiDocument()).toJson(QJsonDocument::Indented);
    if (line.arguments.isEmpty()) {
        out << QString::fromUtf8(document);
        return exitCode::success;
    }
    QSaveFile file(line.arguments[0]);
    if (!file.open(QIODevice::WriteOnly) || file.write(document) != document.size() ||
        !file.commit()) {
        error(err) << "cannot write " << line.arguments[0] << ": " << file.errorString() << '\n';
        return exitCode::failure;
    }
    return exitCode::success;
}

int demoCommand(const CommandLine& line, QTextStream& out, QTextStream& err) {
    demo::Options options;
    options.external = line.external;
    if (!line.listenHost.isEmpty()) {
        options.host = line.listenHost;
        options.port = line.listenPort;
    }
    if (!line.base.isEmpty()) {
        // The emulator's address, as --listen gives it; checked already.
        QString why;
        const QUrl base = *parseBaseUrl(line.base, &why);
        if (!line.listenHost.isEmpty() || base.scheme() != QLatin1String("http"))
            return usageError(
                err,
                QStringLiteral("--base: the demo's emulator is at one http://HOST:PORT, "
                               "given by --base or --listen, not both"),
                line.command);
        options.host = base.host();
        options.port = quint16(base.port(80));
    }
    return line.rehearseFailures ? demo::rehearseFailures(options, out)
                                 : demo::runWholeSale(options, out);
}

} // namespace vesk::cli
