#include "EmulatorCommand.h"

#include "ExitCodes.h"
#include "Messages.h"
#include "ProcessSettings.h"
#include "Suggestion.h"

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
    if (!actions.contains(action))
        return usageError(err,
                          QStringLiteral("unknown emulator action \"%1\" (health, faults, fault "
                                         "SPEC, clear or reset)%2")
                              .arg(action, didYouMean(action, actions)),
                          line.command);
    if (takesSpec != (line.arguments.size() == 2))
        return usageError(err,
                          QStringLiteral("emulator ") + action +
                              (takesSpec ? QStringLiteral(" needs a SPEC, e.g. "
                                                          "itemInfo:error=503;times=1")
                                         : QStringLiteral(" takes no further argument")),
                          line.command);
    if (!line.base.isEmpty() && !line.listenHost.isEmpty())
        return usageError(err,
                          QStringLiteral("--base and --listen both name the emulator: give one"),
                          line.command);

    // --listen, else --base (checked already), else the default address.
    QString base =
        QStringLiteral("http://%1:%2")
            .arg(line.listenHost.isEmpty() ? QStringLiteral("127.0.0.1") : line.listenHost)
            .arg(line.listenHost.isEmpty() ? 55555 : line.listenPort);
    if (!line.base.isEmpty()) {
        QString why;
        base = parseBaseUrl(line.base, &why)->toString(QUrl::StripTrailingSlash);
    }
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
        error(err) << "the emulator at " << base << " refused (HTTP " << result.status
                   << "): " << result.message << '\n';
        return exitCode::serviceError;
    case Result::Kind::NoReply:
        break;
    }
    error(err) << "no emulator answers at " << base << ": " << result.message << '\n';
    return exitCode::networkError;
}

} // namespace vesk::cli
