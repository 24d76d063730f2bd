// Which uses of which functions fail, and how often each was used.
#pragma once

#include <limits>
#include <map>
#include <mutex>
#include <string>

namespace support {

class FaultPlan {
public:
    // The n-th use from now on fails (1: the next one); FailFrom: that one and all after it.
    void FailNth(const std::string& function, unsigned n);
    void FailFrom(const std::string& function, unsigned n = 1);
    void StopFailing(const std::string& function);

    // Counts a use; true when it must fail. All threads.
    bool Use(const std::string& function);
    unsigned Uses(const std::string& function) const;
    void Reset();

private:
    struct Range {
        unsigned first;
        unsigned last;
    };
    void Plan(const std::string& function, unsigned n, unsigned count);

    mutable std::mutex m_mutex;
    std::map<std::string, unsigned> m_uses;
    std::multimap<std::string, Range> m_failing;
};

}  // namespace support
