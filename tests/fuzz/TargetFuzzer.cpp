// The address of an object in a carousel, which a page gives.
#include <algorithm>

#include "television/events/ObjectCarousel.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {

void Fuzz(std::span<const std::uint8_t> input) {
    const std::string url(input.begin(), input.end());
    const auto target = ReadCarouselTarget(url);
    if (!target) return;
    Demand(url.starts_with("dvb://"), "only an address of DVB leads into a carousel");
    Demand(!target->path.empty(), "a target has a name");
    for (const std::string& name : target->path)
        Demand(!name.empty() && name.find('/') == name.npos, "names stand between slashes");
}

}  // namespace television::fuzz
