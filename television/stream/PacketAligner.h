// Cuts a run of bytes into transport stream packets: finds where they begin, and again after a fault.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "television/stream/TransportPacket.h"

namespace television {

class PacketAligner {
public:
    // Takes bytes as they come and appends the whole packets in them to `packets`.
    void Push(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& packets);
    // Forgets an unfinished packet.
    void Reset() { m_rest.clear(); }

private:
    bool Lock(std::size_t& at) const;

    std::vector<std::uint8_t> m_rest;
    bool m_locked = false;
};

}  // namespace television
