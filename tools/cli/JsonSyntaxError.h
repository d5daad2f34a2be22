#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace vesk::cli {

// Where JSON text stops being JSON, and what was expected there instead.
struct JsonSyntaxError {
    int line = 1;     // from 1
    int column = 1;   // from 1, in characters
    QString expected; // "expected a value", "expected ',' or '}'", ...
    QString excerpt;  // the line, and under it a caret at the column

    // "line 1, column 13: expected a value\n  {\"barcode\": }\n              ^"
    QString text() const;
};

// The first syntax error of `text`, or nullopt when it is well-formed JSON.
std::optional<JsonSyntaxError> findJsonSyntaxError(const QByteArray& text);

} // namespace vesk::cli
