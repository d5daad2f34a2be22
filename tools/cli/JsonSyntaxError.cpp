#include "JsonSyntaxError.h"

#include <QStringList>

#include <rapidjson/document.h>
#include <rapidjson/error/error.h>

#include <cctype>

namespace vesk::cli {
namespace {

// What the parser wanted where it stopped, in the words of the grammar
// rather than a guess at the writer's mistake.
QString expectation(rapidjson::ParseErrorCode code) {
    switch (code) {
    case rapidjson::kParseErrorDocumentEmpty:
        return QStringLiteral("expected a JSON object");
    case rapidjson::kParseErrorDocumentRootNotSingular:
        return QStringLiteral("expected the end of the input after the object");
    case rapidjson::kParseErrorValueInvalid:
        return QStringLiteral("expected a value (object, list, \"text\", number, true, false or "
                              "null)");
    case rapidjson::kParseErrorObjectMissName:
        return QStringLiteral("expected a member name in double quotes");
    case rapidjson::kParseErrorObjectMissColon:
        return QStringLiteral("expected ':' after the member name");
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
        return QStringLiteral("expected ',' or '}' after the member's value");
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
        return QStringLiteral("expected ',' or ']' after the element");
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
        return QStringLiteral("expected four hexadecimal digits after \\u");
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
        return QStringLiteral("expected a low surrogate \\uDC00 to \\uDFFF after a high one");
    case rapidjson::kParseErrorStringEscapeInvalid:
        return QStringLiteral("expected one of \\\" \\\\ \\/ \\b \\f \\n \\r \\t \\u after a "
                              "backslash");
    case rapidjson::kParseErrorStringMissQuotationMark:
        return QStringLiteral("expected '\"' to close the text");
    case rapidjson::kParseErrorStringInvalidEncoding:
        return QStringLiteral("expected UTF-8 text");
    case rapidjson::kParseErrorNumberTooBig:
        return QStringLiteral("expected a number of at most 1.8e308");
    case rapidjson::kParseErrorNumberMissFraction:
        return QStringLiteral("expected a digit after the decimal point");
    case rapidjson::kParseErrorNumberMissExponent:
        return QStringLiteral("expected a digit in the exponent");
    default:
        return QStringLiteral("expected well-formed JSON");
    }
}

// The line that holds `offset`, and a caret under its character; a long
// line is cut to the 70 characters around it.
void locate(const QByteArray& text, qsizetype offset, JsonSyntaxError* error) {
    const qsizetype start = text.lastIndexOf('\n', offset - 1) + 1;
    qsizetype end = text.indexOf('\n', offset);
    if (end < 0)
        end = text.size();
    error->line = int(text.left(start).count('\n')) + 1;
    QString before = QString::fromUtf8(text.mid(start, offset - start));
    QString after = QString::fromUtf8(text.mid(offset, end - offset));
    if (after.endsWith(QLatin1Char('\r')))
        after.chop(1);
    error->column = int(before.size()) + 1;
    constexpr int context = 35;
    if (before.size() > context)
        before = QStringLiteral("...") + before.right(context);
    if (after.size() > context)
        after = after.left(context) + QStringLiteral("...");
    before.replace(QLatin1Char('\t'), QLatin1Char(' '));
    error->excerpt = before + after + QLatin1Char('\n') + QString(before.size(), QLatin1Char(' ')) +
                     QLatin1Char('^');
}

} // namespace

QString JsonSyntaxError::text() const {
    QString shown = QStringLiteral("line %1, column %2: %3").arg(line).arg(column).arg(expected);
    for (const QString& excerptLine : excerpt.split(QLatin1Char('\n')))
        shown += QStringLiteral("\n  ") + excerptLine;
    return shown;
}

std::optional<JsonSyntaxError> findJsonSyntaxError(const QByteArray& text) {
    rapidjson::Document document;
    document.Parse(text.constData(), std::size_t(text.size()));
    if (!document.HasParseError())
        return std::nullopt;
    JsonSyntaxError error;
    error.expected = expectation(document.GetParseError());
    qsizetype offset = qsizetype(document.GetErrorOffset());
    if (document.GetParseError() == rapidjson::kParseErrorValueInvalid) {
        // A misspelt literal ("tru", "nul") fails after its last letter:
        // point at its start, where a value was expected.
        while (offset > 0 && std::isalpha(static_cast<unsigned char>(text.at(offset - 1))))
            --offset;
    }
    locate(text, offset, &error);
    return error;
}

} // namespace vesk::cli
