// The delivery system descriptor that a page gives.
#include "television/tables/DeliverySystem.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {

void Fuzz(std::span<const std::uint8_t> input) {
    const std::string descriptor(input.begin(), input.end());
    const DeliverySystem untouched{0xee, 1, 2};
    DeliverySystem system = untouched;
    const DsdFault fault = ParseDeliverySystem(descriptor, system);
    Demand(fault == DsdFault::None || system == untouched, "nothing is written when there is a fault");
    if (fault != DsdFault::None) return;
    Demand(descriptor.size() == 13 && system.tag == static_cast<std::uint8_t>(descriptor[0]),
           "a descriptor without a fault is of the kind that it says, and whole");
    Demand(system.frequency <= 0xffffffff && system.orbit <= 0xffffff, "its fields have their sizes");
    DeliverySystem longer;
    Demand(ParseDeliverySystem(descriptor + '\0', longer) == DsdFault::Malformed, "one with more bytes is malformed");
}

}  // namespace television::fuzz
