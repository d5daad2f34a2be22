#include "Fault.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QLocale>
#include <QRegularExpression>

#include <cmath>
#include <functional>
#include <limits>

namespace vesk::emulator {

namespace {

constexpr int maxHangMs = 3600000;     // an hour
constexpr int defaultHangMs = 300000;  // well past any client's timeout (the library's: 15 s)
constexpr qint64 maxBytes = 256 << 20; // 256 MiB
constexpr qint64 defaultOversize = 8 << 20;
constexpr qint64 maxTimes = 1000000000;
constexpr int defaultChunks = 10;
constexpr int maxChunks = 10000;
constexpr double maxSigma = 5; // e^5: a tail to 150 times the median

const QString syntax = QStringLiteral("expected OPERATION:FAULT[;WHEN][;where=CONDITION]...");

struct SpecError {
    QString message;
};

[[noreturn]] void fail(const QString& message) {
    throw SpecError{message};
}

// Pieces of `text` between unescaped separators, escapes kept.
QStringList splitUnescaped(const QString& text, QChar separator) {
    QStringList pieces;
    QString piece;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('\\')) {
            if (i + 1 == text.size())
                fail(QStringLiteral("a '\\' ends the text: nothing to escape"));
            piece += c;
            piece += text.at(++i);
        } else if (c == separator) {
            pieces << piece;
            piece.clear();
        } else {
            piece += c;
        }
    }
    pieces << piece;
    return pieces;
}

QString unescape(const QString& text) {
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i)
        plain += text.at(i) == QLatin1Char('\\') && i + 1 < text.size() ? text.at(++i) : text.at(i);
    return plain;
}

QString escape(const QString& text) {
    QString escaped;
    for (const QChar c : text) {
        if (c == QLatin1Char('\\') || c == QLatin1Char(',') || c == QLatin1Char(';'))
            escaped += QLatin1Char('\\');
        escaped += c;
    }
    return escaped;
}

// "key=value" or "key": the key and the value, unescaped; `hasValue` says which.
struct Item {
    QString key;
    QString value;
    bool hasValue = false;
};

Item item(const QString& raw) {
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw.at(i) == QLatin1Char('\\'))
            ++i;
        else if (raw.at(i) == QLatin1Char('='))
            return {unescape(raw.left(i)), unescape(raw.mid(i + 1)), true};
    }
    return {unescape(raw), QString(), false};
}

qint64 wholeNumber(const QString& name, const QString& text, qint64 min, qint64 max) {
    static const QRegularExpression digits(QStringLiteral("^-?[0-9]{1,19}$"));
    bool ok = digits.match(text).hasMatch();
    const qint64 value = ok ? text.toLongLong(&ok) : 0;
    if (!ok || value < min || value > max)
        fail(QStringLiteral("%1: \"%2\" is not a whole number from %3 to %4")
                 .arg(name, text)
                 .arg(min)
                 .arg(max));
    return value;
}

qint64 size(const QString& name, const QString& text) {
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,12})([KM]?)$"));
    const QRegularExpressionMatch match = form.match(text);
    qint64 value = match.hasMatch() ? match.captured(1).toLongLong() : 0;
    if (match.captured(2) == QLatin1String("K"))
        value <<= 10;
    else if (match.captured(2) == QLatin1String("M"))
        value <<= 20;
    if (value < 1 || value > maxBytes)
        fail(QStringLiteral("%1: \"%2\" is not a size from 1 to %3 bytes (a number, or one "
                            "followed by K or M for KiB or MiB)")
                 .arg(name, text)
                 .arg(maxBytes));
    return value;
}

double fraction(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^[0-9]*\\.?[0-9]+([eE]-?[0-9]+)?$"));
    bool ok = form.match(text).hasMatch();
    const double value = ok ? text.toDouble(&ok) : 0;
    if (!ok || !(value > 0 && value <= 1))
        fail(QStringLiteral("fraction: \"%1\" is not a number above 0 and at most 1").arg(text));
    return value;
}

