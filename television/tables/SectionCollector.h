// Sections of a PID as they stand in its packets, for tables that libdvbpsi does not know.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace television {

// A section in the long form.
struct Section {
    std::uint8_t table = 0;
    std::uint16_t extension = 0;
    std::uint8_t version = 0;
    bool current = false;
    std::uint8_t number = 0, last = 0;
    std::span<const std::uint8_t> body;  // between the header and the CRC
    std::span<const std::uint8_t> whole;
};

// The section in these bytes; nothing when it has the short form, or its length or its CRC is wrong.
std::optional<Section> ReadSection(std::span<const std::uint8_t> bytes);

// ISO/IEC 13818-1, annex A. Zero over a section with its CRC.
std::uint32_t SectionCrc(std::span<const std::uint8_t> bytes);

// Puts the sections of one PID together. Whatever the packets hold, it reads only what is there.
class SectionCollector {
public:
    using Use = std::function<void(const Section&)>;

    // Takes a packet of the PID and calls `use` with each section that is complete and right by it.
    void Push(const std::uint8_t* packet, const Use& use);
    // How often the packets' count had a gap.
    unsigned Gaps() const { return m_gaps; }

private:
    bool Follows(const std::uint8_t* packet);
    void Append(std::span<const std::uint8_t> bytes, const Use& use);
    void Begin();
    void Abandon();

    std::vector<std::uint8_t> m_bytes;  // of the section under way
    bool m_underWay = false;
    std::optional<unsigned> m_continuity;
    unsigned m_gaps = 0;
};

}  // namespace television
