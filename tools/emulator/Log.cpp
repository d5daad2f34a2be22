#include "Log.h"

Q_LOGGING_CATEGORY(lcEmulator, "veskemulator", QtInfoMsg)
