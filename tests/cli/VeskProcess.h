#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <ostream>

namespace vesk::cli::test {

// One run of the vesk program.
struct VeskRun {
    int exitCode = -1; // -1 when it did not exit normally
    QString out;
    QString err;

    // The standard output as a JSON object; an empty one, and a failed
    // expectation, when it is not one.
    QJsonObject json() const;
};

// Runs vesk with `arguments`, `input` on its standard input, and an
// environment without MORVA_CONFIG and QT_LOGGING_RULES plus `environment`.
VeskRun runVesk(const QStringList& arguments, const QByteArray& input = QByteArray(),
                const QProcessEnvironment& environment = QProcessEnvironment());

// For failure messages: the exit code and both outputs.
void PrintTo(const VeskRun& run, std::ostream* out);

// An address on the loopback interface where nothing accepts connections:
// a socket bound to a port of the system's choosing, never listening, so
// that no one else takes the port while the test runs.
class ClosedPort {
public:
    ClosedPort();
    ~ClosedPort();
    ClosedPort(const ClosedPort&) = delete;
    ClosedPort& operator=(const ClosedPort&) = delete;

    quint16 port() const { return port_; }

private:
    int socket_ = -1;
    quint16 port_ = 0;
};

} // namespace vesk::cli::test

// Readable failures for the Qt values in assertions.
void PrintTo(const QString& text, std::ostream* out);
void PrintTo(const QJsonValue& value, std::ostream* out);
