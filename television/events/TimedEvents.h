// Stream events that wait for their time.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "television/events/NptReference.h"
#include "television/events/StreamEventSection.h"

namespace television {

class TimedEvents {
public:
    void SetReference(const NptReference& reference) { m_reference = reference; }
    bool HasReference() const { return m_reference.has_value(); }
    // Takes the place of what the section announced before.
    void Plan(const Section& section, std::vector<TimedEvent> events);
    // The stream's clock in 90 kHz, as it comes. Those whose time has come by it; one that is announced after its time
    // has had it.
    std::vector<StreamEvent> DueBy(std::int64_t clock);

private:
    std::map<std::uint16_t, std::vector<TimedEvent>> m_planned;  // by table_id_extension
    std::optional<NptReference> m_reference;
    std::optional<std::int64_t> m_lastClock;
};

}  // namespace television
