// How a transport stream is broadcast, from its delivery system descriptor (ETSI EN 300 468, clauses 6.2.13 and 6.4).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "television/tables/Tables.h"

namespace television {

struct DeliverySystem {
    std::uint8_t tag = 0;         // of the descriptor: cable, satellite or terrestrial
    std::uint64_t frequency = 0;  // in the descriptor's own unit
    std::uint32_t orbit = 0;      // of a satellite: position, east or west, polarization
    bool operator==(const DeliverySystem&) const = default;
};

enum class DsdFault { None, Malformed, Unsupported };

// Parses a whole descriptor, tag and length included. Writes `system` when there is no fault.
DsdFault ParseDeliverySystem(const std::string& descriptor, DeliverySystem& system);

// Among a transport stream's descriptors the one that says how it is broadcast, or null.
const Descriptor* FindDeliverySystem(const Descriptors& descriptors);
// The kind of channel (OIPF DAE, clause 7.13.11.1) on a stream with these descriptors.
int IdTypeOf(const Descriptors& descriptors);

inline constexpr int kFirstDvbIdType = 10, kLastDvbIdType = 16;

}  // namespace television
