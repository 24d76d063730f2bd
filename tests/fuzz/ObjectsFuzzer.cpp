// The objects in a carousel's module.
#include "television/events/CarouselReference.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

std::size_t SizeOf(const CarouselObject& object) {
    std::size_t size = object.kind.size();
    for (const auto& [name, place] : object.entries) size += name.size() + place.key.size();
    return size;
}

void DemandConsumption(std::span<const std::uint8_t> bytes) {
    FieldReader fields(bytes);
    const auto place = ReadReference(fields);
    const auto rest = fields.Rest();
    Demand(rest.empty() || rest.data() + rest.size() == bytes.data() + bytes.size(), "what is left is the end");
    Demand(!place || fields.IsValid(), "a place comes from a whole reference");
    Demand(!place || place->key.size() < bytes.size(), "a key lies in its reference");
}

}  // namespace

// Objects with each of these keys; no key has more than what a module brings.
void Fuzz(std::span<const std::uint8_t> input) {
    DemandConsumption(input);
    for (std::uint8_t key = 0; key < 5; ++key) {
        const std::uint8_t bytes[] = {key};
        if (const auto object = FindObject(input, bytes)) {
            Demand(SizeOf(*object) < input.size(), "an object is smaller than its module");
            Demand(object->kind == "ste" || object->events.empty(), "only a stream event object has events");
        }
    }
}

}  // namespace television::fuzz
