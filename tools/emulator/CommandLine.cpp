#include "CommandLine.h"

#include <QCommandLineParser>

namespace vesk::emulator {

bool parseListenAddress(const QString& text, QString* host, quint16* port, QString* error) {
    const qsizetype colon = text.lastIndexOf(QLatin1Char(':'));
    QString name = colon > 0 ? text.left(colon) : QString();
    if (name.startsWith(QLatin1Char('[')) && name.endsWith(QLatin1Char(']')))
        name = name.mid(1, name.size() - 2);
    bool ok = false;
    const uint number = colon > 0 ? text.mid(colon + 1).toUInt(&ok) : 0;
    if (name.isEmpty() || !ok || number > 65535) {
        if (error)
            *error = QStringLiteral("\"%1\" is not HOST:PORT (a port from 0 to 65535)").arg(text);
        return false;
    }
    *host = name;
    *port = static_cast<quint16>(number);
    return true;
}

QString emulatorUsage() {
    return QStringLiteral(
        "Usage: vesk-emulator [OPTIONS]\n"
        "Serves the sales, discount and loyalty services of the back office, all sixteen\n"
        "operations, from a seed, until interrupted (Ctrl-C or SIGTERM).\n"
        "\n"
        "  --listen HOST:PORT  the address to serve on (default 127.0.0.1:55555; port 0:\n"
        "                      any free port)\n"
        "  --db FILE           keep the state in this SQLite file between runs (default: in\n"
        "                      memory, lost at exit); the seed goes only into an empty one\n"
        "  --seed FILE         the seed to start from (default: the one built in)\n"
        "  --fault SPEC        make calls misbehave, OPERATION:FAULT[;WHEN][;where=COND]...\n"
        "                      e.g. itemInfo:error=500,code=7,msg=Out of stock;times=2\n"
        "                      FAULT: error=STATUS[,code=N][,msg=TEXT] | delay=DELAY\n"
        "                             | hang[=MS] | notjson | truncate | oversize[=BYTES]\n"
        "                             | reset | dribble=MS[,chunks=N] | stall[=MS]\n"
        "                      DELAY: MS | uniform:MIN-MAX[,seed=S]\n"
        "                             | lognormal:MEDIAN,sigma=F[,seed=S]\n"
        "                      hang, truncate and reset take \",after\": the operation is\n"
        "                      done first, then its reply breaks (reset,after)\n"
        "                      WHEN:  times=N | fraction=F[,seed=S] | always (the default)\n"
        "                      COND:  only requests whose body meets it, e.g.\n"
        "                             where=$.dataId == \"C-1\" (README: the request journal)\n"
        "                      OPERATION \"*\" hits every operation; repeat for more rules.\n"
        "                      At run time: /_emulator/faults, /_emulator/reset and\n"
        "                      /_emulator/health on the same address (vesk emulator --help)\n"
        "  --latency DELAY     delay every call that no fault rule hits, DELAY as above,\n"
        "                      e.g. --latency lognormal:80,sigma=0.4,seed=7\n"
        "  --strict-requests   refuse a request whose body has keys that name no member\n"
        "                      or values of the wrong kind (422, naming each by its JSON\n"
        "                      path); without it such a request is served, and what does\n"
        "                      not fit is logged and kept in the journal\n"
        "  --journal-size N    keep the last N requests of the operations in the journal\n"
        "                      (default 10000; 0: no journal), for /_emulator/requests,\n"
        "                      /_emulator/verify and vesk emulator journal | verify\n"
        "  --journal-bytes N   and at most N bytes of them (default 67108864, 64 MiB)\n"
        "  --help              this text\n"
        "  --version           the versions of the emulator and of the library it loaded\n");
}

std::optional<CommandLine> parseCommandLine(const QStringList& arguments, QString* error) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption listen(QStringLiteral("listen"), QString(),
                                    QStringLiteral("HOST:PORT"));
    const QCommandLineOption db(QStringLiteral("db"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption seed(QStringLiteral("seed"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption help(QStringList{QStringLiteral("help"), QStringLiteral("h")});
    const QCommandLineOption version(QStringLiteral("version"));
    const QCommandLineOption fault(QStringLiteral("fault"), QString(), QStringLiteral("SPEC"));
    const QCommandLineOption latency(QStringLiteral("latency"), QString(), QStringLiteral("DELAY"));
    const QCommandLineOption journalSize(QStringLiteral("journal-size"), QString(),
                                         QStringLiteral("N"));
    const QCommandLineOption journalBytes(QStringLiteral("journal-bytes"), QString(),
                                          QStringLiteral("N"));
    const QCommandLineOption strictRequests(QStringLiteral("strict-requests"));
    parser.addOptions({listen, db, seed, help, version, fault, latency, journalSize, journalBytes,
                       strictRequests});

    const auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        return std::nullopt;
    };
    if (!parser.parse(arguments.isEmpty() ? QStringList{QStringLiteral("vesk-emulator")}
                                          : arguments))
        return fail(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("Unexpected argument: %1")
                        .arg(parser.positionalArguments().constFirst()));

    CommandLine line;
    line.help = parser.isSet(help);
    line.version = parser.isSet(version);
    line.options.strictRequests = parser.isSet(strictRequests);
    if (parser.isSet(listen)) {
        QString why;
        if (!parseListenAddress(parser.value(listen), &line.options.host, &line.options.port, &why))
            return fail(QStringLiteral("--listen: %1").arg(why));
    }
    if (parser.isSet(db)) {
        line.options.databaseFile = parser.value(db);
        if (line.options.databaseFile.isEmpty())
            return fail(QStringLiteral("--db: the file name is empty"));
    }
    if (parser.isSet(seed)) {
        line.options.seedFile = parser.value(seed);
        if (line.options.seedFile.isEmpty())
            return fail(QStringLiteral("--seed: the file name is empty"));
    }
    if (parser.isSet(journalSize)) {
        bool ok = false;
        line.options.journalEntries = parser.value(journalSize).toInt(&ok);
        if (!ok || line.options.journalEntries < 0)
            return fail(QStringLiteral("--journal-size: \"%1\" is not a number of requests from 0")
                            .arg(parser.value(journalSize)));
    }
    if (parser.isSet(journalBytes)) {
        bool ok = false;
        line.options.journalBytes = parser.value(journalBytes).toLongLong(&ok);
        if (!ok || line.options.journalBytes < 1)
            return fail(QStringLiteral("--journal-bytes: \"%1\" is not a number of bytes from 1")
                            .arg(parser.value(journalBytes)));
    }
    for (const QString& spec : parser.values(fault)) {
        QString why;
        const std::optional<FaultRule> rule = parseFaultSpec(spec, &why);
        if (!rule)
            return fail(QStringLiteral("--fault %1: %2").arg(spec, why));
        line.options.faults.append(*rule);
    }
    if (parser.isSet(latency)) {
        const QString delay = parser.value(latency);
        QString why = QStringLiteral("a delay only, without ; WHEN or where=");
        const std::optional<FaultRule> rule =
            delay.contains(QLatin1Char(';'))
                ? std::nullopt
                : parseFaultSpec(QStringLiteral("*:delay=") + delay, &why);
        if (!rule)
            return fail(QStringLiteral("--latency %1: %2").arg(delay, why));
        line.options.latency = rule;
    }
    return line;
}

} // namespace vesk::emulator
