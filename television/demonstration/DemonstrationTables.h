// The service information of the demonstration multiplex, section by section.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "television/demonstration/SectionWriter.h"

namespace television::demonstration {

// A table that is sent again and again.
struct RepeatedTable {
    std::uint16_t pid;
    std::int64_t interval;  // in 27 MHz
    // Its sections at a time, in seconds since 1970.
    std::function<std::vector<Section>(std::int64_t now)> make;
};

// PAT, PMTs, NIT, SDT, EIT present/following, TDT and stream events.
std::vector<RepeatedTable> Tables();

}  // namespace television::demonstration
