// How a transport stream is broadcast, from its delivery system descriptor (ETSI EN 300 468, clauses 6.2.13 and 6.4).
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "television/tables/Tables.h"

namespace television {

struct DeliverySystem {
    std::uint8_t tag = 0, extension = 0;      // of the descriptor, which tell the kind of delivery
    std::set<std::uint32_t> frequencies = {};  // as the descriptor writes them; the stream may be sent on several
    // What else tells streams apart: a satellite's position, side and polarization; pipe and system of DVB-T2, pipe and
    // data slice of DVB-C2.
    std::uint32_t place = 0;
};

bool SameKind(const DeliverySystem& a, const DeliverySystem& b);
// True when they describe the same stream: the frequencies need only have one in common, where both tell any.
bool SameStream(const DeliverySystem& a, const DeliverySystem& b);

enum class DsdFault { None, Malformed, Unsupported };

// Parses a whole descriptor, tag and length included. Writes `system` when there is no fault.
DsdFault ParseDeliverySystem(const std::string& descriptor, DeliverySystem& system);

// All the ways in which a transport stream with these descriptors is broadcast.
std::vector<DeliverySystem> ListDeliverySystems(const Descriptors& descriptors);
// Among a transport stream's descriptors the one that says how it is broadcast, or null.
const Descriptor* FindDeliverySystem(const Descriptors& descriptors);
// The kind of channel (OIPF DAE, clause 7.13.11.1) on a stream with these descriptors.
int IdTypeOf(const Descriptors& descriptors);

inline constexpr int kFirstDvbIdType = 10, kLastDvbIdType = 16;

}  // namespace television
