#pragma once

// What `vesk` returns to the shell. A failed exchange has curl's number for
// its kind where curl has one, so that scripts written for curl read it.
namespace vesk::cli::exitCode {

inline constexpr int success = 0;
inline constexpr int failure = 1;      // anything else that went wrong
inline constexpr int serviceError = 2; // the service refused the call (vesk::Exception)
inline constexpr int networkError = 3; // a network failure of a kind curl has no number for
inline constexpr int notAnObject = 4;  // a 200 reply whose body is no JSON object (not --lenient)
inline constexpr int unresolved = 6;   // the host name did not resolve
inline constexpr int noConnection = 7; // refused, or no connection for another reason
inline constexpr int timedOut = 28;    // sent, and no reply within the timeout
inline constexpr int tlsFailed = 35;   // no secure connection (handshake, certificate)
inline constexpr int emptyReply = 52;  // the server closed the connection without a reply
inline constexpr int connectionLost = 56; // the connection broke: reset, or cut in the reply
inline constexpr int replyTooLarge = 63;  // a reply over the transport's size limit
inline constexpr int usage = 64;          // EX_USAGE: the command line or its input is wrong

} // namespace vesk::cli::exitCode
