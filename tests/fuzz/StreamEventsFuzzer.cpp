// Sections with stream events, and those that wait for their time.
#include "television/events/StreamEventSection.h"
#include "television/events/TimedEvents.h"
#include "television/stream/TransportPacket.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {

void Fuzz(std::span<const std::uint8_t> input) {
    EventVersions versions;
    TimedEvents waiting;
    std::int64_t clock = kTimeWrap - 300'000;
    for (Chunk& chunk : Split(input)) {
        const auto bytes = Completed(std::move(chunk.bytes));
        const auto section = bytes ? ReadSection(*bytes) : std::nullopt;
        if (!section) continue;
        std::size_t size = 0;
        const auto events = EventsIn(*section);
        const auto timed = TimedEventsIn(*section);
        for (const StreamEvent& event : events) size += 12 + event.data.size();
        for (const TimedEvent& event : timed) size += 12 + event.event.data.size();
        Demand(size <= section->body.size(), "events are no longer than their section");
        if (const auto reference = ReferenceIn(*section)) waiting.SetReference(*reference);
        waiting.Plan(*section, timed);
        for (int i = 0; i < 3; ++i) waiting.DueBy(clock = Wrapped(clock + 45'000, kTimeWrap));
        versions.IsNew(*section);
        Demand(!versions.IsNew(*section), "one version is one event");
    }
}

}  // namespace television::fuzz
