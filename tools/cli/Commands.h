#pragma once

#include "CommandLine.h"
#include "Operations.h"
#include <requestcheck/RequestCheck.h>

#include <QTextStream>
#include <QVariantMap>

#include <optional>

namespace vesk::cli {

// The commands of `vesk`, each given its parsed command line once the options
// of every command have taken effect. Each returns the exit status
// (ExitCodes.h), writing its result to `out` and its complaints to `err`.

// The operation that `line`'s first two arguments name and the request
// object of its third (RequestInput.h), with what check::checkRequest() finds in it;
// nullopt, with what is wrong on `err`, for an unknown service or operation
// or a request that cannot be read.
struct OperationRequest {
    const Operation* operation;
    QVariantMap request;
    QList<check::RequestProblem> problems;
};
std::optional<OperationRequest> readOperationRequest(const CommandLine& line, QTextStream& in,
                                                     QTextStream& err);

// vesk call SERVICE OPERATION [JSON | @FILE | -] [--strict] [--timeout DURATION]
//           [--connect-timeout DURATION] [--cacert FILE]
int callCommand(const CommandLine& line, QTextStream& out, QTextStream& err, QTextStream& in);

// vesk ops [--json]
int opsCommand(const CommandLine& line, QTextStream& out);

// vesk record NAME [--json | --example]
int recordCommand(const CommandLine& line, QTextStream& out, QTextStream& err);

// vesk openapi [FILE]: the services' contract as an OpenAPI 3.1 document.
int openApiCommand(const CommandLine& line, QTextStream& out, QTextStream& err);

// vesk demo [--external] [--listen HOST:PORT | --base URL]
int demoCommand(const CommandLine& line, QTextStream& out, QTextStream& err);

} // namespace vesk::cli
