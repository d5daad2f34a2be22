#include "FailureExit.h"

#include "ExitCodes.h"

#include <transport/TransportReport.h>

namespace vesk::cli {

int exitCodeOf(CallOutcome::Failure failure, const http::Response& reply) {
    using Failure = CallOutcome::Failure;
    switch (failure) {
    case Failure::None:
        return exitCode::success;
    case Failure::Unresolved:
        return exitCode::unresolved;
    case Failure::Refused:
    case Failure::NoConnection:
        return exitCode::noConnection;
    case Failure::TlsFailed:
        return exitCode::tlsFailed;
    case Failure::NoReply:
        return exitCode::timedOut;
    case Failure::ConnectionLost: {
        namespace report = vesk::transport;
        return reply.headers.value(report::connectionEndHeader) == report::connectionEnd::closed
                   ? exitCode::emptyReply
                   : exitCode::connectionLost;
    }
    case Failure::ReplyCut:
        return exitCode::connectionLost;
    case Failure::ReplyOverLimit:
        return exitCode::replyTooLarge;
    case Failure::ServiceError:
        return exitCode::serviceError;
    case Failure::NotAnObject:
        return exitCode::notAnObject;
    case Failure::ReplyUndecodable:
    case Failure::NetworkFailure:
    case Failure::ContentFailure:
    case Failure::ClientDestroyed:
        return exitCode::networkError;
    }
    return exitCode::failure;
}

} // namespace vesk::cli
