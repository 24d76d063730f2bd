// The recording platform's log modules.
#include "tests/support/Log.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include "platform/CCDebug.h"
#include "tests/support/CallList.h"
#include "tests/support/LogTap.h"

namespace support {

Log& Log::Instance() {
    static Log& log = *new Log;
    return log;
}

void Log::Add(LogLine line) {
    const std::lock_guard lock(m_mutex);
    m_lines.push_back(std::move(line));
}

std::vector<LogLine> Log::Lines() const {
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

std::vector<std::string> Log::Texts() const {
    std::vector<std::string> texts;
    for (LogLine& line : Lines()) {
        texts.push_back(std::move(line.text));
    }
    return texts;
}

std::size_t Log::Count(const std::string& text) const {
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(
        std::count_if(m_lines.begin(), m_lines.end(), [&](const LogLine& line) { return line.text == text; }));
}

std::size_t Log::Count(unsigned long level, const std::string& text) const {
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(std::count_if(
        m_lines.begin(), m_lines.end(), [&](const LogLine& line) { return line.level == level && line.text == text; }));
}

void Log::Clear() {
    const std::lock_guard lock(m_mutex);
    m_lines.clear();
}

void Log::SetLevel(long level) {
    const std::lock_guard lock(m_mutex);
    m_level = level;
}

void Log::ModuleIsMade() {
    if (const auto action = std::exchange(m_whenMade, nullptr)) action();
}

bool Log::IsWanted(unsigned long level) const {
    const std::lock_guard lock(m_mutex);
    return static_cast<long>(level) <= m_level;
}

namespace {

std::atomic<LogTap::Function> s_tap = nullptr;

std::string Format(const char* format, va_list* arguments) {
    va_list measuring, writing;
    va_copy(measuring, *arguments);
    va_copy(writing, *arguments);
    const int length = std::max(0, std::vsnprintf(nullptr, 0, format, measuring));
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, writing);
    text.pop_back();
    va_end(measuring);
    va_end(writing);
    return text;
}

}  // namespace

LogTap::LogTap(Function function) { s_tap = function; }
LogTap::~LogTap() { s_tap = nullptr; }
LogTap::Function LogTap::Current() { return s_tap.load(std::memory_order_relaxed); }

}  // namespace support

IDebugIO* CCDebug::DebugIO = nullptr;

void CCDebug::t_AddModule(const char* name, int count) {
    support::CallList::Instance().Add("debug.AddModule(" + std::string(name) + ", " + std::to_string(count) + ")");
}

CCDebugDAEPlugin::CCDebugDAEPlugin() { support::Log::Instance().ModuleIsMade(); }
CCDebugDAEPlugin::~CCDebugDAEPlugin() = default;

void CCDebugDAEPlugin::t_Print(unsigned long module, unsigned long level, const char* format, va_list* arguments) {
    if (const auto tap = support::LogTap::Current()) {
        tap(format, arguments);
        return;
    }
    support::Log& log = support::Log::Instance();
    if (log.IsWanted(level)) {
        log.Add({module, level, support::Format(format, arguments)});
    }
}

void CCDebugDAEPlugin::t_PrintR(unsigned long module, unsigned long level, const char* format, va_list* arguments) {
    t_Print(module, level, format, arguments);
}
