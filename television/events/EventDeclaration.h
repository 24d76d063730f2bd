// The XML document that names stream events (ETSI TS 102 809, clause 8.2; application/vnd.dvb.streamevent+xml).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace television {

struct DeclaredEvent {
    std::uint8_t componentTag = 0;  // of the stream that brings it
    std::uint16_t id = 0;
    std::string name;  // UTF-8
    bool operator==(const DeclaredEvent&) const = default;
};

// What became of an attempt to learn a target's events: them, or a clause that says why there are none.
struct EventDeclaration {
    std::vector<DeclaredEvent> events;
    std::string fault;
};

// The elements must be in the declaration's namespace, urn:dvb:mis:dsmcc:2009. An entry without a number or a name is
// left out, and so are elements and attributes of other namespaces.
EventDeclaration ReadEventDeclaration(std::string_view xml);

}  // namespace television
