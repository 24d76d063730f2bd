// Several pieces in one input.
#include "tests/fuzz/Chunks.h"

#include <algorithm>

#include "television/events/FieldReader.h"
#include "television/tables/SectionCollector.h"

namespace television::fuzz {
namespace {

constexpr std::size_t kMostChunks = 100, kSectionHeader = 8, kCrc = 4, kBeforeLength = 3, kLargestSection = 4096;

}  // namespace

std::vector<Chunk> Split(std::span<const std::uint8_t> input) {
    std::vector<Chunk> chunks;
    for (FieldReader fields(input); !fields.Rest().empty() && chunks.size() < kMostChunks;) {
        const std::uint16_t number = fields.Take16();
        const std::size_t length = fields.Take16();
        const auto bytes = fields.Take(std::min(length, fields.Rest().size()));
        chunks.push_back({number, {bytes.begin(), bytes.end()}});
    }
    return chunks;
}

Bytes Join(const std::vector<Chunk>& chunks) {
    Bytes joined;
    for (const auto& [number, bytes] : chunks) {
        for (const std::size_t field : {std::size_t{number}, bytes.size()}) {
            joined.push_back(static_cast<std::uint8_t>(field >> 8));
            joined.push_back(static_cast<std::uint8_t>(field));
        }
        joined.insert(joined.end(), bytes.begin(), bytes.end());
    }
    return joined;
}

std::optional<Bytes> Completed(Bytes section) {
    if (section.size() < kSectionHeader) return std::nullopt;
    section.resize(std::min(section.size(), kLargestSection - kCrc));
    const std::size_t length = section.size() - kBeforeLength + kCrc;
    section[1] = static_cast<std::uint8_t>(0x80 | (section[1] & 0x70) | length >> 8);
    section[2] = static_cast<std::uint8_t>(length);
    const std::uint32_t crc = SectionCrc(section);
    for (int shift = 24; shift >= 0; shift -= 8) section.push_back(static_cast<std::uint8_t>(crc >> shift));
    return section;
}

Bytes WithoutCrc(Bytes section) {
    section.resize(section.size() - kCrc);
    return section;
}

}  // namespace television::fuzz
