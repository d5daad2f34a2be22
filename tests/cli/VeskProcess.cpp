#include "VeskProcess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QProcess>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vesk::cli::test {

QJsonObject VeskRun::json() const {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(out.toUtf8(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError)
        << error.errorString().toStdString() << " in: " << out.toStdString();
    EXPECT_TRUE(document.isObject()) << out.toStdString();
    return document.object();
}

VeskRun runVesk(const QStringList& arguments, const QByteArray& input,
                const QProcessEnvironment& environment) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("MORVA_CONFIG"));
    env.remove(QStringLiteral("QT_LOGGING_RULES"));
    env.insert(environment);

    QProcess process;
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(VESK_CLI_PROGRAM), arguments);
    VeskRun run;
    if (!process.waitForStarted()) {
        ADD_FAILURE() << "cannot start " << VESK_CLI_PROGRAM << ": "
                      << process.errorString().toStdString();
        return run;
    }
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(50000)) {
        ADD_FAILURE() << "vesk did not finish: " << arguments.join(QLatin1Char(' ')).toStdString();
        process.kill();
        process.waitForFinished();
    }
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    if (process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    return run;
}

void PrintTo(const VeskRun& run, std::ostream* out) {
    *out << "exit " << run.exitCode << "\n--- stdout:\n"
         << run.out.toStdString() << "--- stderr:\n"
         << run.err.toStdString();
}

ClosedPort::ClosedPort() {
    socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    socklen_t size = sizeof address;
    if (socket_ < 0 || ::bind(socket_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        ADD_FAILURE() << "cannot bind a socket on the loopback address";
        return;
    }
    port_ = ntohs(address.sin_port);
}

ClosedPort::~ClosedPort() {
    if (socket_ >= 0)
        ::close(socket_);
}

} // namespace vesk::cli::test

void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

void PrintTo(const QJsonValue& value, std::ostream* out) {
    *out << QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).toStdString();
}
