#include "EmulatorCommand.h"

#include "ExitCodes.h"
#include "JournalCommand.h"
#include "Messages.h"
#include "ProcessSettings.h"
#include <requestcheck/Suggestion.h>

#include <QJsonDocument>

namespace vesk::cli {

namespace {

// How many further arguments an action takes: at least, at most.
struct Arity {
    int least;
    int most;
    const char* shown; // what the usage error names
};

Arity arityOf(const QString& action) {
    if (action == QLatin1String("fault"))
        return {1, 1, " needs a SPEC, e.g. itemInfo:error=503;times=1"};
    if (action == QLatin1String("journal"))
        return {0, 1, " takes at most one further argument: count or clear"};
    if (action == QLatin1String("verify"))
        return {1, 63, " needs a CALL, e.g. 'commitCheque $.chequeId == \"C-1\"'"};
    return {0, 0, " takes no further argument"};
}

} // namespace

int adminFailure(const emulator::AdminClient::Result& result, const QString& base,
                 QTextStream& err) {
    using Result = emulator::AdminClient::Result;
    if (result.kind == Result::Kind::Refused) {
        error(err) << "the emulator at " << base << " refused (HTTP " << result.status
                   << "): " << result.message << '\n';
        return exitCode::serviceError;
    }
    error(err) << "no emulator answers at " << base << ": " << result.message << '\n';
    return exitCode::networkError;
}

int emulatorCommand(const CommandLine& line, QTextStream& out, QTextStream& err) {
    using Result = emulator::AdminClient::Result;
    const QString action = line.arguments.value(0);
    static const QStringList actions{QStringLiteral("health"), QStringLiteral("faults"),
                                     QStringLiteral("fault"),  QStringLiteral("clear"),
                                     QStringLiteral("reset"),  QStringLiteral("journal"),
                                     QStringLiteral("verify"), QStringLiteral("metrics")};
    if (!actions.contains(action))
        return usageError(err,
                          QStringLiteral("unknown emulator action \"%1\" (health, faults, fault "
                                         "SPEC, clear, reset, journal, verify CALL or metrics)%2")
                              .arg(action, check::didYouMean(action, actions)),
                          line.command);
    const Arity arity = arityOf(action);
    const qsizetype further = line.arguments.size() - 1;
    if (further < arity.least || further > arity.most)
        return usageError(err, QStringLiteral("emulator ") + action + QLatin1String(arity.shown),
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
    if (action == QLatin1String("journal"))
        return journalAction(line, client, out, err);
    if (action == QLatin1String("verify"))
        return verifyAction(line, client, out, err);
    if (action == QLatin1String("metrics")) {
        // Text, not JSON: printed as the emulator wrote it.
        const emulator::AdminClient::Text metrics = client.text(QStringLiteral("metrics"));
        if (!metrics.error.isEmpty()) {
            error(err) << "no metrics from the emulator at " << base << ": " << metrics.error
                       << '\n';
            return exitCode::networkError;
        }
        out << QString::fromUtf8(metrics.body);
        return exitCode::success;
    }
    const Result result = action == QLatin1String("health")   ? client.health()
                          : action == QLatin1String("faults") ? client.faults()
                          : action == QLatin1String("fault")  ? client.addFault(line.arguments[1])
                          : action == QLatin1String("clear")  ? client.clearFaults()
                                                              : client.reset();
    if (result.kind != Result::Kind::Done)
        return adminFailure(result, base, err);
    out << QString::fromUtf8(QJsonDocument(result.body).toJson(QJsonDocument::Indented));
    return exitCode::success;
}

} // namespace vesk::cli
