// Section 0 has the present event, section 1 the following one.
#include "television/tables/EventSections.h"

#include "television/tables/DvbTime.h"

namespace television {
namespace {

constexpr std::uint8_t kPresentFollowingActual = 0x4e;
constexpr std::size_t kBeforeEvents = 6, kEventHeader = 12, kDescriptorHeader = 2;
// A stream may invent a service for each section; so many we believe.
constexpr std::size_t kLargestServiceCount = 1024;
// The present and the following event are two sections. More are for references to other services, and few.
constexpr std::uint8_t kLastSection = 7;

// All bits of a time that is not known are set.
constexpr std::uint64_t kUnknownStart = 0xffffffffff, kUnknownDuration = 0xffffff;

std::uint64_t Number(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes) value = value << 8 | byte;
    return value;
}

Descriptors ReadDescriptors(std::span<const std::uint8_t> loop) {
    Descriptors descriptors;
    while (loop.size() >= kDescriptorHeader && loop.size() - kDescriptorHeader >= loop[1]) {
        const auto data = loop.subspan(kDescriptorHeader, loop[1]);
        descriptors.push_back({loop[0], {data.begin(), data.end()}});
        loop = loop.subspan(kDescriptorHeader + data.size());
    }
    return descriptors;
}

Event ReadEvent(std::span<const std::uint8_t> header, std::span<const std::uint8_t> loop) {
    const std::uint64_t start = Number(header.subspan(2, 5)), duration = Number(header.subspan(7, 3));
    Event event;
    event.id = static_cast<std::uint16_t>(Number(header.first(2)));
    event.start = start == kUnknownStart ? 0 : UnixTime(start);
    event.duration = duration == kUnknownDuration ? 0 : Seconds(duration);
    event.descriptors = ReadDescriptors(loop);
    return event;
}

}  // namespace

std::vector<Event> EventsOf(const Section& section) {
    std::vector<Event> events;
    if (section.body.size() < kBeforeEvents) return events;
    for (auto rest = section.body.subspan(kBeforeEvents); rest.size() >= kEventHeader;) {
        const std::size_t length = Number(rest.subspan(10, 2)) & 0x0fff;
        if (rest.size() - kEventHeader < length) break;
        events.push_back(ReadEvent(rest, rest.subspan(kEventHeader, length)));
        events.back().following = section.number > 0;
        rest = rest.subspan(kEventHeader + length);
    }
    return events;
}

void EventSections::Push(const std::uint8_t* packet, const Use& use) {
    m_collector.Push(packet, [&](const Section& section) {
        if (section.table == kPresentFollowingActual && section.current) Take(section, use);
    });
}

void EventSections::Take(const Section& section, const Use& use) {
    if (m_versions.size() >= kLargestServiceCount && !m_versions.contains(section.extension)) return;
    Version& version = m_versions[section.extension];
    if (version.number != section.version || version.last != section.last) version = {section.version, section.last, {}};
    if (section.number > section.last || section.last > kLastSection) return;
    version.sections[section.number] = EventsOf(section);
    if (version.sections.size() != std::size_t{section.last} + 1) return;
    std::vector<Event> events;
    for (const auto& [number, some] : version.sections) events.insert(events.end(), some.begin(), some.end());
    use(section.extension, std::move(events));
}

}  // namespace television
