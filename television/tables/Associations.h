// The streams of a service as its carousels name them: by association tags (ISO/IEC 13818-6, clause 11.4).
#pragma once

#include <cstdint>
#include <map>

#include "television/tables/Tables.h"

namespace television {

// PIDs by the association tags that the service's PMT gives to its streams, and those that it defers to the PMT of
// another service in this multiplex.
std::map<std::uint16_t, std::uint16_t> ListAssociations(const Tables& tables, std::uint16_t sid);

}  // namespace television
