#pragma once

#include <QString>

#include <stdexcept>

namespace vesk::emulator {

// The error codes that the emulator sends in the "code" of an error reply.
// Each service has its own thousand; 400, 404, 405, 409, 413, 422 and 500 are the
// HTTP front's and equal the status that they come with.
namespace code {
inline constexpr int badBody = 400;     // the body is not a JSON object
inline constexpr int unknownPath = 404; // no operation at that path
inline constexpr int wrongMethod = 405; // an operation's path with another method than POST
inline constexpr int otherBody = 409;   // a cheque sent again with another body (RepeatGuard)
inline constexpr int tooLarge = 413;    // a body over the size limit
inline constexpr int doesNotFit =
    422; // --strict-requests: keys or values that its record does not take
inline constexpr int internal = 500; // the emulator itself failed (its database)

inline constexpr int salesInvalid = 1000; // a value out of range or missing
inline constexpr int unknownBarcode = 1001;
inline constexpr int unknownReservation = 1002;

inline constexpr int discountInvalid = 2000;

inline constexpr int loyaltyInvalid = 3000;
inline constexpr int unknownCard = 3001;
inline constexpr int invalidToken = 3002;
inline constexpr int wrongPin = 3003;
inline constexpr int pinNotConfirmed = 3004;
inline constexpr int notEnoughBonuses = 3005;
inline constexpr int alreadyCommitted = 3006;
inline constexpr int notCommitted = 3007;
inline constexpr int pinNotSent = 3008;
inline constexpr int writeOffOverLimit = 3009;
inline constexpr int unknownTicket = 3010;
} // namespace code

// A refusal of a service: the HTTP status of the reply, and the "code" and
// "userMsg" of its body.
class ServiceError : public std::runtime_error {
public:
    ServiceError(int status, int code, const QString& userMsg)
        : std::runtime_error(userMsg.toStdString())
        , status_(status)
        , code_(code)
        , userMsg_(userMsg) {}

    int status() const { return status_; }
    int code() const { return code_; }
    const QString& userMsg() const { return userMsg_; }

private:
    int status_;
    int code_;
    QString userMsg_;
};

} // namespace vesk::emulator
