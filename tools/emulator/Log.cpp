#include "Log.h"

Q_LOGGING_CATEGORY(lcEmulator, vesk::emulator::emulatorCategoryName, QtWarningMsg)
Q_LOGGING_CATEGORY(lcEmulatorBody, vesk::emulator::emulatorBodyCategoryName, QtWarningMsg)
