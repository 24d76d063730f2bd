// Stream events as sections announce them (ISO/IEC 13818-6, clauses 8.3 and 8.5; ETSI TS 102 809, clause B.2.4).
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "television/tables/SectionCollector.h"

namespace television {

inline constexpr std::uint8_t kStreamDescriptorTable = 0x3d, kStreamEventTag = 0x1a;

struct StreamEvent {
    std::uint16_t id = 0;
    std::vector<unsigned char> data;  // private, of the event
    bool operator==(const StreamEvent&) const = default;
};

// The events that are to be done now. None when the section announces others, is not valid yet, or its lengths are
// wrong. Events at a time of the stream's own (NPT) are not read.
std::vector<StreamEvent> EventsIn(const Section& section);

// A section is sent several times so that nobody misses it: one version of it is one event.
class EventVersions {
public:
    // True for the first section of a version.
    bool IsNew(const Section& section);

private:
    std::map<std::uint16_t, std::uint8_t> m_last;  // by table_id_extension
};

}  // namespace television
