#pragma once

// What `vesk` returns to the shell.
namespace vesk::cli::exitCode {

inline constexpr int success = 0;
inline constexpr int failure = 1;      // anything else that went wrong
inline constexpr int serviceError = 2; // the service refused the call (vesk::Exception)
inline constexpr int networkError = 3; // no reply, or a reply cut short (vesk::NetworkException)
inline constexpr int notAnObject = 4;  // a 200 reply whose body is no JSON object (not --lenient)
inline constexpr int usage = 64;       // EX_USAGE: the command line or its input is wrong

} // namespace vesk::cli::exitCode
