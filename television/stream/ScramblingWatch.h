// Which streams of a multiplex are scrambled, as their packets say (transport_scrambling_control).
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "television/stream/TransportPacket.h"

namespace television {

class ScramblingWatch {
public:
    enum class State : std::uint8_t { Unknown, Clear, Scrambled };

    // Looks at the next packet; true when its PID's state is another now. One thread.
    bool Push(const std::uint8_t* packet);
    // What follows is another stream.
    void Forget();
    // Any thread.
    State Of(std::uint16_t pid) const { return m_streams[pid].state; }

private:
    struct Stream {
        std::atomic<State> state = State::Unknown;
        std::uint8_t contrary = 0;  // packets in a row that say otherwise
    };
    std::array<Stream, kPids> m_streams{};
};

}  // namespace television
