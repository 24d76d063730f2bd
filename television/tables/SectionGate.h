// What libdvbpsi gets to see: whole sections with a right CRC, whose loops end where they do. Of others it would read
// further than they go.
#pragma once

#include <cstdint>
#include <functional>
#include <set>

#include "television/tables/SectionCollector.h"

namespace television {

// Whether the lengths in a PAT, PMT, NIT, SDT or EIT keep to the section. True of every other table.
bool LengthsHold(const Section& section);

class SectionGate {
public:
    using Use = std::function<void(std::uint8_t* packet)>;

    // Takes a packet of one PID, and calls `use` with the packets of each section that may pass.
    void Push(const std::uint8_t* packet, const Use& use);

private:
    bool Passes(const Section& section);
    void Cut(std::span<const std::uint8_t> section, const Use& use);

    SectionCollector m_collector;
    unsigned m_gaps = 0;
    unsigned m_continuity = 0;
    std::set<std::uint32_t> m_subtables;  // that have passed
};

}  // namespace television
