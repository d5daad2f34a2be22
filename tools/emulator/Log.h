#pragma once

#include <QLoggingCategory>

// The emulator's logger: one line per request at debug level, which
// vesk-emulator turns on; quiet in tests and in the demo.
Q_DECLARE_LOGGING_CATEGORY(lcEmulator)
