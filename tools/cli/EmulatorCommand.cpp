#include "EmulatorCommand.h"

#include "ExitCodes.h"

#include <emulator/AdminClient.h>

#include <QJsonDocument>

namespace vesk::cli {

int emulatorCommand(const CommandLine& line, QTextStream& out, QTextStream& err) {
    using Result = emulator::AdminClient::Result;
    const QString action = line.arguments.value(0);
    const bool takesSpec = action == QLatin1String("fault");
    static const QStringList actions{QStringLiteral("health"), QStringLiteral("faults"),
                                     QStringLiteral("fault"), QStringLiteral("clear"),
                                     QStringLiteral("reset")};
    if (!actions.contains(action)) {
        err << "vesk: unknown emulator action \"" << action
            << "\" (health, faults, fault SPEC, clear or reset)\n";
        return exitCode::usage;
    }
    if (takesSpec != (line.arguments.size() == 2)) {
        err << "vesk: emulator " << action
            << (takesSpec ? " needs a SPEC, e.g. itemInfo:error=503;times=1\n"
                          : " takes no further argument\n");
        return exitCode::usage;
    }

    const QString base =
        QStringLiteral("http://%1:%2")
            .arg(line.listenHost.isEmpty() ? QStringLiteral("127.0.0.1") : line.listenHost)
            .arg(line.listenHost.isEmpty() ? 55555 : line.listenPort);
    const emulator::AdminClient client(base);
    const Result result = action == QLatin1String("health")   ? client.health()
                          : action == QLatin1String("faults") ? client.faults()
                          : action == QLatin1String("fault")  ? client.addFault(line.arguments[1])
                          : action == QLatin1String("clear")  ? client.clearFaults()
                                                              : client.reset();
    switch (result.kind) {
    case Result::Kind::Done:
        out << QString::fromUtf8(QJsonDocument(result.body).toJson(QJsonDocument::Indented));
        return exitCode::success;
    case Result::Kind::Refused:
        err << "vesk: the emulator at " << base << " refused (HTTP " << result.status
            << "): " << result.message << '\n';
        return exitCode::serviceError;
    case Result::Kind::NoReply:
        break;
    }
    err << "vesk: no emulator answers at " << base << ": " << result.message << '\n';
    return exitCode::networkError;
}

} // namespace vesk::cli
