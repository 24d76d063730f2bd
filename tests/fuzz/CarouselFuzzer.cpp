// A carousel's sections, in which a stream event object is searched for.
#include <algorithm>

#include "television/events/ObjectCarousel.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

// The parts of a message lie in the section that brought it.
void DemandParts(const Section& section) {
    ReadGateway(section);
    if (const auto list = ReadModuleList(section))
        Demand(list->modules.size() * 8 <= section.body.size(), "no more modules are listed than there is room for");
    if (const auto block = ReadBlock(section))
        Demand(block->data.data() >= section.body.data() &&
                   block->data.data() + block->data.size() <= section.body.data() + section.body.size(),
               "a block lies in its section");
}

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    ObjectCarousel carousel({"folder", "scores"});
    for (Chunk& chunk : Split(input)) {
        const auto bytes = Completed(std::move(chunk.bytes));
        const auto section = bytes ? ReadSection(*bytes) : std::nullopt;
        if (!section) continue;
        DemandParts(*section);
        if (const auto found = carousel.Take(*section)) {
            Demand(found->fault.empty() || found->events.empty(), "there are events or a fault");
            return;
        }
    }
}

}  // namespace television::fuzz
