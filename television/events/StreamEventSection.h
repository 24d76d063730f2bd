// Stream events as sections announce them (ISO/IEC 13818-6, clauses 8.3 and 8.5; ETSI TS 102 809, clause B.2.4).
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "television/tables/SectionCollector.h"

namespace television {

inline constexpr std::uint8_t kStreamDescriptorTable = 0x3d, kStreamEventTag = 0x1a;

// What a section of stream descriptors is for.
enum class StreamSection { DoItNow, Reference, Timed, None };
// None for a section that is not valid yet, or is of another table.
StreamSection KindOf(const Section& section);

struct StreamDescriptor {
    std::uint8_t tag = 0;
    std::span<const std::uint8_t> data;
};
// None when a length is wrong.
std::vector<StreamDescriptor> DescriptorsIn(const Section& section);

struct StreamEvent {
    std::uint16_t id = 0;
    std::vector<unsigned char> data;  // private, of the event
    bool operator==(const StreamEvent&) const = default;
};

// The events that are to be done now. None when the section announces others, is not valid yet, or its lengths are
// wrong.
std::vector<StreamEvent> EventsIn(const Section& section);

struct TimedEvent {
    StreamEvent event;
    std::int64_t npt = 0;  // when it is to be done, in 90 kHz
    bool operator==(const TimedEvent&) const = default;
};

// The events that are to be done when the normal play time has come to theirs.
std::vector<TimedEvent> TimedEventsIn(const Section& section);

// A section is sent several times so that nobody misses it: one version of it is one event.
class EventVersions {
public:
    // True for the first section of a version.
    bool IsNew(const Section& section);

private:
    std::map<std::uint16_t, std::uint8_t> m_last;  // by table_id_extension
};

}  // namespace television
