// Finds a stream event object in an object carousel, from the carousel's sections, which may come in several streams.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "television/events/CarouselMessages.h"

namespace television {

// "dvb://onid.tsid.sid.tag/folder/object", the numbers hexadecimal: an object in the carousel that the service's stream
// with this component tag brings.
struct CarouselTarget {
    std::uint16_t sid = 0;
    std::uint8_t componentTag = 0;
    std::vector<std::string> path;
};
std::optional<CarouselTarget> ReadCarouselTarget(const std::string& url);

class ObjectCarousel {
public:
    explicit ObjectCarousel(std::vector<std::string> path) : m_path(std::move(path)) {}

    // Takes a section of one of the carousel's PIDs. The outcome, once there is one.
    std::optional<EventDeclaration> Take(const Section& section);
    // The association tags of the streams that bring what is to be read next, as far as they are known.
    std::vector<std::uint16_t> Associations() const;

private:
    using ModuleId = std::pair<std::uint32_t, std::uint16_t>;  // carousel and module

    void Want(const ObjectPlace& place);
    void TakeModules(const ModuleList& list);
    bool TakeBlock(const ModuleBlock& block);
    std::optional<EventDeclaration> Walk();

    std::vector<std::string> m_path;
    std::size_t m_depth = 0;             // how many names of the path lead to m_place
    std::optional<ObjectPlace> m_place;  // of the object that is to be read next
    std::map<ModuleId, ModuleInfo> m_modules;
    std::map<std::uint16_t, std::vector<std::uint8_t>> m_blocks;  // of the module with that object
};

}  // namespace television
