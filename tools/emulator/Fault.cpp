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

constexpr int maxDelayMs = 600000;     // 10 minutes
constexpr int maxHangMs = 3600000;     // an hour
constexpr int defaultHangMs = 300000;  // well past any client's timeout (the library's: 15 s)
constexpr qint64 maxBytes = 256 << 20; // 256 MiB
constexpr qint64 defaultOversize = 8 << 20;
constexpr qint64 maxTimes = 1000000000;
constexpr int defaultChunks = 10;
constexpr int maxChunks = 10000;

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
                          parameter.key == QLatin1String("msg")    ? QStringLiteral("TEXT")
                          : parameter.key == QLatin1String("seed") ? QStringLiteral("S")
                                                                   : QStringLiteral("N")));
        take(parameter);
    }
}

Fault readFault(const QString& text) {
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
        needsValue("delay=MS");
        fault.ms = int(wholeNumber(head.key, head.value, 0, maxDelayMs));
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
            else if (parameter.key == QLatin1String("code"))
                fault.code =
                    int(wholeNumber(parameter.key, parameter.value, std::numeric_limits<int>::min(),
                                    std::numeric_limits<int>::max()));
            else
                fault.userMsg = parameter.value;
        },
        flags);
    return fault;
}

void readWhen(const QString& text, FaultRule& rule) {
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
    readParameters(head.key, items, allowed,
                   [&](const Item& parameter) { rule.seed = seed(parameter.value); });
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
    rule.fault = readFault(parts.constFirst());
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
        readWhen(part, rule);
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

FaultRule ruleFromJson(const QJsonObject& object) {
    if (object.contains(QLatin1String("spec"))) {
        if (object.size() != 1 || !object.value(QLatin1String("spec")).isString())
            fail(QStringLiteral("\"spec\" must be a string and the only member"));
        return readRule(object.value(QLatin1String("spec")).toString());
    }
    static const QStringList known{"operation", "fault", "status", "code",  "msg",
                                   "ms",        "bytes", "chunks", "after", "times",
                                   "fraction",  "seed",  "where"};
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
    if (seedText && !share)
        fail(QStringLiteral("\"seed\" is only for \"fraction\""));
    if (times)
        spec += QStringLiteral(";times=") + *times;
    if (share)
        spec += QStringLiteral(";fraction=") + *share;
    if (seedText)
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
           bytes == other.bytes && after == other.after;
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
};

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
        return {number("ms", f.ms)};
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
    const QList<Parameter> fault = faultParameters(rule.fault);
    for (qsizetype i = 0; i < fault.size(); ++i) {
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
    if (!rule.where.isEmpty())
        object.insert(QStringLiteral("where"),
                      QJsonArray::fromStringList(conditionTexts(rule.where)));
    return object;
}

} // namespace vesk::emulator
