// The stream event descriptors of a section.
#include "television/events/StreamEventSection.h"

#include "television/events/FieldReader.h"

namespace television {
namespace {

// An event's id, its NPT behind 31 reserved bits, and the rest.
std::vector<TimedEvent> AllEventsIn(const Section& section) {
    std::vector<TimedEvent> events;
    for (const StreamDescriptor& descriptor : DescriptorsIn(section)) {
        if (descriptor.tag != kStreamEventTag) continue;
        FieldReader fields(descriptor.data);
        TimedEvent timed;
        timed.event.id = fields.Take16();
        const std::int64_t high = fields.Take32() & 1;
        timed.npt = high << 32 | fields.Take32();
        if (!fields.IsValid()) return {};
        timed.event.data.assign(fields.Rest().begin(), fields.Rest().end());
        events.push_back(std::move(timed));
    }
    return events;
}

}  // namespace

// The two highest bits of table_id_extension tell it.
StreamSection KindOf(const Section& section) {
    if (section.table != kStreamDescriptorTable || !section.current) return StreamSection::None;
    constexpr StreamSection kinds[] = {StreamSection::DoItNow, StreamSection::Reference, StreamSection::Timed,
                                       StreamSection::None};
    return kinds[section.extension >> 14];
}

std::vector<StreamDescriptor> DescriptorsIn(const Section& section) {
    std::vector<StreamDescriptor> descriptors;
    for (FieldReader fields(section.body); !fields.Rest().empty();) {
        const std::uint8_t tag = fields.Take8();
        descriptors.push_back({tag, fields.TakeCounted8()});
        if (!fields.IsValid()) return {};
    }
    return descriptors;
}

std::vector<StreamEvent> EventsIn(const Section& section) {
    std::vector<StreamEvent> events;
    if (KindOf(section) == StreamSection::DoItNow)
        for (TimedEvent& timed : AllEventsIn(section)) events.push_back(std::move(timed.event));
    return events;
}

std::vector<TimedEvent> TimedEventsIn(const Section& section) {
    return KindOf(section) == StreamSection::Timed ? AllEventsIn(section) : std::vector<TimedEvent>{};
}

bool EventVersions::IsNew(const Section& section) {
    const auto [last, first] = m_last.try_emplace(section.extension, section.version);
    const bool isNew = first || last->second != section.version;
    last->second = section.version;
    return isNew;
}

}  // namespace television
