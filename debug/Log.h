// How the plug-in writes log lines: printf style, one macro for each use.
#pragma once

#include "platform/CCDebug.h"

extern template void CCDebug::Print<CCDebugDAEPlugin>(unsigned long, unsigned long, const char*, ...);

// Entry points of the module.
#define LOG_ENTRY(...) CCDebug::Print<CCDebugDAEPlugin>(3, 3, __VA_ARGS__)
// What an object does.
#define LOG_TRACE(...) CCDebug::Print<CCDebugDAEPlugin>(1, 3, __VA_ARGS__)
// Arguments, bytes and counts.
#define LOG_DETAIL(...) CCDebug::Print<CCDebugDAEPlugin>(1, 4, __VA_ARGS__)
// Refused arguments, failed look-ups, invalidated objects.
#define LOG_WARNING(...) CCDebug::Print<CCDebugDAEPlugin>(1, 2, __VA_ARGS__)
#define LOG_ERROR(...) CCDebug::Print<CCDebugDAEPlugin>(1, 0, __VA_ARGS__)
