// Packets to sections (ISO/IEC 13818-1, clause 2.4.4).
#include "television/tables/SectionCollector.h"

#include <array>
#include <utility>

#include "television/stream/TransportPacket.h"

namespace television {
namespace {

constexpr std::size_t kLargestSection = 4096, kBeforeLength = 3, kHeader = 8, kCrc = 4;
constexpr std::uint8_t kStuffing = 0xff;

std::size_t SizeOf(std::span<const std::uint8_t> section) {
    return kBeforeLength + ((section[1] & 0x0fu) << 8 | section[2]);
}

// What each byte makes of a sum of zero.
constexpr std::array<std::uint32_t, 256> CrcTable() {
    constexpr std::uint32_t kPolynomial = 0x04c11db7;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t crc = byte << 24;
        for (int bit = 0; bit < 8; ++bit) crc = crc & 0x80000000 ? crc << 1 ^ kPolynomial : crc << 1;
        table[byte] = crc;
    }
    return table;
}

}  // namespace

std::uint32_t SectionCrc(std::span<const std::uint8_t> bytes) {
    static constexpr auto kTable = CrcTable();
    std::uint32_t crc = 0xffffffff;
    for (const std::uint8_t byte : bytes) crc = crc << 8 ^ kTable[crc >> 24 ^ byte];
    return crc;
}

std::optional<Section> ReadSection(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kHeader + kCrc || SizeOf(bytes) != bytes.size()) return std::nullopt;
    const bool longForm = bytes[1] & 0x80;
    if (!longForm || SectionCrc(bytes) != 0) return std::nullopt;
    Section section;
    section.table = bytes[0];
    section.extension = static_cast<std::uint16_t>(bytes[3] << 8 | bytes[4]);
    section.version = bytes[5] >> 1 & 0x1f;
    section.current = bytes[5] & 1;
    section.number = bytes[6];
    section.last = bytes[7];
    section.body = bytes.subspan(kHeader, bytes.size() - kHeader - kCrc);
    section.whole = bytes;
    return section;
}

// False for a packet that comes a second time. A gap in the count ends the section under way.
bool SectionCollector::Follows(const std::uint8_t* packet) {
    const unsigned continuity = ContinuityOf(packet);
    const auto before = std::exchange(m_continuity, continuity);
    if (before == continuity) return false;
    if (before && ((*before + 1) & 0x0f) != continuity) {
        ++m_gaps;
        Abandon();
    }
    return true;
}

void SectionCollector::Push(const std::uint8_t* packet, const Use& use) {
    const bool broken = packet[1] & 0x80;
    const auto payload = PayloadOf(packet);
    if (broken || IsScrambled(packet)) Abandon();
    if (broken || IsScrambled(packet) || payload.empty() || !Follows(packet)) return;
    if (!StartsUnit(packet)) {
        Append(payload, use);
        return;
    }
    const std::size_t start = 1u + payload[0];  // of the first section that begins in this packet
    if (start > payload.size()) {
        Abandon();
        return;
    }
    Append(payload.subspan(1, start - 1), use);
    Begin();
    Append(payload.subspan(start), use);
}

void SectionCollector::Append(std::span<const std::uint8_t> bytes, const Use& use) {
    if (!m_underWay) return;
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    std::size_t at = 0;
    for (std::span<const std::uint8_t> rest(m_bytes); rest.size() >= kBeforeLength && rest[0] != kStuffing;
         rest = rest.subspan(SizeOf(rest))) {
        if (SizeOf(rest) > kLargestSection) {
            Abandon();
            return;
        }
        if (SizeOf(rest) > rest.size()) break;
        if (const auto section = ReadSection(rest.first(SizeOf(rest)))) use(*section);
        at += SizeOf(rest);
    }
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(at));
    if (!m_bytes.empty() && m_bytes[0] == kStuffing) Abandon();
}

void SectionCollector::Begin() {
    m_bytes.clear();
    m_underWay = true;
}

void SectionCollector::Abandon() {
    m_bytes.clear();
    m_underWay = false;
}

}  // namespace television
