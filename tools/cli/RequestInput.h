#pragma once

#include <QString>
#include <QTextStream>
#include <QVariantMap>

#include <optional>

namespace vesk::cli {

// The request object of `vesk call`, from its last argument:
//   - a null `source` (no argument): the empty object {};
//   - "-": the text of `in`;
//   - "@FILE": the file's content;
//   - anything else: the argument itself.
// nullopt, with what is wrong in `error`, when the file cannot be read, the
// text is not JSON or its value is not an object.
std::optional<QVariantMap> readRequest(const QString& source, QTextStream& in, QString* error);

} // namespace vesk::cli
