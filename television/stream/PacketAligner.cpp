// The search for sync bytes.
#include "television/stream/PacketAligner.h"

namespace television {
namespace {

// Other data has a byte like the sync byte here and there, but not five of them a packet apart.
constexpr std::size_t kSyncsNeeded = 5;
// What lies between two packets: nothing; the time of arrival that recorders note; a broadcast's error correction.
constexpr std::size_t kGaps[] = {0, 4, 16};
constexpr std::size_t kBytesNeeded = (kSyncsNeeded - 1) * (kPacketSize + 16) + 1;

bool ArePackets(const std::uint8_t* bytes, std::size_t distance) {
    for (std::size_t i = 0; i < kSyncsNeeded; ++i)
        if (bytes[i * distance] != kSyncByte) return false;
    return true;
}

}  // namespace

// Moves `at` to where packets begin. False when that is not to be told from the bytes that have come.
bool PacketAligner::Lock(std::size_t& at) {
    for (; m_rest.size() - at >= kBytesNeeded; ++at)
        for (const std::size_t gap : kGaps)
            if (ArePackets(m_rest.data() + at, kPacketSize + gap)) {
                m_gap = gap;
                return true;
            }
    return false;
}

// Moves `at` to the next packet, all of which has come. False when there is none yet.
bool PacketAligner::Next(std::size_t& at) {
    const std::size_t gap = m_locked ? m_gap : 0;
    if (m_rest.size() - at < gap + kPacketSize) return false;
    m_locked = m_locked && m_rest[at + gap] == kSyncByte;
    if (!m_locked) return m_locked = Lock(at);
    at += gap;
    return true;
}

void PacketAligner::Push(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& packets) {
    m_rest.insert(m_rest.end(), bytes.begin(), bytes.end());
    std::size_t at = 0;
    while (Next(at)) {
        packets.insert(packets.end(), m_rest.begin() + static_cast<std::ptrdiff_t>(at),
                       m_rest.begin() + static_cast<std::ptrdiff_t>(at + kPacketSize));
        at += kPacketSize;
    }
    m_rest.erase(m_rest.begin(), m_rest.begin() + static_cast<std::ptrdiff_t>(at));
}

void PacketAligner::Reset() {
    m_rest.clear();
    m_locked = false;
}

}  // namespace television
