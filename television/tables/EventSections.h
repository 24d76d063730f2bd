// The present and the following event of each service, from the sections of the EIT (ETSI EN 300 468, clause 5.2.4).
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "television/tables/SectionCollector.h"
#include "television/tables/Tables.h"

namespace television {

// What the body of one section says. A descriptor that is longer than the section ends the reading.
std::vector<Event> EventsOf(const Section& section);

class EventSections {
public:
    using Use = std::function<void(std::uint16_t sid, std::vector<Event> events)>;

    // Takes a packet of the EIT's PID. `use` gets the events of a service when all sections of a version are there:
    // the present one, unless there is none, and the following one.
    void Push(const std::uint8_t* packet, const Use& use);

private:
    struct Version {
        std::uint8_t number = 0, last = 0;
        std::map<std::uint8_t, std::vector<Event>> sections;
    };
    void Take(const Section& section, const Use& use);

    SectionCollector m_collector;
    std::map<std::uint16_t, Version> m_versions;  // by sid
};

}  // namespace television
