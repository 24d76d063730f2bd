// The plug-in's log lines, on standard error when they are switched on. There is no further output and no menu.
#include "platform/CCDebug.h"

#include <atomic>
#include <cstdio>

#include "platform/null/NullPlatform.h"

namespace {

std::atomic<int> s_level = -1;

bool IsPrinted(unsigned long level) {
    const int highest = s_level.load(std::memory_order_relaxed);
    return highest >= 0 && level <= static_cast<unsigned long>(highest);
}

// One lock around the parts of a line keeps it in one piece.
void PrintLine(const char* format, va_list arguments, const char* end) {
    flockfile(stderr);
    std::vfprintf(stderr, format, arguments);
    std::fputs(end, stderr);
    funlockfile(stderr);
}

}  // namespace

void nullplatform::SetDebugLevel(int level) { s_level = level; }

IDebugIO* CCDebug::DebugIO = nullptr;

void CCDebug::t_AddModule(const char*, int) {}

CCDebugDAEPlugin::CCDebugDAEPlugin() = default;
CCDebugDAEPlugin::~CCDebugDAEPlugin() = default;

void CCDebugDAEPlugin::t_Print(unsigned long, unsigned long level, const char* format, va_list* arguments) {
    if (IsPrinted(level)) {
        va_list pass;
        va_copy(pass, *arguments);
        PrintLine(format, pass, "\n");
        va_end(pass);
    }
}

void CCDebugDAEPlugin::t_PrintR(unsigned long, unsigned long level, const char* format, va_list* arguments) {
    if (IsPrinted(level)) {
        va_list pass;
        va_copy(pass, *arguments);
        PrintLine(format, pass, "");
        va_end(pass);
    }
}
