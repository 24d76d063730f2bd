// The messages of an object carousel (ISO/IEC 13818-6; ETSI TS 102 809, annex B): the download's frame, and the objects
// in its modules.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "television/events/EventDeclaration.h"
#include "television/tables/SectionCollector.h"

namespace television {

// What a tap leads to (ISO/IEC 13818-6, table 4-12): the list of an object's module, its blocks, or stream events.
enum TapUse : std::uint16_t {
    kStatusAndEventUse = 0x000c,
    kEventUse = 0x000d,
    kDeliveryUse = 0x0016,
    kObjectUse = 0x0017,
};

// Where an object is.
struct ObjectPlace {
    std::uint32_t carousel = 0;
    std::uint16_t module = 0;
    std::vector<std::uint8_t> key;
    std::optional<std::uint16_t> association;  // of the stream with its module's list
    bool operator==(const ObjectPlace&) const = default;
};

// The root directory's place, from a DownloadServerInitiate message.
std::optional<ObjectPlace> ReadGateway(const Section& section);

struct ModuleInfo {
    std::uint32_t size = 0;
    std::uint16_t blockSize = 0;
    std::uint8_t version = 0;
    std::uint32_t originalSize = 0;            // of a compressed module; else 0
    std::optional<std::uint16_t> association;  // of the stream with its blocks
    bool operator==(const ModuleInfo&) const = default;
};

// A carousel's modules, from a DownloadInfoIndication message.
struct ModuleList {
    std::uint32_t carousel = 0;
    std::map<std::uint16_t, ModuleInfo> modules;
};
std::optional<ModuleList> ReadModuleList(const Section& section);

// A part of a module, from a DownloadDataBlock message.
struct ModuleBlock {
    std::uint32_t carousel = 0;
    std::uint16_t module = 0, number = 0;
    std::uint8_t version = 0;
    std::span<const std::uint8_t> data;
};
std::optional<ModuleBlock> ReadBlock(const Section& section);

// A directory or a stream event object.
struct CarouselObject {
    std::string kind;                            // "srg", "dir", "ste" and others
    std::map<std::string, ObjectPlace> entries;  // of a directory
    std::vector<DeclaredEvent> events;           // of a stream event object
};

// The object with this key in a module's content.
std::optional<CarouselObject> FindObject(std::span<const std::uint8_t> module, std::span<const std::uint8_t> key);

}  // namespace television