double sigma(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^[0-9]*\\.?[0-9]+$"));
    bool ok = form.match(text).hasMatch();
    const double value = ok ? text.toDouble(&ok) : 0;
    if (!ok || !(value > 0 && value <= maxSigma))
        fail(QStringLiteral("sigma: \"%1\" is not a number above 0 and at most %2")
                 .arg(text)
                 .arg(maxSigma));
    return value;
}

// A delay's value: MS, fixed:MS, uniform:MIN-MAX or lognormal:MEDIAN.
void readDelay(const QString& text, Fault& fault) {
    const auto ms = [&](const char* name, const QString& value, qint64 min) {
        return int(wholeNumber(QLatin1String(name), value, min, maxDelayMs));
    };
    static const QRegularExpression range(QStringLiteral("^uniform:([^-]*)-(.*)$"));
    const QRegularExpressionMatch uniform = range.match(text);
    if (uniform.hasMatch()) {
        fault.distribution = Fault::Distribution::Uniform;
        fault.minMs = ms("uniform's MIN", uniform.captured(1), 0);
        fault.maxMs = ms("uniform's MAX", uniform.captured(2), fault.minMs);
    } else if (text.startsWith(QLatin1String("lognormal:"))) {
        fault.distribution = Fault::Distribution::LogNormal;
        fault.medianMs = ms("lognormal's MEDIAN", text.mid(10), 1);
    } else if (text.startsWith(QLatin1String("fixed:"))) {
        fault.ms = ms("delay", text.mid(6), 0);
    } else if (text.contains(QLatin1Char(':'))) {
        fail(QStringLiteral("delay: \"%1\" is not MS, fixed:MS, uniform:MIN-MAX or "
                            "lognormal:MEDIAN,sigma=F")
                 .arg(text));
    } else {
        fault.ms = ms("delay", text, 0);
    }
}

quint64 seed(const QString& text) {
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,20}$"));
    bool ok = digits.match(text).hasMatch();
    const quint64 value = ok ? text.toULongLong(&ok) : 0;
    if (!ok)
        fail(QStringLiteral("seed: \"%1\" is not a whole number from 0 to %2")
                 .arg(text)
                 .arg(std::numeric_limits<quint64>::max()));
    return value;
}

struct KindName {
    Fault::Kind kind;
    const char* name;
};

const KindName kindNames[] = {
    {Fault::Kind::Error, "error"},       {Fault::Kind::Delay, "delay"},
    {Fault::Kind::Hang, "hang"},         {Fault::Kind::NotJson, "notjson"},
    {Fault::Kind::Truncate, "truncate"}, {Fault::Kind::Oversize, "oversize"},
    {Fault::Kind::Reset, "reset"},       {Fault::Kind::Dribble, "dribble"},
    {Fault::Kind::Stall, "stall"},
};

// The parameters after the first item of a part: each once, only the allowed
// ones; `flags` are allowed too and take no value.
void readParameters(const QString& owner, const QStringList& items, const QStringList& allowed,
                    const std::function<void(const Item&)>& take,
                    const QStringList& flags = QStringList()) {
    QStringList seen;
    for (qsizetype i = 1; i < items.size(); ++i) {
        const Item parameter = item(items.at(i));
        const bool flag = flags.contains(parameter.key);
        if (!flag && !allowed.contains(parameter.key))
            fail(QStringLiteral("%1 does not take \"%2\"").arg(owner, parameter.key));
        if (seen.contains(parameter.key))
            fail(QStringLiteral("\"%1\" is given twice").arg(parameter.key));
        seen << parameter.key;
        if (flag && parameter.hasValue)
            fail(QStringLiteral("%1 takes no value").arg(parameter.key));
        if (!flag && !parameter.hasValue)
            fail(QStringLiteral("%1 needs a value: %1=%2")
                     .arg(parameter.key,
                          parameter.key == QLatin1String("msg")     ? QStringLiteral("TEXT")
                          : parameter.key == QLatin1String("seed")  ? QStringLiteral("S")
                          : parameter.key == QLatin1String("sigma") ? QStringLiteral("F")
                                                                    : QStringLiteral("N")));
        take(parameter);
    }
}

