#include "Condition.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>

namespace vesk::emulator {

namespace {

QString at(qsizetype index) {
    return QStringLiteral(" at column %1").arg(index + 1);
}

bool isNameStart(QChar c) {
    return c.isLetter() || c == QLatin1Char('_');
}

bool isNameChar(QChar c) {
    return isNameStart(c) || c.isDigit();
}

qsizetype skipSpaces(QStringView text, qsizetype i) {
    while (i < text.size() && text[i].isSpace())
        ++i;
    return i;
}

// A scalar or a structure as compact JSON: "\"text\"", "2", "null".
QString compact(const QJsonValue& value) {
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

bool sameValue(const QJsonValue& a, const QJsonValue& b) {
    if (a.isDouble() && b.isDouble())
        return a.toDouble() == b.toDouble();
    return a == b;
}

struct OpName {
    const char* text;
    Condition::Op op;
};
// Longest first, so that "<=" is not read as "<".
constexpr std::array<OpName, 7> symbols{{{"==", Condition::Op::Equal},
                                         {"!=", Condition::Op::NotEqual},
                                         {"<=", Condition::Op::LessOrEqual},
                                         {">=", Condition::Op::GreaterOrEqual},
                                         {"~=", Condition::Op::Matches},
                                         {"<", Condition::Op::Less},
                                         {">", Condition::Op::Greater}}};
constexpr std::array<OpName, 2> words{
    {{"exists", Condition::Op::Exists}, {"absent", Condition::Op::Absent}}};

QString opText(Condition::Op op) {
    for (const OpName& name : symbols)
        if (name.op == op)
            return QLatin1String(name.text);
    for (const OpName& name : words)
        if (name.op == op)
            return QLatin1String(name.text);
    return QString();
}

} // namespace

std::optional<JsonPath> JsonPath::parse(QStringView text, qsizetype* end, QString* error) {
    const auto fail = [&](const QString& what, qsizetype index) {
        if (error)
            *error = what + at(index);
        return std::nullopt;
    };
    const qsizetype start = skipSpaces(text, 0);
    if (start == text.size() || text[start] != QLatin1Char('$'))
        return fail(QStringLiteral("expected a path starting with $ (such as $.lines[*].barcode)"),
                    start);
    JsonPath path;
    qsizetype i = start + 1;
    while (i < text.size()) {
        if (text[i] == QLatin1Char('.')) {
            qsizetype j = i + 1;
            if (j == text.size() || !isNameStart(text[j]))
                return fail(QStringLiteral("expected a member's name after ."), j);
            while (j < text.size() && isNameChar(text[j]))
                ++j;
            path.steps_.append({Step::Kind::Member, text.mid(i + 1, j - i - 1).toString(), 0});
            i = j;
        } else if (text[i] == QLatin1Char('[')) {
            qsizetype j = i + 1;
            Step step{Step::Kind::Every, QString(), 0};
            if (j < text.size() && text[j] == QLatin1Char('*')) {
                ++j;
            } else {
                const qsizetype digits = j;
                while (j < text.size() && text[j].isDigit() && j - digits < 9)
                    ++j;
                if (j == digits)
                    return fail(QStringLiteral("expected an index or * after ["), j);
                step = {Step::Kind::Index, QString(), text.mid(digits, j - digits).toInt()};
            }
            if (j == text.size() || text[j] != QLatin1Char(']'))
                return fail(QStringLiteral("expected ] to close ["), j);
            path.steps_.append(step);
            i = j + 1;
        } else {
            break;
        }
    }
    path.text_ = text.mid(start, i - start).toString();
    if (end)
        *end = i;
    return path;
}

QList<QJsonValue> JsonPath::valuesIn(const QJsonValue& root) const {
    QList<QJsonValue> values{root};
    for (const Step& step : steps_) {
        QList<QJsonValue> next;
        for (const QJsonValue& value : values) {
            switch (step.kind) {
            case Step::Kind::Member:
                if (value.isObject() && value.toObject().contains(step.member))
                    next.append(value.toObject().value(step.member));
                break;
            case Step::Kind::Index:
                if (value.isArray() && step.index < value.toArray().size())
                    next.append(value.toArray().at(step.index));
                break;
            case Step::Kind::Every:
                if (value.isArray())
                    for (const QJsonValue& element : value.toArray())
                        next.append(element);
                break;
            }
        }
        values = std::move(next);
    }
    return values;
}

std::optional<Condition> Condition::parse(const QString& text, QString* error) {
    const auto fail = [&](const QString& what) {
        if (error)
            *error = what;
        return std::nullopt;
    };
    qsizetype i = 0;
    QString why;
    const std::optional<JsonPath> path = JsonPath::parse(text, &i, &why);
    if (!path)
        return fail(why);
    Condition condition;
    condition.path_ = *path;
    const qsizetype opStart = skipSpaces(text, i);
    const QStringView rest = QStringView(text).mid(opStart);
    for (const OpName& word : words) {
        const QLatin1String name(word.text);
        if (rest.startsWith(name) && (rest.size() == name.size() || rest[name.size()].isSpace())) {
            const qsizetype after = skipSpaces(text, opStart + name.size());
            if (after != text.size())
                return fail(QStringLiteral("%1 takes no value: unexpected %2")
                                .arg(name, text.mid(after, 20)) +
                            at(after));
            condition.op_ = word.op;
            return condition;
        }
    }
    const OpName* symbol = nullptr;
    for (const OpName& candidate : symbols)
        if (rest.startsWith(QLatin1String(candidate.text))) {
            symbol = &candidate;
            break;
        }
    if (!symbol)
        return fail(QStringLiteral("expected ==, !=, <, <=, >, >=, ~=, exists or absent after %1")
                        .arg(path->text()) +
                    at(opStart));
    condition.op_ = symbol->op;
    const qsizetype valueStart = skipSpaces(text, opStart + qsizetype(qstrlen(symbol->text)));
    const QString valueText = text.mid(valueStart).trimmed();
    if (valueText.isEmpty())
        return fail(QStringLiteral("expected a JSON value after %1 (\"text\", a number, true, "
                                   "false or null)")
                        .arg(QLatin1String(symbol->text)) +
                    at(valueStart));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(
        QByteArrayLiteral("[") + valueText.toUtf8() + QByteArrayLiteral("]"), &parseError);
    if (parseError.error != QJsonParseError::NoError || document.array().size() != 1)
        return fail(QStringLiteral("%1 is not one JSON value (text is written in double quotes: "
                                   "\"4601234000017\")")
                        .arg(valueText) +
                    at(valueStart));
    condition.value_ = document.array().first();
    switch (condition.op_) {
    case Op::Less:
    case Op::LessOrEqual:
    case Op::Greater:
    case Op::GreaterOrEqual:
        if (!condition.value_.isDouble())
            return fail(QStringLiteral("%1 compares numbers, not %2")
                            .arg(QLatin1String(symbol->text), valueText) +
                        at(valueStart));
        break;
    case Op::Matches:
        if (!condition.value_.isString())
            return fail(QStringLiteral("~= takes a regular expression in double quotes, not %1")
                            .arg(valueText) +
                        at(valueStart));
        condition.pattern_ = QRegularExpression(condition.value_.toString());
        if (!condition.pattern_.isValid())
            return fail(QStringLiteral("%1 is not a regular expression: %2")
                            .arg(valueText, condition.pattern_.errorString()) +
                        at(valueStart));
        break;
    default:
        break;
    }
    return condition;
}

std::optional<Condition> Condition::fromJson(const QJsonValue& json, QString* error) {
    if (json.isString())
        return parse(json.toString(), error);
    if (!json.isObject()) {
        if (error)
            *error = QStringLiteral("a condition is text (\"$.barcode == \\\"1\\\"\") or an object "
                                    "with \"path\", \"op\" and \"value\"");
        return std::nullopt;
    }
    const QJsonObject object = json.toObject();
    const QString op = object.value(QStringLiteral("op")).toString(QStringLiteral("=="));
    QString text = object.value(QStringLiteral("path")).toString() + QLatin1Char(' ') + op;
    if (object.contains(QStringLiteral("value")))
        text += QLatin1Char(' ') + compact(object.value(QStringLiteral("value")));
    return parse(text, error);
}

bool Condition::holdsForValue(const QJsonValue& value) const {
    switch (op_) {
    case Op::Equal:
        return sameValue(value, value_);
    case Op::Less:
        return value.isDouble() && value.toDouble() < value_.toDouble();
    case Op::LessOrEqual:
        return value.isDouble() && value.toDouble() <= value_.toDouble();
    case Op::Greater:
        return value.isDouble() && value.toDouble() > value_.toDouble();
    case Op::GreaterOrEqual:
        return value.isDouble() && value.toDouble() >= value_.toDouble();
    case Op::Matches:
        return value.isString() && pattern_.match(value.toString()).hasMatch();
    case Op::NotEqual:
    case Op::Exists:
    case Op::Absent:
        break;
    }
    return false;
}

bool Condition::holdsFor(const QJsonObject& body) const {
    const QList<QJsonValue> values = path_.valuesIn(body);
    switch (op_) {
    case Op::Exists:
        return !values.isEmpty();
    case Op::Absent:
        return values.isEmpty();
    case Op::NotEqual:
        return std::none_of(values.begin(), values.end(),
                            [this](const QJsonValue& value) { return sameValue(value, value_); });
    default:
        return std::any_of(values.begin(), values.end(),
                           [this](const QJsonValue& value) { return holdsForValue(value); });
    }
}

QString Condition::text() const {
    if (op_ == Op::Exists || op_ == Op::Absent)
        return path_.text() + QLatin1Char(' ') + opText(op_);
    return path_.text() + QLatin1Char(' ') + opText(op_) + QLatin1Char(' ') + compact(value_);
}

QString Condition::expectation() const {
    switch (op_) {
    case Op::Equal:
        return compact(value_);
    case Op::Exists:
        return QStringLiteral("present");
    case Op::Absent:
        return QStringLiteral("absent");
    case Op::NotEqual:
        return QStringLiteral("not ") + compact(value_);
    default:
        return opText(op_) + QLatin1Char(' ') + compact(value_);
    }
}

std::optional<QList<Condition>> conditionsFromJson(const QJsonValue& json, QString* error) {
    QList<Condition> conditions;
    if (json.isUndefined() || json.isNull())
        return conditions;
    const QJsonArray list = json.isArray() ? json.toArray() : QJsonArray{json};
    for (const QJsonValue& item : list) {
        QString why;
        const std::optional<Condition> condition = Condition::fromJson(item, &why);
        if (!condition) {
            if (error)
                *error = QStringLiteral("bad condition %1: %2").arg(compact(item), why);
            return std::nullopt;
        }
        conditions.append(*condition);
    }
    return conditions;
}

bool allHold(const QList<Condition>& conditions, const QJsonObject& body) {
    return std::all_of(conditions.begin(), conditions.end(),
                       [&body](const Condition& condition) { return condition.holdsFor(body); });
}

} // namespace vesk::emulator
