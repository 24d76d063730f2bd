// Sections with stream events.
#include "television/events/StreamEventSection.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {

void Fuzz(std::span<const std::uint8_t> input) {
    EventVersions versions;
    for (Chunk& chunk : Split(input)) {
        const auto bytes = Completed(std::move(chunk.bytes));
        const auto section = bytes ? ReadSection(*bytes) : std::nullopt;
        if (!section) continue;
        std::size_t size = 0;
        for (const StreamEvent& event : EventsIn(*section)) size += 12 + event.data.size();
        Demand(size <= section->body.size(), "events are no longer than their section");
        versions.IsNew(*section);
        Demand(!versions.IsNew(*section), "one version is one event");
    }
}

}  // namespace television::fuzz