// The fault, and the rule's seed when a drawn delay gives one (`seeded`).
Fault readFault(const QString& text, FaultRule& rule, bool& seeded) {
    const QStringList items = splitUnescaped(text, QLatin1Char(','));
    const Item head = item(items.constFirst());
    Fault fault;
    bool known = false;
    for (const KindName& entry : kindNames)
        if (head.key == QLatin1String(entry.name)) {
            fault.kind = entry.kind;
            known = true;
        }
    if (!known)
        fail(QStringLiteral("unknown fault \"%1\" (error, delay, hang, notjson, truncate, "
                            "oversize, reset, dribble or stall)")
                 .arg(head.key));
    const auto needsValue = [&](const char* form) {
        if (!head.hasValue)
            fail(QStringLiteral("%1 needs a value: %2").arg(head.key, QLatin1String(form)));
    };
    const auto noValue = [&] {
        if (head.hasValue)
            fail(QStringLiteral("%1 takes no value").arg(head.key));
    };
    QStringList allowed;
    QStringList flags;
    switch (fault.kind) {
    case Fault::Kind::Error:
        needsValue("error=STATUS");
        fault.status = int(wholeNumber(head.key, head.value, 400, 599));
        fault.code = fault.status;
        fault.userMsg = QStringLiteral("Injected fault");
        allowed = QStringList{QStringLiteral("code"), QStringLiteral("msg")};
        break;
    case Fault::Kind::Delay:
        needsValue("delay=MS, uniform:MIN-MAX or lognormal:MEDIAN,sigma=F");
        readDelay(head.value, fault);
        if (fault.distribution == Fault::Distribution::LogNormal)
            allowed << QStringLiteral("sigma");
        if (fault.distribution != Fault::Distribution::Fixed)
            allowed << QStringLiteral("seed");
        break;
    case Fault::Kind::Hang:
        fault.ms =
            head.hasValue ? int(wholeNumber(head.key, head.value, 1, maxHangMs)) : defaultHangMs;
        flags << QStringLiteral("after");
        break;
    case Fault::Kind::Oversize:
        fault.bytes = head.hasValue ? size(head.key, head.value) : defaultOversize;
        break;
    case Fault::Kind::Dribble:
        needsValue("dribble=MS");
        fault.ms = int(wholeNumber(head.key, head.value, 0, maxDelayMs));
        fault.chunks = defaultChunks;
        allowed = QStringList{QStringLiteral("chunks")};
        break;
    case Fault::Kind::Stall:
        fault.ms =
            head.hasValue ? int(wholeNumber(head.key, head.value, 1, maxHangMs)) : defaultHangMs;
        break;
    case Fault::Kind::Truncate:
    case Fault::Kind::Reset:
        flags << QStringLiteral("after");
        noValue();
        break;
    case Fault::Kind::NotJson:
        noValue();
        break;
    }
    readParameters(
        head.key, items, allowed,
        [&](const Item& parameter) {
            if (parameter.key == QLatin1String("after"))
                fault.after = true;
            else if (parameter.key == QLatin1String("chunks"))
                fault.chunks = int(wholeNumber(parameter.key, parameter.value, 1, maxChunks));
            else if (parameter.key == QLatin1String("sigma"))
                fault.sigma = sigma(parameter.value);
            else if (parameter.key == QLatin1String("seed")) {
                rule.seed = seed(parameter.value);
                seeded = true;
            } else if (parameter.key == QLatin1String("code"))
                fault.code =
                    int(wholeNumber(parameter.key, parameter.value, std::numeric_limits<int>::min(),
                                    std::numeric_limits<int>::max()));
            else
                fault.userMsg = parameter.value;
        },
        flags);
    if (fault.distribution == Fault::Distribution::LogNormal && fault.sigma == 0)
        fail(QStringLiteral("lognormal needs its spread: lognormal:MEDIAN,sigma=F"));
    return fault;
}

