// Cuts a run of bytes into transport stream packets: finds where they begin, and again after a fault.
// Packets may lie 188 bytes apart, 192 (a time of arrival before each) or 204 (error correction behind each).
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
    // Forgets an unfinished packet: the next bytes are those of a beginning.
    void Reset();

private:
    bool Lock(std::size_t& at);
    bool Next(std::size_t& at);

    std::vector<std::uint8_t> m_rest;
    bool m_locked = false;
    std::size_t m_gap = 0;  // between two packets
};

}  // namespace television
