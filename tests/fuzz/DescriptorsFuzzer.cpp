// Descriptors of each table, past the sections that bring them: components, services, channel numbers, programmes,
// associations of a carousel's streams.
#include <algorithm>

#include "television/tables/Associations.h"
#include "television/tables/Components.h"
#include "television/tables/DeliverySystem.h"
#include "television/tables/ProgrammeList.h"
#include "television/tables/ServiceList.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

constexpr std::uint16_t kSid = 5, kTsid = 1, kOnid = 2, kPid = 0x100;
// Of a service that only its PMT tells of.
constexpr std::uint16_t kOtherSid = 6, kOtherPid = 0x200;

Descriptors Read(const Bytes& loop) {
    Descriptors descriptors;
    for (std::size_t at = 0; at + 2 <= loop.size();) {
        const std::size_t begin = at + 2, end = std::min(begin + loop[at + 1], loop.size());
        descriptors.push_back({loop[at], Bytes(loop.begin() + static_cast<std::ptrdiff_t>(begin),
                                               loop.begin() + static_cast<std::ptrdiff_t>(end))});
        at = end;
    }
    return descriptors;
}

// Where the descriptors of a chunk stand: its number's low bits; of a stream, of the service or of the other one, the rest
// is its type.
Tables Build(const std::vector<Chunk>& chunks) {
    Tables tables;
    tables.association = AssociationTable{kTsid, {{kSid, kPid}}, {}};
    MapTable& map = tables.maps[kSid];
    for (const auto& [number, bytes] : chunks) {
        const Descriptors descriptors = Read(bytes);
        switch (number & 7) {
            case 0:
                map.descriptors = descriptors;
                break;
            case 1:
                tables.description = DescriptionTable{kOnid, {{kSid, false, descriptors}}};
                break;
            case 2:
                tables.network = NetworkTable{kOnid, {{kTsid, kOnid, descriptors}}};
                break;
            case 3:
                tables.events[kSid].push_back({number, (number & 8) != 0, 0, 0, descriptors});
                break;
            case 5:
                tables.maps[kOtherSid].streams.push_back({static_cast<std::uint8_t>(number >> 3), kOtherPid, descriptors});
                break;
            default:
                map.streams.push_back({static_cast<std::uint8_t>(number >> 3), kPid, descriptors});
        }
    }
    return tables;
}

void DemandNothingEndsAString(const std::string& text) {
    Demand(std::none_of(text.begin(), text.end(), [](char c) { return c == '\\' || c == '\n' || c < ' '; }),
           "the text for the page has only letters, digits and marks");
    Demand(std::count(text.begin(), text.end(), '\'') == 4, "the text for the page has its own quotes only");
}

void ReadComponents(const MapTable& map) {
    for (const Component& component : ListComponents(map, true)) {
        Demand(component.language.empty() || component.language.size() == 3, "a language has three letters or none");
        Demand(component.audioChannels >= 0 && component.audioChannels <= 8, "sound has up to eight channels");
        DemandNothingEndsAString(ArgumentText(component, 1.5, true));
    }
}

void ReadProgrammes(const Tables& tables, const Service& service) {
    for (const Programme& programme : ListProgrammes(tables, service)) {
        for (const std::string* text : {&programme.name, &programme.description, &programme.longDescription})
            Demand(IsUtf8(*text), "a programme's texts are UTF-8");
        for (const auto& rating : programme.ratings) Demand(IsUtf8(rating.country), "a rating's country is UTF-8");
        for (const std::string& raw : programme.descriptors)
            Demand(raw.size() >= 2 && raw.size() - 2 == static_cast<std::uint8_t>(raw[1]),
                   "a descriptor is as long as it says");
    }
}

void ReadAssociations(const Tables& tables) {
    for (const auto& [tag, pid] : ListAssociations(tables, kSid))
        Demand(pid == kPid || pid == kOtherPid, "an association leads to a stream of a service");
}

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    const Tables tables = Build(Split(input));
    ReadComponents(tables.maps.at(kSid));
    ReadAssociations(tables);
    ServiceIds ids;
    const auto services = ListServices(tables, ids);
    Demand(services.size() == 1, "the one service is listed");
    const Service& service = services.front();
    Demand(IsUtf8(service.name) && IsUtf8(service.provider), "a service's texts are UTF-8");
    Demand(service.idType >= kFirstDvbIdType && service.idType <= kLastDvbIdType, "a kind of channel is of DVB");
    Demand(service.number >= 0 && service.number <= 0x3fff, "a channel number has 14 bits");
    ReadProgrammes(tables, service);
    PresentRating(tables.events.contains(kSid) ? tables.events.at(kSid) : std::vector<Event>{}, "DEU");
}

}  // namespace television::fuzz
