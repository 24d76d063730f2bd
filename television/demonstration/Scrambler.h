// Scrambles the streams of a service, as a broadcaster does who wants it to be seen with a card only.
#pragma once

#include <atomic>
#include <cstdint>
#include <set>
#include <vector>

namespace television::demonstration {

class Scrambler {
public:
    explicit Scrambler(std::set<std::uint16_t> pids) : m_pids(std::move(pids)) {}

    // Any thread.
    void Switch(bool on) { m_on = on; }
    // Scrambles the payloads of its PIDs in place; adaptation fields, with the clocks in them, stay clear.
    void Process(std::vector<std::uint8_t>& packets) const;

private:
    std::set<std::uint16_t> m_pids;
    std::atomic<bool> m_on = true;
};

}  // namespace television::demonstration
