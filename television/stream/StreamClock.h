// The time in a transport stream, as the programme clock references of one of its programmes tell it.
#pragma once

#include <cstdint>
#include <optional>

#include "television/stream/TransportPacket.h"

namespace television {

class StreamClock {
public:
    // Looks at the next packet. True when the clock jumped: what follows does not continue what was before.
    bool Observe(const std::uint8_t* packet);
    // The time since the first reference, in 27 MHz; jumps do not count.
    std::int64_t Now() const { return m_now; }
    bool Running() const { return m_last.has_value(); }
    // True when the packet carries a reference of the programme that is followed.
    bool Ticks(const std::uint8_t* packet) const { return PidOf(packet) == m_pid && ClockOf(packet); }

private:
    bool Advance(std::int64_t clock);

    std::uint16_t m_pid = kNullPid;
    std::optional<std::int64_t> m_last;
    std::int64_t m_now = 0;
    unsigned m_othersSince = 0;
};

}  // namespace television