void readWhen(const QString& text, FaultRule& rule, bool seeded) {
    const QStringList items = splitUnescaped(text, QLatin1Char(','));
    const Item head = item(items.constFirst());
    QStringList allowed;
    if (head.key == QLatin1String("always")) {
        if (head.hasValue)
            fail(QStringLiteral("always takes no value"));
        rule.when = FaultRule::When::Always;
    } else if (head.key == QLatin1String("times") && head.hasValue) {
        rule.when = FaultRule::When::Times;
        rule.times = wholeNumber(head.key, head.value, 1, maxTimes);
    } else if (head.key == QLatin1String("fraction") && head.hasValue) {
        rule.when = FaultRule::When::Fraction;
        rule.fraction = fraction(head.value);
        allowed << QStringLiteral("seed");
    } else {
        fail(QStringLiteral("unknown condition \"%1\" (times=N, fraction=F[,seed=S] or always)")
                 .arg(items.constFirst()));
    }
    readParameters(head.key, items, allowed, [&](const Item& parameter) {
        if (seeded)
            fail(QStringLiteral("seed is given twice: the fraction and the delay draw from one "
                                "generator"));
        rule.seed = seed(parameter.value);
    });
}

FaultRule readRule(const QString& spec) {
    if (spec.isEmpty())
        fail(QStringLiteral("empty: %1").arg(syntax));
    const qsizetype colon = spec.indexOf(QLatin1Char(':'));
    if (colon < 0)
        fail(QStringLiteral("no ':': %1").arg(syntax));
    FaultRule rule;
    rule.operation = spec.left(colon);
    if (rule.operation != QLatin1String("*") && !operationNames().contains(rule.operation))
        fail(QStringLiteral("unknown operation \"%1\" (an operation's name, such as itemInfo, "
                            "or *)")
                 .arg(rule.operation));
    const QStringList parts = splitUnescaped(spec.mid(colon + 1), QLatin1Char(';'));
    if (parts.constFirst().isEmpty())
        fail(QStringLiteral("no fault after ':': %1").arg(syntax));
    bool seeded = false;
    rule.fault = readFault(parts.constFirst(), rule, seeded);
    bool when = false;
    for (const QString& part : parts.mid(1)) {
        const Item clause = item(part);
        if (clause.key == QLatin1String("where")) {
            QString why;
            const std::optional<Condition> condition = Condition::parse(clause.value, &why);
            if (!condition)
                fail(QStringLiteral("where: %1").arg(why));
            rule.where.append(*condition);
            continue;
        }
        if (when || !rule.where.isEmpty())
            fail(QStringLiteral("one WHEN at most, before any where=: %1").arg(syntax));
        readWhen(part, rule, seeded);
        when = true;
    }
    return rule;
}

// A JSON member as the text form writes it; nullopt when absent.
std::optional<QString> memberText(const QJsonObject& object, const char* key) {
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined())
        return std::nullopt;
    if (QLatin1String(key) == QLatin1String("msg") ||
        QLatin1String(key) == QLatin1String("distribution") ||
        QLatin1String(key) == QLatin1String("operation") ||
        QLatin1String(key) == QLatin1String("fault")) {
        if (!value.isString())
            fail(QStringLiteral("\"%1\" must be a string").arg(QLatin1String(key)));
        return value.toString();
    }
    if (!value.isDouble())
        fail(QStringLiteral("\"%1\" must be a number").arg(QLatin1String(key)));
    const double number = value.toDouble();
    // Range first: converting a double outside 64 bits to an integer is undefined.
    if (std::abs(number) < 9.2e18 && number == std::trunc(number))
        return QString::number(qint64(number));
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

