// Each packet follows the one before; one that came twice has the same number twice, which decoders know to drop.
#include "television/stream/Renumbering.h"

#include "television/stream/TransportPacket.h"

namespace television {

void Renumbering::Apply(std::uint16_t pid, std::span<std::uint8_t> packets) {
    for (std::size_t at = 0; at + kPacketSize <= packets.size(); at += kPacketSize)
        if (PidOf(packets.data() + at) == pid) Renumber(packets.data() + at);
}

// Packets without a payload are not counted (ISO/IEC 13818-1, clause 2.4.3.3).
void Renumbering::Renumber(std::uint8_t* packet) {
    if (HasPayload(packet) && m_last != ContinuityOf(packet)) {
        m_last = ContinuityOf(packet);
        ++m_count;
    }
    SetContinuity(packet, m_count);
}

}  // namespace television
