// A reference to an object of a carousel, as messages carry it (an IOR with a BIOP profile).
#pragma once

#include <optional>

#include "television/events/CarouselMessages.h"
#include "television/events/FieldReader.h"

namespace television {

// Takes one reference. Nothing when it has no place in a carousel of this stream, or is cut.
std::optional<ObjectPlace> ReadReference(FieldReader& fields);

}  // namespace television