// A drawn delay's members as its text: "=uniform:20-200" or "=lognormal:80,sigma=0.4";
// empty for any other fault.
QString drawnDelayText(const QJsonObject& object, const QString& kind) {
    const std::optional<QString> distribution = memberText(object, "distribution");
    const std::optional<QString> min = memberText(object, "min");
    const std::optional<QString> max = memberText(object, "max");
    const std::optional<QString> median = memberText(object, "median");
    const std::optional<QString> spread = memberText(object, "sigma");
    const bool uniform = distribution == QStringLiteral("uniform");
    const bool lognormal = distribution == QStringLiteral("lognormal");
    if (distribution && (kind != QLatin1String("delay") || (!uniform && !lognormal)))
        fail(QStringLiteral("\"distribution\" is \"uniform\" or \"lognormal\", for a delay"));
    if ((min || max) != uniform || (uniform && !(min && max)))
        fail(QStringLiteral("\"min\" and \"max\" go together, with \"distribution\": \"uniform\""));
    if ((median || spread) != lognormal || (lognormal && !(median && spread)))
        fail(QStringLiteral(
            "\"median\" and \"sigma\" go together, with \"distribution\": \"lognormal\""));
    if (uniform)
        return QStringLiteral("=uniform:%1-%2").arg(*min, *max);
    if (lognormal)
        return QStringLiteral("=lognormal:%1,sigma=%2").arg(*median, *spread);
    return QString();
}

FaultRule ruleFromJson(const QJsonObject& object) {
    if (object.contains(QLatin1String("spec"))) {
        if (object.size() != 1 || !object.value(QLatin1String("spec")).isString())
            fail(QStringLiteral("\"spec\" must be a string and the only member"));
        return readRule(object.value(QLatin1String("spec")).toString());
    }
    static const QStringList known{"operation", "fault", "status",       "code",  "msg",
                                   "ms",        "bytes", "chunks",       "after", "times",
                                   "fraction",  "seed",  "distribution", "min",   "max",
                                   "median",    "sigma", "where"};
    for (auto it = object.begin(); it != object.end(); ++it)
        if (!known.contains(it.key()))
            fail(QStringLiteral("unknown member \"%1\"").arg(it.key()));
    const std::optional<QString> operation = memberText(object, "operation");
    const std::optional<QString> kind = memberText(object, "fault");
    if (!operation || !kind)
        fail(QStringLiteral("\"operation\" and \"fault\" are required"));

    // The same rule as text, so that both forms are checked alike.
    QString spec = *operation + QLatin1Char(':') + escape(*kind);
    const std::optional<QString> status = memberText(object, "status");
    const std::optional<QString> ms = memberText(object, "ms");
    const std::optional<QString> bytes = memberText(object, "bytes");
    const QString valueKey = *kind == QLatin1String("error")      ? QStringLiteral("status")
                             : *kind == QLatin1String("oversize") ? QStringLiteral("bytes")
                                                                  : QStringLiteral("ms");
    for (const auto& [key, value] :
         {std::pair{QStringLiteral("status"), status}, std::pair{QStringLiteral("ms"), ms},
          std::pair{QStringLiteral("bytes"), bytes}}) {
        if (!value)
            continue;
        if (key != valueKey)
            fail(QStringLiteral("%1 does not take \"%2\"").arg(*kind, key));
        spec += QLatin1Char('=') + *value;
    }
    const QString drawn = drawnDelayText(object, *kind);
    if (!drawn.isEmpty() && ms)
        fail(QStringLiteral("a drawn delay does not take \"ms\""));
    spec += drawn;
    for (const char* key : {"code", "msg", "chunks"})
        if (const std::optional<QString> value = memberText(object, key))
            spec += QStringLiteral(",%1=%2").arg(QLatin1String(key), escape(*value));
    const QJsonValue after = object.value(QLatin1String("after"));
    if (!after.isUndefined() && !after.isBool())
        fail(QStringLiteral("\"after\" must be true or false"));
    if (after.toBool())
        spec += QStringLiteral(",after");

    const std::optional<QString> times = memberText(object, "times");
    const std::optional<QString> share = memberText(object, "fraction");
    const std::optional<QString> seedText = memberText(object, "seed");
    if (times && share)
        fail(QStringLiteral("\"times\" and \"fraction\" exclude each other"));
    if (seedText && !share && drawn.isEmpty())
        fail(QStringLiteral("\"seed\" is only for \"fraction\" and a drawn delay"));
    if (seedText && !share)
        spec += QStringLiteral(",seed=") + *seedText;
    if (times)
        spec += QStringLiteral(";times=") + *times;
    if (share)
        spec += QStringLiteral(";fraction=") + *share;
    if (seedText && share)
        spec += QStringLiteral(",seed=") + *seedText;
    QString why;
    const std::optional<QList<Condition>> where =
        conditionsFromJson(object.value(QLatin1String("where")), &why);
    if (!where)
        fail(QStringLiteral("where: %1").arg(why));
    for (const Condition& condition : *where)
        spec += QStringLiteral(";where=") + escape(condition.text());
    return readRule(spec);
}

} // namespace

