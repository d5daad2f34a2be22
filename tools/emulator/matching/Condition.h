#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QRegularExpression>
#include <QString>

#include <optional>

namespace vesk::emulator {

// A path into a request body: "$" followed by steps, each ".member",
// "[index]" or "[*]" (every element of a list):
//   $.barcode   $.lines[0].quantity   $.lines[*].barcode
class JsonPath {
public:
    struct Step {
        enum class Kind { Member, Index, Every };
        Kind kind = Kind::Member;
        QString member;
        int index = 0;
    };

    // The path at the start of `text`; `*end` is where it ends. nullopt, with
    // what is wrong and its column (from 1) in `error`, for a bad path.
    static std::optional<JsonPath> parse(QStringView text, qsizetype* end, QString* error);

    // Every value at the path in `root`: none when a step finds nothing, several under "[*]".
    QList<QJsonValue> valuesIn(const QJsonValue& root) const;
    QString text() const { return text_; }

private:
    QList<Step> steps_;
    QString text_;
};

// A condition on a request body, in text
//   PATH OP VALUE      OP: == != < <= > >= (numbers), ~= (a regular expression on text)
//   PATH exists | PATH absent
// where VALUE is a JSON literal ("4601234000017", 2, true, null), or as JSON
//   {"path": "$.barcode", "op": "==", "value": "4601234000017"}.
// Under "[*]" a condition holds when it holds for any element; "!=" holds
// exactly when "==" does not. Numbers compare as numbers (2 == 2.0).
class Condition {
public:
    enum class Op {
        Equal,
        NotEqual,
        Less,
        LessOrEqual,
        Greater,
        GreaterOrEqual,
        Matches,
        Exists,
        Absent
    };

    // nullopt, with what is wrong and where in `error`, for a bad condition.
    static std::optional<Condition> parse(const QString& text, QString* error);
    // The text form or the object form.
    static std::optional<Condition> fromJson(const QJsonValue& json, QString* error);

    bool holdsFor(const QJsonObject& body) const;
    // The values that the path finds in `body`, for a report of a near miss.
    QList<QJsonValue> found(const QJsonObject& body) const { return path_.valuesIn(body); }

    QString text() const; // the condition as parse() takes it, written canonically
    QString pathText() const { return path_.text(); }
    Op op() const { return op_; }
    // What a value must be, for people: "\"4601234000017\"", "< 3", "present".
    QString expectation() const;

private:
    bool holdsForValue(const QJsonValue& value) const;

    JsonPath path_;
    Op op_ = Op::Equal;
    QJsonValue value_;
    QRegularExpression pattern_;
};

// Conditions from a JSON list (or one condition alone) of either form. nullopt,
// with the first bad one named in `error`.
std::optional<QList<Condition>> conditionsFromJson(const QJsonValue& json, QString* error);

// Whether every condition holds for `body`.
bool allHold(const QList<Condition>& conditions, const QJsonObject& body);

} // namespace vesk::emulator
