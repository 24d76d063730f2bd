// The payload is mixed with numbers that look random: no key, but nothing that a decoder could take for a picture.
#include "television/demonstration/Scrambler.h"

#include "television/stream/TransportPacket.h"

namespace television::demonstration {
namespace {

constexpr std::uint8_t kEvenKey = 0x80;

void ScramblePacket(std::uint8_t* packet) {
    const auto payload = PayloadOf(packet);
    if (payload.empty()) return;
    std::uint32_t number = 0x5eed'0000u | packet[3];
    for (auto* byte = packet + (payload.data() - packet); byte != packet + kPacketSize; ++byte) {
        number = number * 1'664'525 + 1'013'904'223;
        *byte ^= static_cast<std::uint8_t>(number >> 24);
    }
    packet[3] |= kEvenKey;
}

}  // namespace

void Scrambler::Process(std::vector<std::uint8_t>& packets) const {
    if (!m_on) return;
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize)
        if (m_pids.contains(PidOf(packets.data() + at))) ScramblePacket(packets.data() + at);
}

}  // namespace television::demonstration
