#include "debug/CCDebugCommon.h"

#include <cstdio>
#include <string>

namespace {

__attribute__((format(printf, 1, 0))) std::string Format(const char* format, va_list* arguments) {
    va_list measured;
    va_copy(measured, *arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0) return {};

    std::string text(static_cast<std::size_t>(length), '\0');
    va_list written;
    va_copy(written, *arguments);
    std::vsnprintf(text.data(), text.size() + 1, format, written);
    va_end(written);
    return text;
}

}  // namespace

void CCDebugCommon::t_Print(unsigned long module, unsigned long level, const char* format, va_list* arguments) {
    if (!DebugIO) return;
    t_PrintR(module, level, format, arguments);
    DebugIO->Print("\n", 1);
}

void CCDebugCommon::t_PrintR(unsigned long, unsigned long, const char* format, va_list* arguments) {
    if (!DebugIO) return;
    const std::string text = Format(format, arguments);
    DebugIO->Print(text.data(), text.size());
}

void CCDebugCommon::t_InitModule() { t_AddModule("CommonDebug", 1); }

bool CCDebugCommon::t_IsCommonModule() { return true; }