bool Fault::operator==(const Fault& other) const {
    return kind == other.kind && status == other.status && code == other.code &&
           userMsg == other.userMsg && ms == other.ms && chunks == other.chunks &&
           distribution == other.distribution && minMs == other.minMs && maxMs == other.maxMs &&
           medianMs == other.medianMs && sigma == other.sigma && bytes == other.bytes &&
           after == other.after;
}

namespace {

QStringList conditionTexts(const QList<Condition>& conditions) {
    QStringList texts;
    for (const Condition& condition : conditions)
        texts.append(condition.text());
    return texts;
}

} // namespace

bool FaultRule::operator==(const FaultRule& other) const {
    return operation == other.operation && fault == other.fault && when == other.when &&
           times == other.times && fraction == other.fraction && seed == other.seed &&
           conditionTexts(where) == conditionTexts(other.where);
}

QString faultKindName(Fault::Kind kind) {
    for (const KindName& entry : kindNames)
        if (entry.kind == kind)
            return QString::fromLatin1(entry.name);
    return QString();
}

QString faultName(const Fault& fault) {
    return faultKindName(fault.kind) + (fault.after ? QStringLiteral(",after") : QString());
}

const QStringList& operationNames() {
    static const QStringList names{"itemInfo",
                                   "reserveCheque",
                                   "unreserveCheque",
                                   "discCalc",
                                   "discCalcPay",
                                   "getPublicityList",
                                   "processId",
                                   "processPin",
                                   "getCardBalance",
                                   "calcBonusAmount",
                                   "calcAndReserveBonusPay",
                                   "checkPin",
                                   "commitCheque",
                                   "getParkingInfo",
                                   "cashierAdditionalInfo",
                                   "chequeAdditionalInfo"};
    return names;
}

// The rule that `read` makes, or nullopt with what is wrong in `error`.
template <class Read>
std::optional<FaultRule> ruleOrError(const Read& read, QString* error) {
    try {
        return read();
    } catch (const SpecError& e) {
        if (error)
            *error = e.message;
        return std::nullopt;
    }
}

std::optional<FaultRule> parseFaultSpec(const QString& spec, QString* error) {
    return ruleOrError([&] { return readRule(spec); }, error);
}

