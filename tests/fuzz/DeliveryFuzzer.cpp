// The delivery system descriptor that a page gives.
#include "television/tables/DeliverySystem.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {

void Fuzz(std::span<const std::uint8_t> input) {
    const std::string descriptor(input.begin(), input.end());
    constexpr std::uint8_t kUntouched = 0xee;
    DeliverySystem system{.tag = kUntouched};
    const DsdFault fault = ParseDeliverySystem(descriptor, system);
    Demand(fault == DsdFault::None || (system.tag == kUntouched && system.frequencies.empty()),
           "nothing is written when there is a fault");
    if (fault != DsdFault::None) return;
    Demand(system.tag == static_cast<std::uint8_t>(descriptor[0]), "a descriptor is of the kind that it says");
    Demand(system.frequencies.size() * 4 <= descriptor.size(), "its frequencies have room in it");
    Demand(SameKind(system, system) && SameStream(system, system), "a stream is the same as itself");
    DeliverySystem longer;
    Demand(ParseDeliverySystem(descriptor + '\0', longer) == DsdFault::Malformed, "one with more bytes is malformed");
}

}  // namespace television::fuzz
