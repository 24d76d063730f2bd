// The service information of a transport stream (ISO/IEC 13818-1 and ETSI EN 300 468), as it was last received.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace television {

struct Descriptor {
    std::uint8_t tag = 0;
    std::vector<std::uint8_t> data;  // without tag and length
    bool operator==(const Descriptor&) const = default;
};
using Descriptors = std::vector<Descriptor>;

// The first descriptor with this tag, or null.
const Descriptor* Find(const Descriptors& descriptors, std::uint8_t tag);
// As it stands in the stream, tag and length included.
std::string Raw(const Descriptor& descriptor);

struct AssociationTable {  // PAT
    std::uint16_t tsid = 0;
    struct Entry {
        std::uint16_t sid, pid;  // pid of its PMT
        bool operator==(const Entry&) const = default;
    };
    std::vector<Entry> services;
    std::optional<std::uint16_t> networkPid;
    bool operator==(const AssociationTable&) const = default;
};

struct ElementaryStream {
    std::uint8_t type = 0;
    std::uint16_t pid = 0;
    Descriptors descriptors;
    bool operator==(const ElementaryStream&) const = default;
};

struct MapTable {  // PMT
    std::uint16_t clockPid = 0;
    Descriptors descriptors;
    std::vector<ElementaryStream> streams;
    bool operator==(const MapTable&) const = default;
};

struct DescriptionTable {  // SDT
    std::uint16_t onid = 0;
    struct Entry {
        std::uint16_t sid = 0;
        bool scrambled = false;  // free_CA_mode
        Descriptors descriptors;
        bool operator==(const Entry&) const = default;
    };
    std::vector<Entry> services;
    bool operator==(const DescriptionTable&) const = default;
};

struct NetworkTable {  // NIT
    std::uint16_t nid = 0;
    struct Entry {
        std::uint16_t tsid = 0, onid = 0;
        Descriptors descriptors;
        bool operator==(const Entry&) const = default;
    };
    std::vector<Entry> streams;
    bool operator==(const NetworkTable&) const = default;
};

struct Event {
    std::uint16_t id = 0;
    bool following = false;     // else present
    std::int64_t start = 0;     // seconds since 1970, UTC; 0 when the stream does not tell it
    std::int64_t duration = 0;  // seconds; 0 when the stream does not tell it
    Descriptors descriptors;
    bool operator==(const Event&) const = default;
};

struct Tables {
    std::optional<AssociationTable> association;
    std::map<std::uint16_t, MapTable> maps;  // by sid
    std::optional<DescriptionTable> description;
    std::optional<NetworkTable> network;
    std::map<std::uint16_t, std::vector<Event>> events;  // by sid: the present and the following one
};

}  // namespace television
