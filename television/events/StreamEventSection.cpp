// The stream event descriptors of a section.
#include "television/events/StreamEventSection.h"

namespace television {
namespace {

constexpr std::size_t kDescriptorHeader = 2, kEventHeader = 10;  // the latter: eventId, reserved and eventNPT

// The two highest bits of table_id_extension: 0 for an event to be done now, whose id the others repeat.
bool IsDoneNow(const Section& section) { return section.extension >> 14 == 0; }

StreamEvent ReadEvent(std::span<const std::uint8_t> descriptor) {
    const auto data = descriptor.subspan(kEventHeader);
    return {static_cast<std::uint16_t>(descriptor[0] << 8 | descriptor[1]), {data.begin(), data.end()}};
}

}  // namespace

std::vector<StreamEvent> EventsIn(const Section& section) {
    if (section.table != kStreamDescriptorTable || !section.current || !IsDoneNow(section)) return {};
    std::vector<StreamEvent> events;
    for (auto rest = section.body; !rest.empty();) {
        if (rest.size() < kDescriptorHeader || rest.size() - kDescriptorHeader < rest[1]) return {};
        const auto descriptor = rest.subspan(kDescriptorHeader, rest[1]);
        if (rest[0] == kStreamEventTag) {
            if (descriptor.size() < kEventHeader) return {};
            events.push_back(ReadEvent(descriptor));
        }
        rest = rest.subspan(kDescriptorHeader + descriptor.size());
    }
    return events;
}

bool EventVersions::IsNew(const Section& section) {
    const auto [last, first] = m_last.try_emplace(section.extension, section.version);
    const bool isNew = first || last->second != section.version;
    last->second = section.version;
    return isNew;
}

}  // namespace television
