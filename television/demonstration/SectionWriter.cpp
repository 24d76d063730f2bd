// Bytes, sections and their packets (ISO/IEC 13818-1, clause 2.4.4).
#include "television/demonstration/SectionWriter.h"

#include <algorithm>

#include "television/tables/SectionCollector.h"

namespace television::demonstration {
namespace {

constexpr std::uint8_t kUtf8Marker = 0x15;
constexpr std::size_t kCrcSize = 4;

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

}  // namespace

Bytes& Bytes::Put8(unsigned value) {
    m_data.push_back(static_cast<std::uint8_t>(value));
    return *this;
}

Bytes& Bytes::Put16(unsigned value) { return Put8(value >> 8).Put8(value); }
Bytes& Bytes::Put32(std::uint32_t value) { return Put16(value >> 16).Put16(value); }
Bytes& Bytes::Put40(std::uint64_t value) {
    return Put8(static_cast<unsigned>(value >> 32)).Put32(static_cast<std::uint32_t>(value));
}

Bytes& Bytes::Put(const Bytes& bytes) {
    m_data.insert(m_data.end(), bytes.m_data.begin(), bytes.m_data.end());
    return *this;
}

Bytes& Bytes::Put(std::string_view characters) {
    m_data.insert(m_data.end(), characters.begin(), characters.end());
    return *this;
}

Bytes& Bytes::PutText(std::string_view utf8) {
    if (IsAscii(utf8)) return Put8(static_cast<unsigned>(utf8.size())).Put(utf8);
    return Put8(static_cast<unsigned>(utf8.size() + 1)).Put8(kUtf8Marker).Put(utf8);
}

Bytes& Bytes::PutDescriptor(unsigned tag, const Bytes& body) {
    return Put8(tag).Put8(static_cast<unsigned>(body.Size())).Put(body);
}

Bytes& Bytes::PutLoop(const Bytes& loop) { return Put16(0xf000 | static_cast<unsigned>(loop.Size())).Put(loop); }

Section MakeSection(const SectionHeader& header, const Bytes& body) {
    constexpr std::size_t kBehindLength = 5;
    Bytes section;
    section.Put8(header.table)
        .Put16(0xf000 | static_cast<unsigned>(kBehindLength + body.Size() + kCrcSize))
        .Put16(header.extension)
        .Put8(0xc1 | (header.version & 0x1f) << 1)
        .Put8(header.number)
        .Put8(header.last)
        .Put(body);
    section.Put32(SectionCrc(section.Data()));
    return section.Data();
}

Section MakeShortSection(unsigned table, const Bytes& body) {
    return Bytes().Put8(table).Put16(0x7000 | static_cast<unsigned>(body.Size())).Put(body).Data();
}

void Packetize(const Section& section, std::uint16_t pid, std::uint8_t& continuity,
               std::vector<std::uint8_t>& packets) {
    for (std::size_t at = 0; at < section.size();) {
        std::uint8_t packet[kPacketSize];
        std::fill(std::begin(packet), std::end(packet), std::uint8_t{0xff});
        packet[0] = kSyncByte;
        packet[1] = static_cast<std::uint8_t>((at == 0 ? 0x40 : 0) | pid >> 8);
        packet[2] = static_cast<std::uint8_t>(pid);
        packet[3] = 0x10;
        SetContinuity(packet, continuity++);
        std::size_t to = 4;
        if (at == 0) packet[to++] = 0;  // the section begins at once
        const std::size_t count = std::min(kPacketSize - to, section.size() - at);
        std::copy_n(section.begin() + static_cast<std::ptrdiff_t>(at), count, packet + to);
        at += count;
        packets.insert(packets.end(), std::begin(packet), std::end(packet));
    }
}

}  // namespace television::demonstration
