// The service information of the demonstration multiplex, section by section.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "television/demonstration/Broadcast.h"
#include "television/demonstration/SectionWriter.h"

namespace television::demonstration {

// A table that is sent again and again.
struct RepeatedTable {
    std::uint16_t pid;
    std::int64_t interval;  // in 27 MHz
    // Its sections at a time, in seconds since 1970.
    std::function<std::vector<Section>(std::int64_t now)> make;
    // When it answers differently the table is sent at once; may be empty.
    std::function<std::int64_t()> version = {};
};

// A stream event to be done now; one version of an id's section is one event.
Section StreamEventSection(std::uint16_t id, unsigned version, std::string_view text);

// PAT, PMTs, NIT, SDT, EIT present/following, TDT and stream events of what is on the air; by default of the standing
// services.
std::vector<RepeatedTable> Tables(std::shared_ptr<const Broadcast> broadcast = nullptr);

}  // namespace television::demonstration
