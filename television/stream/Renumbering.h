// Numbers the packets of a PID anew, so that no gap in their count shows.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace television {

class Renumbering {
public:
    // The PID's next packets, among others.
    void Apply(std::uint16_t pid, std::span<std::uint8_t> packets);

private:
    void Renumber(std::uint8_t* packet);

    std::optional<std::uint8_t> m_last;  // as it was
    unsigned m_count = 0;                // of the same packet, as it is now
};

}  // namespace television
