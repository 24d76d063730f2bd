// Tables as sections, to be read again.
#pragma once

#include <cstdint>
#include <vector>

#include "television/demonstration/SectionWriter.h"
#include "television/tables/Tables.h"

namespace television::fuzz {

struct WrittenSection {
    std::uint16_t pid;
    demonstration::Section bytes;
};

// The sections that say the same as `tables`. What no section can say is left out: of PMTs those that do not fit into
// one, of events those at times that have no date.
std::vector<WrittenSection> Write(Tables& tables);

}  // namespace television::fuzz
