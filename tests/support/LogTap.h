// The plug-in's log lines as they are printed, for tests that count more of them than can be kept.
#pragma once

#include <cstdarg>

namespace support {

// While it lives, every line goes to the function, on the thread that printed it, and none is formatted or kept. No
// lock is taken: the thread sanitizer sees the plug-in's own order of things and no other.
class LogTap {
public:
    using Function = void (*)(const char* format, va_list* arguments);

    explicit LogTap(Function function);
    ~LogTap();
    LogTap(const LogTap&) = delete;
    LogTap& operator=(const LogTap&) = delete;

    // The function of the one that lives, or null.
    static Function Current();
};

}  // namespace support
