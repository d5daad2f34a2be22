#pragma once

#include <QtGlobal>

/// @cond
#if defined(VESK_TESTING_LIBRARY)
#define VESK_TESTING_EXPORT Q_DECL_EXPORT
#else
#define VESK_TESTING_EXPORT Q_DECL_IMPORT
#endif
/// @endcond
