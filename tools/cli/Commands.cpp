#include "Commands.h"

#include "ExitCodes.h"
#include "OpenApi.h"
#include "Operations.h"
#include "RecordMembers.h"
#include "RequestInput.h"

#include <demo/WholeSale.h>

#include <vesk/Exception.h>
#include <vesk/NetworkException.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaObject>
#include <QSaveFile>

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

int callCommand(const CommandLine& line, QTextStream& out, QTextStream& err, QTextStream& in) {
    const QString& service = line.arguments[0];
    const QString& name = line.arguments[1];
    if (!serviceNames().contains(service)) {
        err << "vesk: unknown service \"" << service << "\" (the services are "
            << serviceNames().join(QStringLiteral(", ")) << ")\n";
        return exitCode::usage;
    }
    const Operation* operation = findOperation(service, name);
    if (!operation) {
        err << "vesk: unknown operation \"" << name << "\" of service " << service
            << " (its operations are " << operationNames(service).join(QStringLiteral(", "))
            << ")\n";
        return exitCode::usage;
    }

    QString error;
    const std::optional<QVariantMap> request =
        readRequest(line.arguments.size() > 2 ? line.arguments[2] : QString(), in, &error);
    if (!request) {
        err << "vesk: " << error << '\n';
        return exitCode::usage;
    }
    for (auto key = request->keyBegin(); key != request->keyEnd(); ++key)
        if (operation->request->indexOfProperty(key->toUtf8().constData()) < 0)
            err << "vesk: warning: \"" << *key << "\" is not a member of "
                << className(operation->request) << "; it is not sent\n";
    err.flush();

    try {
        const QVariant response = operation->perform(*request);
        out << QString::fromUtf8(QJsonDocument(QJsonObject::fromVariantMap(response.toMap()))
                                     .toJson(QJsonDocument::Indented));
        return exitCode::success;
    } catch (const NetworkException& e) {
        err << "network error: " << e.message().text() << '\n';
        return exitCode::networkError;
    } catch (const Exception& e) {
        err << "service error " << e.code() << ": " << e.message().text() << '\n';
        return exitCode::serviceError;
    }
}

int opsCommand(QTextStream& out) {
    QList<QStringList> rows;
    for (const Operation& operation : operations())
        rows.append({operation.service, operation.name, className(operation.request),
                     className(operation.response)});
    printColumns(out, rows);
    return exitCode::success;
}

int recordCommand(const CommandLine& line, QTextStream& out, QTextStream& err) {
    const QString& name = line.arguments[0];
    const QList<QMetaType> found = findRecords(name);
    if (found.isEmpty()) {
        err << "vesk: no record named \"" << name << "\"\n";
        return exitCode::usage;
    }
    if (found.size() > 1) {
        err << "vesk: \"" << name << "\" names more than one record:\n";
        for (const QMetaType& type : found)
            err << "  " << type.name() << '\n';
        return exitCode::usage;
    }
    QList<QStringList> rows;
    for (const RecordMember& member : recordMembers(found.first()))
        rows.append({member.key, member.kind,
                     member.optional ? QStringLiteral("optional") : QStringLiteral("plain")});
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
        err << "vesk: cannot write " << line.arguments[0] << ": " << file.errorString() << '\n';
        return exitCode::failure;
    }
    return exitCode::success;
}

int demoCommand(const CommandLine& line, QTextStream& out) {
    demo::Options options;
    options.external = line.external;
    if (!line.listenHost.isEmpty()) {
        options.host = line.listenHost;
        options.port = line.listenPort;
    }
    return demo::runWholeSale(options, out);
}

} // namespace vesk::cli
