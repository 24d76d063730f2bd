// The XML declaration of stream events.
#include "television/events/EventDeclaration.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        // Characters that an attribute's value would lose.
        const bool special = c == '<' || c == '&' || c == '"' || c == '\t' || c == '\n' || c == '\r';
        escaped += special ? "&#" + std::to_string(static_cast<int>(c)) + ";" : std::string(1, c);
    }
    return escaped;
}

std::string Written(const std::vector<DeclaredEvent>& events) {
    std::string xml = "<dsmcc xmlns=\"urn:dvb:mis:dsmcc:2009\">";
    for (const DeclaredEvent& event : events)
        xml += "<dsmcc_object component_tag=\"" + std::to_string(event.componentTag) + "\"><stream_event " +
               "stream_event_id=\"" + std::to_string(event.id) + "\" stream_event_name=\"" + Escaped(event.name) +
               "\"/></dsmcc_object>";
    return xml + "</dsmcc>";
}

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    const EventDeclaration declaration =
        ReadEventDeclaration({reinterpret_cast<const char*>(input.data()), input.size()});
    Demand(declaration.fault.empty() || declaration.events.empty(), "there are events or a fault");
    Demand(IsUtf8(declaration.fault), "a fault is told in UTF-8");
    for (const DeclaredEvent& event : declaration.events) Demand(IsUtf8(event.name), "an event's name is UTF-8");
    const EventDeclaration again = ReadEventDeclaration(Written(declaration.events));
    Demand(again.events == declaration.events, "events are the same when they are written and read again");
}

}  // namespace television::fuzz
