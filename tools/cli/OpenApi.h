#pragma once

#include <QJsonObject>

namespace vesk::cli {

// The three services as an OpenAPI 3.1 document, made from the operations'
// table and the records' member lists: every operation with its request and
// response schema, every record as a schema whose properties are its members
// in declared order (JSON type, entry record of lists, plain members
// required), and the error object that a refused call carries.
QJsonObject openApiDocument();

} // namespace vesk::cli
