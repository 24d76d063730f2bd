// The normal play time (NPT) of a programme, told against the stream's clock (ISO/IEC 13818-6, clause 8.1).
#pragma once

#include <cstdint>
#include <optional>

#include "television/tables/SectionCollector.h"

namespace television {

// Both times count 90 kHz in 33 bits; NPT runs numerator / denominator times as fast as the clock.
struct NptReference {
    std::int64_t clock = 0, npt = 0;
    std::uint16_t numerator = 0, denominator = 0;
    bool operator==(const NptReference&) const = default;
};

// Nothing when the section has none that holds now.
std::optional<NptReference> ReferenceIn(const Section& section);

// Moves the clock of a reference that begins and ends in this packet, as the stream's clock was moved.
void ShiftReference(std::uint8_t* packet, std::int64_t shift);

}  // namespace television
