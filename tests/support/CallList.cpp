// The chronological list of calls.
#include "tests/support/CallList.h"

#include <algorithm>

namespace support {

CallList& CallList::Instance() {
    static CallList& list = *new CallList;  // threads of a test may outlive the statics
    return list;
}

void CallList::Add(const std::string& call) {
    for (const auto& action : ActionsFor(call)) {
        action();
    }
}

std::vector<std::function<void()>> CallList::ActionsFor(const std::string& call) {
    const std::lock_guard lock(m_mutex);
    m_calls.push_back(call);
    std::vector<std::function<void()>> actions;
    for (const auto& [prefix, action] : m_actions) {
        if (call.starts_with(prefix)) {
            actions.push_back(action);
        }
    }
    return actions;
}

void CallList::When(const std::string& prefix, std::function<void()> action) {
    const std::lock_guard lock(m_mutex);
    m_actions.emplace_back(prefix, std::move(action));
}

std::vector<std::string> CallList::All() const {
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

std::vector<std::string> CallList::Of(const std::vector<std::string>& prefixes) const {
    auto calls = All();
    std::erase_if(calls, [&](const std::string& call) {
        return std::none_of(prefixes.begin(), prefixes.end(),
                            [&](const std::string& prefix) { return call.starts_with(prefix); });
    });
    return calls;
}

void CallList::Clear() {
    const std::lock_guard lock(m_mutex);
    m_calls.clear();
}

void CallList::Reset() {
    const std::lock_guard lock(m_mutex);
    m_calls.clear();
    m_actions.clear();
}

}  // namespace support
