#pragma once

#include <QLoggingCategory>

// The emulator's loggers. In a program or test that embeds the emulator they
// are quiet below warnings, so that the demo's output and the tests' stay
// clean; vesk-emulator turns them on with installEmulatorLogFilter()
// (LogFilter.h).
//   "vesk.emulator"      one line per request at info (RequestLog.h), the
//                        emulator's warnings; its own details at debug
//   "vesk.emulator.body" the request and reply bodies at debug, secrets masked
namespace vesk::emulator {
inline constexpr char emulatorCategoryName[] = "vesk.emulator";
inline constexpr char emulatorBodyCategoryName[] = "vesk.emulator.body";
} // namespace vesk::emulator

Q_DECLARE_LOGGING_CATEGORY(lcEmulator)
Q_DECLARE_LOGGING_CATEGORY(lcEmulatorBody)
