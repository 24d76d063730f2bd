// The plug-in's module and the output of all modules.
#include "television/interfaces/DebugFramework.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/CCDebug.h"
#include "television/Log.h"

namespace television {
namespace {

std::atomic<int> s_level = -1;

bool IsPrinted(unsigned long level) {
    const int highest = s_level.load(std::memory_order_relaxed);
    return highest >= 0 && level <= static_cast<unsigned long>(highest);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string Formatted(const char* format, va_list* arguments) {
    va_list measured, written;
    va_copy(measured, *arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0) return "";
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    va_copy(written, *arguments);
    std::vsnprintf(text.data(), text.size(), format, written);
    va_end(written);
    text.pop_back();
    return text;
}
#pragma GCC diagnostic pop

// Collects what each thread prints until its line ends, so that lines of different threads do not mix.
class LineOutput : public IDebugIO {
public:
    void Print(const char* text, std::size_t length) override {
        if (s_level.load(std::memory_order_relaxed) < 0) return;
        for (std::string line : Take(std::string(text, length))) LogPluginLine(line);
    }

private:
    std::vector<std::string> Take(const std::string& text) {
        std::lock_guard lock(m_mutex);
        std::string& unfinished = m_unfinished[std::this_thread::get_id()];
        unfinished += text;
        std::vector<std::string> lines;
        for (std::size_t end; (end = unfinished.find('\n')) != unfinished.npos; unfinished.erase(0, end + 1))
            lines.push_back(unfinished.substr(0, end));
        if (unfinished.empty()) m_unfinished.erase(std::this_thread::get_id());
        return lines;
    }

    std::mutex m_mutex;
    std::map<std::thread::id, std::string> m_unfinished;
};

IDebugIO* MakeOutput() { return new LineOutput; }

}  // namespace

void SetPluginDebugLevel(int level) { s_level = level; }

}  // namespace television

using namespace television;

IDebugIO* CCDebug::DebugIO = MakeOutput();

void CCDebug::t_AddModule(const char*, int) {}

CCDebugDAEPlugin::CCDebugDAEPlugin() = default;
CCDebugDAEPlugin::~CCDebugDAEPlugin() = default;

void CCDebugDAEPlugin::t_Print(unsigned long, unsigned long level, const char* format, va_list* arguments) {
    if (!IsPrinted(level)) return;
    const std::string line = Formatted(format, arguments) + "\n";
    DebugIO->Print(line.data(), line.size());
}

void CCDebugDAEPlugin::t_PrintR(unsigned long, unsigned long level, const char* format, va_list* arguments) {
    if (!IsPrinted(level)) return;
    const std::string text = Formatted(format, arguments);
    DebugIO->Print(text.data(), text.size());
}