namespace {

// One parameter of a rule, as its text and its JSON form give it. A flag
// is written as its key alone ("after") and is true in JSON.
struct Parameter {
    QString key;
    QString text;
    QJsonValue json;
    bool flag = false;
    bool jsonOnly = false; // the text gives it inside another ("uniform:20-200")
};

bool drawsDelay(const Fault& fault) {
    return fault.kind == Fault::Kind::Delay && fault.distribution != Fault::Distribution::Fixed;
}

// A drawn delay's parameters: its shape first, as the text writes it after "delay=".
QList<Parameter> delayParameters(const Fault& f) {
    const auto only = [](const char* key, int value) {
        return Parameter{QLatin1String(key), QString(), value, false, true};
    };
    if (f.distribution == Fault::Distribution::Uniform)
        return {{QStringLiteral("distribution"),
                 QStringLiteral("uniform:%1-%2").arg(f.minMs).arg(f.maxMs),
                 QStringLiteral("uniform")},
                only("min", f.minMs),
                only("max", f.maxMs)};
    return {{QStringLiteral("distribution"), QStringLiteral("lognormal:%1").arg(f.medianMs),
             QStringLiteral("lognormal")},
            only("median", f.medianMs),
            {QStringLiteral("sigma"), QString::number(f.sigma, 'g', QLocale::FloatingPointShortest),
             f.sigma}};
}

// The fault's parameters, the first being the one its name takes ("error=500").
QList<Parameter> faultParameters(const Fault& f) {
    const auto number = [](const char* key, qint64 value) {
        return Parameter{QLatin1String(key), QString::number(value), QJsonValue(value)};
    };
    QList<Parameter> after;
    if (f.after)
        after << Parameter{QStringLiteral("after"), QString(), true, true};
    switch (f.kind) {
    case Fault::Kind::Error:
        return {number("status", f.status), number("code", f.code),
                Parameter{QStringLiteral("msg"), escape(f.userMsg), f.userMsg}};
    case Fault::Kind::Delay:
        return drawsDelay(f) ? delayParameters(f) : QList<Parameter>{number("ms", f.ms)};
    case Fault::Kind::Hang:
        return QList<Parameter>{number("ms", f.ms)} + after;
    case Fault::Kind::Oversize:
        return {number("bytes", f.bytes)};
    case Fault::Kind::Dribble:
        return {number("ms", f.ms), number("chunks", f.chunks)};
    case Fault::Kind::Stall:
        return {number("ms", f.ms)};
    case Fault::Kind::Truncate:
    case Fault::Kind::Reset:
        return after;
    case Fault::Kind::NotJson:
        break;
    }
    return {};
}

// The rule's seed goes with its fraction, else with a drawn delay.
std::optional<Parameter> delaySeed(const FaultRule& rule) {
    if (!drawsDelay(rule.fault) || rule.when == FaultRule::When::Fraction)
        return std::nullopt;
    return Parameter{QStringLiteral("seed"), QString::number(rule.seed), double(rule.seed)};
}

QList<Parameter> whenParameters(const FaultRule& rule) {
    if (rule.when == FaultRule::When::Times)
        return {{QStringLiteral("times"), QString::number(rule.times), QJsonValue(rule.times)}};
    if (rule.when == FaultRule::When::Fraction)
        return {{QStringLiteral("fraction"),
                 QString::number(rule.fraction, 'g', QLocale::FloatingPointShortest),
                 rule.fraction},
                // A JSON number holds integers exactly only up to 2^53.
                {QStringLiteral("seed"), QString::number(rule.seed), double(rule.seed)}};
    return {};
}

} // namespace

QString faultSpec(const FaultRule& rule) {
    QString text = rule.operation + QLatin1Char(':') + faultKindName(rule.fault.kind);
    QList<Parameter> fault = faultParameters(rule.fault);
    if (const std::optional<Parameter> seeded = delaySeed(rule))
        fault << *seeded;
    for (qsizetype i = 0; i < fault.size(); ++i) {
        if (fault[i].jsonOnly)
            continue;
        if (fault[i].flag)
            text += QLatin1Char(',') + fault[i].key;
        else if (i == 0)
            text += QLatin1Char('=') + fault[i].text;
        else
            text += QLatin1Char(',') + fault[i].key + QLatin1Char('=') + fault[i].text;
    }
    const QList<Parameter> when = whenParameters(rule);
    for (qsizetype i = 0; i < when.size(); ++i)
        text += (i == 0 ? QLatin1Char(';') : QLatin1Char(',')) + when[i].key + QLatin1Char('=') +
                when[i].text;
    for (const QString& condition : conditionTexts(rule.where))
        text += QStringLiteral(";where=") + escape(condition);
    return text;
}

std::optional<FaultRule> faultRuleFromJson(const QJsonObject& object, QString* error) {
    return ruleOrError([&] { return ruleFromJson(object); }, error);
}

QJsonObject faultRuleToJson(const FaultRule& rule) {
    QJsonObject object{{QStringLiteral("operation"), rule.operation},
                       {QStringLiteral("fault"), faultKindName(rule.fault.kind)},
                       {QStringLiteral("spec"), faultSpec(rule)}};
    for (const Parameter& parameter : faultParameters(rule.fault) + whenParameters(rule))
        object.insert(parameter.key, parameter.json);
    if (const std::optional<Parameter> seeded = delaySeed(rule))
        object.insert(seeded->key, seeded->json);
    if (!rule.where.isEmpty())
        object.insert(QStringLiteral("where"),
                      QJsonArray::fromStringList(conditionTexts(rule.where)));
    return object;
}

} // namespace vesk::emulator
