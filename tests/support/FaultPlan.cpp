// Which uses of which functions fail.
#include "tests/support/FaultPlan.h"

namespace support {

void FaultPlan::FailNth(const std::string& function, unsigned n) { Plan(function, n, 1); }

void FaultPlan::FailFrom(const std::string& function, unsigned n) {
    Plan(function, n, std::numeric_limits<unsigned>::max() / 2);
}

void FaultPlan::Plan(const std::string& function, unsigned n, unsigned count) {
    const std::lock_guard lock(m_mutex);
    const unsigned first = m_uses[function] + n;
    m_failing.insert({function, {first, first + count - 1}});
}

void FaultPlan::StopFailing(const std::string& function) {
    const std::lock_guard lock(m_mutex);
    m_failing.erase(function);
}

bool FaultPlan::Use(const std::string& function) {
    const std::lock_guard lock(m_mutex);
    const unsigned use = ++m_uses[function];
    const auto [begin, end] = m_failing.equal_range(function);
    for (auto range = begin; range != end; ++range) {
        if (use >= range->second.first && use <= range->second.last) {
            return true;
        }
    }
    return false;
}

unsigned FaultPlan::Uses(const std::string& function) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_uses.find(function);
    return found == m_uses.end() ? 0 : found->second;
}

void FaultPlan::Reset() {
    const std::lock_guard lock(m_mutex);
    m_uses.clear();
    m_failing.clear();
}

}  // namespace support
