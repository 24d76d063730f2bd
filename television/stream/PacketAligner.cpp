// The search for sync bytes.
#include "television/stream/PacketAligner.h"

namespace television {
namespace {

// Other data has a byte like the sync byte here and there, but not five of them a packet apart.
constexpr std::size_t kSyncsNeeded = 5;
constexpr std::size_t kBytesNeeded = (kSyncsNeeded - 1) * kPacketSize + 1;

bool IsPacketStart(const std::uint8_t* bytes) {
    for (std::size_t i = 0; i < kSyncsNeeded; ++i)
        if (bytes[i * kPacketSize] != kSyncByte) return false;
    return true;
}

}  // namespace

// Moves `at` to where packets begin. False when that is not to be told from the bytes that have come.
bool PacketAligner::Lock(std::size_t& at) const {
    for (; m_rest.size() - at >= kBytesNeeded; ++at)
        if (IsPacketStart(m_rest.data() + at)) return true;
    return false;
}

void PacketAligner::Push(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& packets) {
    m_rest.insert(m_rest.end(), bytes.begin(), bytes.end());
    std::size_t at = 0;
    while (m_rest.size() - at >= kPacketSize) {
        m_locked = m_locked && m_rest[at] == kSyncByte;
        if (!m_locked && !(m_locked = Lock(at))) break;
        packets.insert(packets.end(), m_rest.begin() + static_cast<std::ptrdiff_t>(at),
                       m_rest.begin() + static_cast<std::ptrdiff_t>(at + kPacketSize));
        at += kPacketSize;
    }
    m_rest.erase(m_rest.begin(), m_rest.begin() + static_cast<std::ptrdiff_t>(at));
}

}  // namespace television
