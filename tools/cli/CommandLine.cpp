#include "CommandLine.h"

#include "Duration.h"
#include <requestcheck/Suggestion.h>

#include <emulator/CommandLine.h>
#include <emulator/matching/Condition.h>

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QList>

namespace vesk::cli {
namespace {

// An option, written once: the parser's option and its line in the usage.
struct OptionDefinition {
    QStringList names;
    QString valueName; // empty: a flag
    QString description;

    QCommandLineOption option() const {
        return valueName.isEmpty() ? QCommandLineOption(names)
                                   : QCommandLineOption(names, description, valueName);
    }
};

enum CommonOption { configOption, urlOption, baseOption, verboseOption, helpOption, versionOption };

const QList<OptionDefinition>& commonOptions() {
    static const QList<OptionDefinition> options = {
        {{QStringLiteral("config")},
         QStringLiteral("FILE"),
         QStringLiteral("read the configuration from this INI file instead of\n"
                        "the one that $MORVA_CONFIG names")},
        {{QStringLiteral("url")},
         QStringLiteral("SERVICE=URL"),
         QStringLiteral("the base URL of a service (disc, loyalty or sales)\n"
                        "instead of the configured one and --base; may be\n"
                        "repeated")},
        {{QStringLiteral("base")},
         QStringLiteral("URL"),
         QStringLiteral("one back office for all three services:\n"
                        "http://HOST:PORT, each service at its default path\n"
                        "there")},
        {{QStringLiteral("verbose")},
         QString(),
         QStringLiteral("log every exchange of the services' clients, with its\n"
                        "bodies, and show the request and reply headers (\"> \"\n"
                        "and \"< \" lines, secrets masked) on standard error")},
        {{QStringLiteral("h"), QStringLiteral("help")},
         QString(),
         QStringLiteral("show this usage")},
        {{QStringLiteral("version")},
         QString(),
         QStringLiteral("show the versions of vesk and of the library it loaded")},
    };
    return options;
}

const QList<OptionDefinition>& demoOptions() {
    static const QList<OptionDefinition> options = {
        {{QStringLiteral("rehearse-failures")},
         QString(),
         QStringLiteral("instead of a sale, walk through the failures whose\n"
                        "fate a till must decide, and how it resolves each")},
        {{QStringLiteral("external")},
         QString(),
         QStringLiteral("use the emulator listening at HOST:PORT instead of\n"
                        "starting one")},
        {{QStringLiteral("listen")},
         QStringLiteral("HOST:PORT"),
         QStringLiteral("where the emulator listens or is started (default\n"
                        "127.0.0.1:55555; port 0 without --external: any\n"
                        "free port)")},
    };
    return options;
}

const QList<OptionDefinition>& callOptions() {
    static const QList<OptionDefinition> options = {
        {{QStringLiteral("strict")},
         QString(),
         QStringLiteral("refuse a request with keys that name no member or\n"
                        "values that do not fit their member (exit 64,\n"
                        "nothing sent), instead of warning")},
        {{QStringLiteral("lenient")},
         QString(),
         QStringLiteral("take a 200 reply whose body is not a JSON object as\n"
                        "the library does (an empty response) instead of\n"
                        "failing with exit 4")},
        {{QStringLiteral("timeout")},
         QStringLiteral("DURATION"),
         QStringLiteral("the whole exchange may take this long: 1500ms, 2s,\n"
                        "1.5s, or a bare number of milliseconds (default:\n"
                        "Network:timeoutMs of the configuration, 15000)")},
        {{QStringLiteral("connect-timeout")},
         QStringLiteral("DURATION"),
         QStringLiteral("connecting may take this long, written as for\n"
                        "--timeout (default: Network:connectTimeoutMs, 5000)")},
        {{QStringLiteral("cacert")},
         QStringLiteral("FILE"),
         QStringLiteral("a CA bundle trusted besides the system's (default:\n"
                        "Network:caFile)")},
    };
    return options;
}

const QList<OptionDefinition>& benchOptions() {
    static const QList<OptionDefinition> options = {
        {{QStringLiteral("scenario")},
         QStringLiteral("NAME"),
         QStringLiteral("a built-in scenario instead of one operation: sale,\n"
                        "a whole sale through all sixteen operations")},
        {{QStringLiteral("concurrency")},
         QStringLiteral("N"),
         QStringLiteral("tills calling at once, each with its own client\n"
                        "(default 4, at most 256)")},
        {{QStringLiteral("duration")},
         QStringLiteral("DURATION"),
         QStringLiteral("stop after this long: 30s, 1500ms, 2.5s, or a bare\n"
                        "number of seconds (default 10s, at most 3600s)")},
        {{QStringLiteral("count")},
         QStringLiteral("N"),
         QStringLiteral("stop after N calls (sales with --scenario), or the\n"
                        "duration, whichever comes first")},
        {{QStringLiteral("json")}, QString(), QStringLiteral("print the report as JSON")},
    };
    return options;
}

// The options of its own that a command takes besides those of every command.
const QList<OptionDefinition>& emulatorOptions() {
    static const QList<OptionDefinition> options = {
        {{QStringLiteral("listen")},
         QStringLiteral("HOST:PORT"),
         QStringLiteral("where the emulator listens (default 127.0.0.1:55555)")},
        {{QStringLiteral("operation")},
         QStringLiteral("OP"),
         QStringLiteral("journal: only the requests of this operation")},
        {{QStringLiteral("status")},
         QStringLiteral("S"),
         QStringLiteral("journal: only those answered with S: 200, 4xx, 5xx, ...,\n"
                        "or none (no reply)")},
        {{QStringLiteral("since")},
         QStringLiteral("TIME"),
         QStringLiteral("journal, verify: only requests that arrived at or after\n"
                        "TIME (2026-11-24T10:00:00Z, or ms since the epoch)")},
        {{QStringLiteral("until")},
         QStringLiteral("TIME"),
         QStringLiteral("journal, verify: only those that arrived at or before TIME")},
        {{QStringLiteral("where")},
         QStringLiteral("CONDITION"),
         QStringLiteral("journal, verify: only requests whose body meets it, e.g.\n"
                        "'$.lines[*].barcode == \"4601234000017\"'; repeat for more")},
        {{QStringLiteral("limit")},
         QStringLiteral("N"),
         QStringLiteral("journal: the newest N requests (default 100; 0: all)")},
        {{QStringLiteral("json")},
         QString(),
         QStringLiteral("journal: print the requests as JSON")},
        {{QStringLiteral("exactly")},
         QStringLiteral("N"),
         QStringLiteral("verify: called exactly N times")},
        {{QStringLiteral("at-least")},
         QStringLiteral("N"),
         QStringLiteral("verify: called at least N times (the default: 1)")},
        {{QStringLiteral("at-most")},
         QStringLiteral("N"),
         QStringLiteral("verify: called at most N times")},
        {{QStringLiteral("in-order")},
         QString(),
         QStringLiteral("verify: the CALLs happened in this order")},
    };
    return options;
}

enum class OwnOptions { none, demo, listen, call, json, record, bench, emulator };

QList<OptionDefinition> ownOptions(OwnOptions own) {
    switch (own) {
    case OwnOptions::demo:
        return demoOptions();
    case OwnOptions::call:
        return callOptions();
    case OwnOptions::bench:
        return benchOptions();
    case OwnOptions::json:
        return {{{QStringLiteral("json")}, QString(), QStringLiteral("print the listing as JSON")}};
    case OwnOptions::record:
        return {{{QStringLiteral("json")}, QString(), QStringLiteral("print the listing as JSON")},
                {{QStringLiteral("example")},
                 QString(),
                 QStringLiteral("print a request body with every member instead, a\n"
                                "typed placeholder for each value")}};
    case OwnOptions::emulator:
        return emulatorOptions();
    case OwnOptions::listen:
        return {{{QStringLiteral("listen")},
                 QStringLiteral("HOST:PORT"),
                 QStringLiteral("where the emulator listens (default 127.0.0.1:55555)")}};
    case OwnOptions::none:
        break;
    }
    return {};
}

struct CommandDefinition {
    QString name;
    QString arguments; // as the usage line shows them
    int minArguments;
    int maxArguments;
    QString summary; // for the list of commands
    QString details; // for the command's own usage
    OwnOptions own;
};

// As curl numbers them where curl has a number for the failure.
const QString exitStatus =
    QStringLiteral("Exit status:\n"
                   "  0   done\n"
                   "  1   anything else went wrong\n"
                   "  2   the service refused the call (an HTTP status other than 200)\n"
                   "  3   a network failure of another kind (an undecodable reply, ...)\n"
                   "  4   a 200 reply that is not a JSON object\n"
                   "  6   the host name did not resolve\n"
                   "  7   no connection: refused, or not made within the connect timeout\n"
                   "  28  the request was sent and no reply came within the timeout\n"
                   "  35  no secure connection (TLS handshake or certificate)\n"
                   "  52  the server closed the connection without any reply\n"
                   "  56  the connection broke: reset, or cut while the reply arrived\n"
                   "  63  the reply is larger than the transport's limit\n"
                   "  64  wrong usage or input\n");

const QList<CommandDefinition>& commands() {
    static const QList<CommandDefinition> definitions = {
        {QStringLiteral("call"), QStringLiteral("SERVICE OPERATION [JSON | @FILE | -]"), 2, 3,
         QStringLiteral("perform one operation and print its response as JSON"),
         QStringLiteral(
             "Fills the operation's request record from a JSON object, performs the call\n"
             "through the library and prints the response record as indented JSON.\n"
             "\n"
             "  JSON    the request object as an argument\n"
             "  @FILE   the request object read from FILE\n"
             "  -       the request object read from standard input\n"
             "          (nothing: the empty request {})\n"
             "\n"
             "Members that the request leaves out keep their defaults.\n"
             "Keys that name no member of its record, at any depth, and values that do\n"
             "not fit their member without loss (text for a number, a fraction for an\n"
             "integer, an object for a list...) are reported with their JSON path: as\n"
             "warnings, or with --strict as errors, and then nothing is sent. The\n"
             "response keeps the record's order of members. A refused call shows the\n"
             "HTTP status, the service's code and message and the start of the body. A\n"
             "200 reply whose body is not a JSON object (HTML, empty, an array) is an\n"
             "error, exit 4, unless --lenient: the library reads it as an empty response.\n"
             "`vesk ops` lists the operations, `vesk record NAME` the members of a record.\n"),
         OwnOptions::call},
        {QStringLiteral("ops"), QString(), 0, 0,
         QStringLiteral("list the operations, their endpoints and records"),
         QStringLiteral("Lists the sixteen operations, one a line: service, operation, its\n"
                        "endpoint (POST and the path under the configured base URL), request\n"
                        "record and response record; with --json, as a JSON array.\n"),
         OwnOptions::json},
        {QStringLiteral("record"), QStringLiteral("NAME"), 1, 1,
         QStringLiteral("list the members of a record"),
         QStringLiteral(
             "Lists the members of a record, one a line: JSON key, kind and whether it is\n"
             "plain (always sent) or optional (left out when absent). NAME is qualified\n"
             "(vesk::disc::LinesEntryRequest), without vesk:: (disc::LinesEntryRequest),\n"
             "or the class name alone when only one service has a record of that name.\n"
             "Kinds: integer, number, boolean, string, string list, date-time, and\n"
             "list of RECORD (a list of entries, each the record named). With --json, as\n"
             "a JSON array of {\"key\", \"kind\", \"optional\", \"entry\"}.\n"
             "With --example, a request body with every member instead, ready to edit\n"
             "and give to `vesk call`: 0, 0.0, false, \"\", [] or an ISO date and time\n"
             "for each value, and a list of entries as one entry with its own members.\n"),
         OwnOptions::record},
        {QStringLiteral("openapi"), QStringLiteral("[FILE]"), 0, 1,
         QStringLiteral("write the services' contract as an OpenAPI 3.1 document"),
         QStringLiteral(
             "Writes the three services as an OpenAPI 3.1 document (JSON) to FILE, or to\n"
             "standard output: every operation with its request and response, every record with\n"
             "its members, their JSON types, which are always sent (required) and the\n"
             "entry records of lists, and the error object of a refused call.\n"),
         OwnOptions::none},
        {QStringLiteral("bench"), QStringLiteral("[SERVICE OPERATION [JSON | @FILE | -]]"), 0, 3,
         QStringLiteral("load a back office with many tills' calls and report"),
         QStringLiteral(
             "Calls one operation with one request (as `call` reads it), or with\n"
             "--scenario sale whole sales through all sixteen operations, from\n"
             "--concurrency tills at once, each with a client and connection of its own,\n"
             "for --duration (a bare number counts seconds) or --count calls (sales). A\n"
             "live progress line goes to a terminal's standard error. At the end: calls\n"
             "and sales per second, latency percentiles of the calls (p50, p90, p99, max)\n"
             "and failures by kind (ServiceError CODE, NotAnObject for a 200 that is no\n"
             "JSON object, NoReply, ConnectionLost, ReplyCut, Refused, ...); --json prints\n"
             "the same as JSON. Only the configured, --base or --url addresses are\n"
             "called. Exit status 1 when any call failed.\n"),
         OwnOptions::bench},
        {QStringLiteral("emulator"),
         QStringLiteral(
             "health | faults | fault SPEC | clear | reset | journal | verify CALL... | metrics"),
         1, 64, QStringLiteral("drive a running vesk-emulator: faults, journal, verify, reset"),
         QStringLiteral(
             "Drives the vesk-emulator that listens at --listen HOST:PORT, or at --base\n"
             "URL, through its admin API.\n"
             "\n"
             "  health         whether it serves, since when, how many requests, active\n"
             "                 faults, the journal's size\n"
             "  faults         the fault rules in force, with how often each fired\n"
             "  fault SPEC     adds a rule, OPERATION:FAULT[;WHEN][;where=COND]... as\n"
             "                 vesk-emulator --fault takes it, e.g.\n"
             "                 itemInfo:error=503,code=42,msg=Busy;times=1 or\n"
             "                 commitCheque:reset;where=$.dataId == \"C-1\"\n"
             "  clear          removes every fault rule\n"
             "  reset          puts every table back to the seed, as on a fresh start, and\n"
             "                 empties the journal\n"
             "  journal        the requests that the journal kept, oldest first, as a table\n"
             "                 (--json: as the admin API gives them); --operation, --status,\n"
             "                 --since, --until and --where choose which\n"
             "  journal count  how many of them there are\n"
             "  journal clear  empties the journal\n"
             "  verify CALL    whether CALL was made: at least once, or --exactly N,\n"
             "                 --at-least N, --at-most N times (between --since and --until)\n"
             "  verify --in-order CALL CALL...\n"
             "                 whether the CALLs were made in this order\n"
             "  metrics        the counts of requests, latencies and faults, in the\n"
             "                 Prometheus text format\n"
             "\n"
             "A CALL is an operation's name, then conditions on its request body joined by\n"
             "&&, in one argument: 'commitCheque $.chequeId == \"C-1\" && $.card exists'.\n"
             "A condition is PATH OP VALUE: PATH $.member, $.list[0].member or\n"
             "$.list[*].member (any element); OP == != < <= > >= or ~= (a regular\n"
             "expression); VALUE a JSON value (\"text\", 2, true, null); or PATH exists,\n"
             "PATH absent. --where adds conditions to a single CALL.\n"
             "\n"
             "verify prints what it found and exits 0, or what it expected, what it saw and\n"
             "the requests that came closest with the members that differed, and exits 1.\n"
             "The other actions print the emulator's answer as JSON. `vesk-emulator --help`\n"
             "lists the faults.\n"),
         OwnOptions::emulator},
        {QStringLiteral("demo"),
         QStringLiteral("[--rehearse-failures] [--external] [--listen HOST:PORT]"), 0, 0,
         QStringLiteral("run one whole sale against the emulator"),
         QStringLiteral(
             "Runs one whole sale through the library's clients against the back-office\n"
             "emulator at --listen HOST:PORT or --base URL, started in this process\n"
             "unless --external, and prints its trace and receipt; it fails (exit\n"
             "status 1) unless every step behaved as the seed says. The demo points the clients at "
             "its emulator itself: --url does\n"
             "not apply to it. An external emulator is reset to its seed first, so that\n"
             "the demo can run again and again against the same one.\n"
             "With --rehearse-failures it makes the emulator break a commit's reply after\n"
             "booking it, reset a reservation's connection after taking the stock, refuse\n"
             "a call, and calls an address where nothing listens; for each it prints the\n"
             "call's outcome and what a till does, and checks that a repeated commit or\n"
             "reservation is applied once.\n"),
         OwnOptions::demo},
        {QStringLiteral("help"), QStringLiteral("[COMMAND]"), 0, 1,
         QStringLiteral("show this usage, or the usage of a command"),
         QStringLiteral("Shows the usage of vesk, or of COMMAND.\n"), OwnOptions::none},
    };
    return definitions;
}

QStringList commandNames() {
    QStringList names;
    for (const CommandDefinition& definition : commands())
        names.append(definition.name);
    return names;
}

const CommandDefinition* findCommand(const QString& name) {
    for (const CommandDefinition& definition : commands())
        if (definition.name == name)
            return &definition;
    return nullptr;
}

// "  --url SERVICE=URL   the base URL..." with continuation lines indented.
QString optionLines(const QList<OptionDefinition>& options) {
    constexpr int column = 22;
    QString text;
    for (const OptionDefinition& definition : options) {
        QStringList names;
        for (const QString& name : definition.names)
            names.append((name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name);
        QString head = QStringLiteral("  ") + names.join(QStringLiteral(", "));
        if (!definition.valueName.isEmpty())
            head += QLatin1Char(' ') + definition.valueName;
        const QStringList lines = definition.description.split(QLatin1Char('\n'));
        if (head.size() + 2 > column)
            text += head + QLatin1Char('\n') + QString(column, QLatin1Char(' '));
        else
            text += head.leftJustified(column);
        text +=
            lines.join(QLatin1Char('\n') + QString(column, QLatin1Char(' '))) + QLatin1Char('\n');
    }
    return text;
}

QString generalUsage() {
    constexpr int column = 22;
    QString text = QStringLiteral("Usage: vesk [OPTIONS] COMMAND [ARGUMENTS]\n"
                                  "Calls the back-office services through the library, one "
                                  "operation at a time.\n\nCommands:\n");
    for (const CommandDefinition& definition : commands()) {
        QString head = QStringLiteral("  ") + definition.name;
        if (!definition.arguments.isEmpty())
            head += QLatin1Char(' ') + definition.arguments;
        if (head.size() + 2 > column)
            text += head + QLatin1Char('\n') + QString(column, QLatin1Char(' '));
        else
            text += head.leftJustified(column);
        text += definition.summary + QLatin1Char('\n');
    }
    text += QStringLiteral("\nOptions of every command:\n") + optionLines(commonOptions()) +
            QStringLiteral("\n`vesk help COMMAND` shows the usage of a command.\n") + exitStatus;
    return text;
}

QString commandUsage(const CommandDefinition& definition) {
    QString text = QStringLiteral("Usage: vesk ") + definition.name + QStringLiteral(" [OPTIONS]");
    if (!definition.arguments.isEmpty())
        text += QLatin1Char(' ') + definition.arguments;
    text += QLatin1Char('\n') + definition.details + QStringLiteral("\nOptions:\n");
    text += optionLines(ownOptions(definition.own));
    return text + optionLines(commonOptions()) + QLatin1Char('\n') + exitStatus;
}

// The options of every command that one parser saw, added to `line`.
void takeCommonOptions(const QCommandLineParser& parser, const QList<QCommandLineOption>& options,
                       CommandLine* line) {
    if (parser.isSet(options[configOption]))
        line->configFile = parser.value(options[configOption]);
    line->urls += parser.values(options[urlOption]);
    if (parser.isSet(options[baseOption]))
        line->base = parser.value(options[baseOption]);
    line->verbose = line->verbose || parser.isSet(options[verboseOption]);
    line->help = line->help || parser.isSet(options[helpOption]);
    line->version = line->version || parser.isSet(options[versionOption]);
}

QList<QCommandLineOption> parserOptions(const QList<OptionDefinition>& definitions) {
    QList<QCommandLineOption> options;
    for (const OptionDefinition& definition : definitions)
        options.append(definition.option());
    return options;
}

// The options of `emulator journal` and `emulator verify`, checked.
bool takeJournalOptions(const QCommandLineParser& parser, CommandLine* line, QString* error) {
    line->operation = parser.value(QStringLiteral("operation"));
    line->status = parser.value(QStringLiteral("status"));
    line->since = parser.value(QStringLiteral("since"));
    line->until = parser.value(QStringLiteral("until"));
    line->where = parser.values(QStringLiteral("where"));
    line->inOrder = parser.isSet(QStringLiteral("in-order"));
    for (const QString& condition : line->where) {
        QString why;
        if (!emulator::Condition::parse(condition, &why)) {
            *error = QStringLiteral("--where '%1': %2").arg(condition, why);
            return false;
        }
    }
    bool ok = true;
    if (parser.isSet(QStringLiteral("limit"))) {
        line->limit = parser.value(QStringLiteral("limit")).toInt(&ok);
        if (!ok || line->limit < 0) {
            *error = QStringLiteral("--limit: \"%1\" is not a number from 0 (0: all)")
                         .arg(parser.value(QStringLiteral("limit")));
            return false;
        }
    }
    for (const auto& [option, kind] :
         {std::pair{"exactly", "exactly"}, std::pair{"at-least", "atLeast"},
          std::pair{"at-most", "atMost"}}) {
        const QString name = QLatin1String(option);
        if (!parser.isSet(name))
            continue;
        if (!line->countKind.isEmpty()) {
            *error = QStringLiteral("give one of --exactly, --at-least and --at-most");
            return false;
        }
        line->countKind = QLatin1String(kind);
        line->countTimes = parser.value(name).toLongLong(&ok);
        if (!ok || line->countTimes < 0) {
            *error =
                QStringLiteral("--%1: \"%2\" is not a number from 0").arg(name, parser.value(name));
            return false;
        }
    }
    return true;
}

QString argumentCount(int count) {
    return count == 1 ? QStringLiteral("1 argument") : QStringLiteral("%1 arguments").arg(count);
}

} // namespace

std::optional<CommandLine> parseCommandLine(const QStringList& arguments, QString* error,
                                            QString* command) {
    const auto fail = [&](const QString& why) {
        *error = why;
        return std::nullopt;
    };
    command->clear();
    const QString program = QStringLiteral("vesk");
    const QList<QCommandLineOption> common = parserOptions(commonOptions());
    CommandLine line;

    // Up to the command's name: the options of every command.
    QCommandLineParser first;
    first.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    first.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    first.addOptions(common);
    if (!first.parse(QStringList{program} + arguments))
        return fail(first.errorText());
    takeCommonOptions(first, common, &line);
    QStringList rest = first.positionalArguments();
    if (rest.isEmpty()) {
        if (line.version)
            return line;
        if (!line.help)
            return fail(QStringLiteral("no command given"));
        // `vesk --help`: the help command, for the general usage.
        line.command = QStringLiteral("help");
        line.help = false;
        return line;
    }
    line.command = rest.takeFirst();
    const CommandDefinition* definition = findCommand(line.command);
    if (!definition)
        return fail(QStringLiteral("unknown command \"%1\"%2")
                        .arg(line.command, check::didYouMean(line.command, commandNames())));
    *command = line.command;

    // After it: its arguments, its own options and again those of every command.
    QCommandLineParser second;
    second.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    second.addOptions(common);
    second.addOptions(parserOptions(ownOptions(definition->own)));
    if (!second.parse(QStringList{program} + rest))
        return fail(second.errorText());
    takeCommonOptions(second, common, &line);
    line.arguments = second.positionalArguments();
    if (line.help)
        return line;

    if (line.arguments.size() < definition->minArguments ||
        line.arguments.size() > definition->maxArguments) {
        const QString expected = definition->minArguments == definition->maxArguments
                                     ? argumentCount(definition->minArguments)
                                     : QStringLiteral("%1 to %2 arguments")
                                           .arg(definition->minArguments)
                                           .arg(definition->maxArguments);
        return fail(QStringLiteral("%1 takes %2, not %3")
                        .arg(definition->name, expected)
                        .arg(line.arguments.size()));
    }
    if (definition->own == OwnOptions::demo) {
        line.external = second.isSet(QStringLiteral("external"));
        line.rehearseFailures = second.isSet(QStringLiteral("rehearse-failures"));
    }
    if (definition->own == OwnOptions::json || definition->own == OwnOptions::record ||
        definition->own == OwnOptions::bench || definition->own == OwnOptions::emulator)
        line.json = second.isSet(QStringLiteral("json"));
    if (definition->own == OwnOptions::emulator) {
        QString why;
        if (!takeJournalOptions(second, &line, &why))
            return fail(why);
    }
    if (definition->own == OwnOptions::record) {
        line.example = second.isSet(QStringLiteral("example"));
        if (line.example && line.json)
            return fail(QStringLiteral("--example and --json do not go together: the example "
                                       "is JSON already"));
    }
    if (definition->own == OwnOptions::bench) {
        line.scenario = second.value(QStringLiteral("scenario"));
        bool ok = true;
        if (second.isSet(QStringLiteral("concurrency"))) {
            line.concurrency = second.value(QStringLiteral("concurrency")).toInt(&ok);
            if (!ok || line.concurrency < 1 || line.concurrency > 256)
                return fail(QStringLiteral("--concurrency: \"%1\" is not a number from 1 to 256")
                                .arg(second.value(QStringLiteral("concurrency"))));
        }
        if (second.isSet(QStringLiteral("duration"))) {
            QString why;
            const std::optional<qint64> ms = parseDuration(second.value(QStringLiteral("duration")),
                                                           BareUnit::Seconds, 1, 3600000, &why);
            if (!ms)
                return fail(QStringLiteral("--duration: ") + why);
            line.durationS = double(*ms) / 1000.0;
        }
        if (second.isSet(QStringLiteral("count"))) {
            line.count = second.value(QStringLiteral("count")).toLongLong(&ok);
            if (!ok || line.count < 1 || line.count > 100000000)
                return fail(QStringLiteral("--count: \"%1\" is not a number from 1 to 100000000")
                                .arg(second.value(QStringLiteral("count"))));
        }
    }
    if (definition->own == OwnOptions::call) {
        line.strict = second.isSet(QStringLiteral("strict"));
        line.lenient = second.isSet(QStringLiteral("lenient"));
        for (const auto& [name, target] :
             {std::pair{QStringLiteral("timeout"), &line.timeoutMs},
              std::pair{QStringLiteral("connect-timeout"), &line.connectTimeoutMs}}) {
            if (!second.isSet(name))
                continue;
            QString why;
            const std::optional<qint64> ms =
                parseDuration(second.value(name), BareUnit::Milliseconds, 1, 3600000, &why);
            if (!ms)
                return fail(QStringLiteral("--%1: %2").arg(name, why));
            *target = int(*ms);
        }
        if (second.isSet(QStringLiteral("cacert"))) {
            line.caFile = second.value(QStringLiteral("cacert"));
            if (line.caFile.isEmpty())
                return fail(QStringLiteral("--cacert: the file name is empty"));
        }
    }
    const bool takesListen = definition->own == OwnOptions::demo ||
                             definition->own == OwnOptions::listen ||
                             definition->own == OwnOptions::emulator;
    if (takesListen && second.isSet(QStringLiteral("listen"))) {
        QString why;
        if (!emulator::parseListenAddress(second.value(QStringLiteral("listen")), &line.listenHost,
                                          &line.listenPort, &why))
            return fail(QStringLiteral("--listen: %1").arg(why));
    }
    if (line.command == QLatin1String("help") && !line.arguments.isEmpty() &&
        !findCommand(line.arguments.first())) {
        command->clear();
        return fail(QStringLiteral("unknown command \"%1\"%2")
                        .arg(line.arguments.first(),
                             check::didYouMean(line.arguments.first(), commandNames())));
    }
    return line;
}

bool isCommand(const QString& name) {
    return findCommand(name) != nullptr;
}

QString usage(const QString& command) {
    const CommandDefinition* definition = findCommand(command);
    return definition ? commandUsage(*definition) : generalUsage();
}

} // namespace vesk::cli
