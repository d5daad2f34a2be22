#include "FailureExit.h"

#include "ExitCodes.h"

namespace vesk::cli {

int exitCodeOf(CallOutcome::Failure failure) {
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
    case Failure::ConnectionLost:
        return exitCode::emptyReply;
    case Failure::ReplyCut:
        return exitCode::replyCut;
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
