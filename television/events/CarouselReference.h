// A reference to an object of a carousel, as messages carry it (an IOR with a BIOP profile), and its taps.
#pragma once

#include <initializer_list>
#include <optional>

#include "television/events/CarouselMessages.h"
#include "television/events/FieldReader.h"

namespace television {

// Takes one reference. Nothing when it has no place in a carousel of this stream, or is cut.
std::optional<ObjectPlace> ReadReference(FieldReader& fields);

// Takes taps with their count in front. The association tag of the last one with such a use.
std::optional<std::uint16_t> ReadTaps(FieldReader& fields, std::initializer_list<TapUse> uses);

}  // namespace television
