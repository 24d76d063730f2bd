// The one chronological list of what the plug-in did to script, browser, player and cache during a test.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace support {

// Entries are texts: "player.SetChannel(7, false)", "evaluate new Array();", "script.onFocus()". All threads.
class CallList {
public:
    static CallList& Instance();

    void Add(const std::string& call);
    // Runs `action` on the calling thread, after the entry was added, for each entry that begins with `prefix`.
    void When(const std::string& prefix, std::function<void()> action);

    std::vector<std::string> All() const;
    // The entries that begin with one of the prefixes.
    std::vector<std::string> Of(const std::vector<std::string>& prefixes) const;
    void Clear();  // the entries
    void Reset();  // the entries and the actions

private:
    std::vector<std::function<void()>> ActionsFor(const std::string& call);

    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
    std::vector<std::pair<std::string, std::function<void()>>> m_actions;
};

}  // namespace support
