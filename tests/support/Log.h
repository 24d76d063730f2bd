// The log lines that the plug-in printed during a test.
#pragma once

#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

namespace support {

struct LogLine {
    unsigned long module;
    unsigned long level;
    std::string text;
    friend bool operator==(const LogLine&, const LogLine&) = default;
    friend void PrintTo(const LogLine& line, std::ostream* out) {
        *out << "(" << line.module << ", " << line.level << ") " << line.text;
    }
};

// All threads. Lives as long as the process, as the plug-in's log modules do.
class Log {
public:
    static Log& Instance();

    void Add(LogLine line);
    std::vector<LogLine> Lines() const;
    std::vector<std::string> Texts() const;
    // How many lines have exactly this text (and this level).
    std::size_t Count(const std::string& text) const;
    std::size_t Count(unsigned long level, const std::string& text) const;
    void Clear();

    // Lines above this level are neither formatted nor kept; -1: none is kept. All are at the start of a test.
    void SetLevel(long level);
    bool IsWanted(unsigned long level) const;
    static constexpr long kAll = 1000;

    // Runs once, inside the construction of the plug-in's next log module.
    void WhenModuleIsMade(std::function<void()> action) { m_whenMade = std::move(action); }
    void ModuleIsMade();

private:
    mutable std::mutex m_mutex;
    std::vector<LogLine> m_lines;
    long m_level = kAll;
    std::function<void()> m_whenMade;
};

}  // namespace support
