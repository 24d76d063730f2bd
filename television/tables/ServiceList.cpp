// Services from PAT, SDT and NIT.
#include "television/tables/ServiceList.h"

#include <algorithm>
#include <map>

#include "television/tables/Components.h"
#include "television/tables/DeliverySystem.h"
#include "television/tables/DescriptorTags.h"
#include "television/tables/DvbText.h"

namespace television {
namespace {

struct ChannelNumber {
    int number = 0;
    bool visible = true;
};

std::uint16_t Read16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] << 8 | p[1]); }

// The logical_channel_descriptor is a private one; countries agree on its first six bits differently.
void AddNumbers(const Descriptor& descriptor, std::uint32_t specifier,
                std::map<std::uint16_t, ChannelNumber>& numbers) {
    const int mask = specifier == kSpecifierNordig ? 0x3fff : 0x03ff;
    for (std::size_t at = 0; at + 4 <= descriptor.data.size(); at += 4) {
        const std::uint8_t* entry = descriptor.data.data() + at;
        numbers[Read16(entry)] = {Read16(entry + 2) & mask, (entry[2] & 0x80) != 0};
    }
}

std::map<std::uint16_t, ChannelNumber> ReadNumbers(const NetworkTable::Entry& stream) {
    std::map<std::uint16_t, ChannelNumber> numbers;
    std::uint32_t specifier = kSpecifierEacem;
    for (const Descriptor& descriptor : stream.descriptors) {
        if (descriptor.tag == kPrivateDataSpecifierTag && descriptor.data.size() == 4)
            specifier =
                static_cast<std::uint32_t>(Read16(descriptor.data.data())) << 16 | Read16(descriptor.data.data() + 2);
        else if (descriptor.tag == kLogicalChannelTag)
            AddNumbers(descriptor, specifier, numbers);
    }
    return numbers;
}

// ETSI EN 300 468, table 87: service types.
ServiceType TypeOf(std::uint8_t serviceType) {
    constexpr std::uint8_t radio[] = {0x02, 0x0a};
    constexpr std::uint8_t television[] = {0x01, 0x04, 0x05, 0x11, 0x16, 0x17, 0x18, 0x19,
                                           0x1a, 0x1b, 0x1c, 0x1d, 0x1e, 0x1f, 0x20};
    if (std::count(std::begin(radio), std::end(radio), serviceType)) return ServiceType::Radio;
    return std::count(std::begin(television), std::end(television), serviceType) ? ServiceType::Television
                                                                                 : ServiceType::Other;
}

bool IsHd(std::uint8_t serviceType) { return serviceType == 0x11 || (serviceType >= 0x19 && serviceType <= 0x20); }

void ReadServiceDescriptor(const Descriptor& descriptor, Service& service) {
    if (descriptor.data.empty()) return;
    service.described = true;
    service.type = TypeOf(descriptor.data[0]);
    service.hd = IsHd(descriptor.data[0]);
    std::size_t at = 1;
    service.provider = ReadCountedText(descriptor.data, at);
    service.name = ReadCountedText(descriptor.data, at);
}

// Without a description the components tell what kind of service it is.
ServiceType TypeOf(const MapTable& map) {
    const auto components = ListComponents(map);
    const auto has = [&](ComponentType type) {
        return std::any_of(components.begin(), components.end(), [type](const auto& c) { return c.type == type; });
    };
    if (has(ComponentType::Video)) return ServiceType::Television;
    return has(ComponentType::Audio) ? ServiceType::Radio : ServiceType::Other;
}

bool IsScrambledByMap(const MapTable& map) {
    return Find(map.descriptors, kCaTag) ||
           std::any_of(map.streams.begin(), map.streams.end(),
                       [](const ElementaryStream& stream) { return Find(stream.descriptors, kCaTag); });
}

void Describe(const Tables& tables, Service& service) {
    const auto map = tables.maps.find(service.sid);
    if (map != tables.maps.end()) {
        service.type = TypeOf(map->second);
        service.scrambled = IsScrambledByMap(map->second);
    }
    if (!tables.description) return;
    for (const auto& entry : tables.description->services) {
        if (entry.sid != service.sid) continue;
        service.scrambled = service.scrambled || entry.scrambled;
        if (const Descriptor* descriptor = Find(entry.descriptors, kServiceTag))
            ReadServiceDescriptor(*descriptor, service);
    }
}

std::vector<std::uint16_t> ListSids(const Tables& tables) {
    std::vector<std::uint16_t> sids;
    if (tables.description)
        for (const auto& entry : tables.description->services) sids.push_back(entry.sid);
    if (tables.association)
        for (const auto& entry : tables.association->services)
            if (std::find(sids.begin(), sids.end(), entry.sid) == sids.end()) sids.push_back(entry.sid);
    return sids;
}

// The entry of the transport stream of `tables` in the network table of `source`.
const NetworkTable::Entry* FindStream(const Tables& tables, const Tables& source) {
    if (!source.network || !tables.association) return nullptr;
    for (const auto& stream : source.network->streams)
        if (stream.tsid == tables.association->tsid && (!tables.description || tables.description->onid == stream.onid))
            return &stream;
    return nullptr;
}

// What all services of the stream have in common.
Service DescribeStream(const Tables& tables, const NetworkTable::Entry* stream) {
    Service service;
    service.tsid = tables.association ? tables.association->tsid : 0;
    service.onid = tables.description ? tables.description->onid : 0;
    service.nid = tables.network ? tables.network->nid : 0;
    service.idType = IdTypeOf({});
    if (stream) {
        service.onid = stream->onid;
        service.idType = IdTypeOf(stream->descriptors);
        if (const Descriptor* dsd = FindDeliverySystem(stream->descriptors)) service.dsd = Raw(*dsd);
    }
    return service;
}

bool HasTriplet(const std::vector<Service>& services, const Service& wanted) {
    return std::any_of(services.begin(), services.end(), [&](const Service& service) {
        return service.onid == wanted.onid && service.tsid == wanted.tsid && service.sid == wanted.sid;
    });
}

std::vector<Service> ListMultiplex(const MultiplexTables& multiplexes, std::size_t index, ServiceIds& ids) {
    const Tables& tables = *multiplexes[index];
    const auto* stream = FindRunningStream(tables, multiplexes);
    const auto numbers = stream ? ReadNumbers(*stream) : std::map<std::uint16_t, ChannelNumber>{};
    std::vector<Service> services;
    for (const std::uint16_t sid : ListSids(tables)) {
        Service service = DescribeStream(tables, stream);
        service.id = ids.Of({index, sid});
        service.sid = sid;
        Describe(tables, service);
        if (service.name.empty()) service.name = "Service " + std::to_string(sid);
        if (const auto number = numbers.find(sid); number != numbers.end()) {
            service.number = number->second.number;
            service.hidden = !number->second.visible;
        }
        services.push_back(std::move(service));
    }
    return services;
}

// Without a number last, else by number.
bool ComesBefore(const Service& a, const Service& b) {
    if ((a.number == 0) != (b.number == 0)) return b.number == 0;
    return a.number < b.number;
}

}  // namespace

unsigned int ServiceIds::Of(const ServicePlace& place) {
    const auto found = std::find(m_places.begin(), m_places.end(), place);
    const auto index = found - m_places.begin();
    if (found == m_places.end()) m_places.push_back(place);
    return static_cast<unsigned int>(index + 1);
}

std::optional<ServicePlace> ServiceIds::PlaceOf(unsigned int id) const {
    return id >= 1 && id <= m_places.size() ? std::optional(m_places[id - 1]) : std::nullopt;
}

const NetworkTable::Entry* FindRunningStream(const Tables& tables, const MultiplexTables& others) {
    if (const auto* own = FindStream(tables, tables)) return own;
    for (const auto& other : others)
        if (const auto* entry = FindStream(tables, *other)) return entry;
    return nullptr;
}

ServiceListing ListServices(const MultiplexTables& multiplexes, ServiceIds& ids) {
    ServiceListing listing;
    for (std::size_t i = 0; i < multiplexes.size(); ++i)
        for (Service& service : ListMultiplex(multiplexes, i, ids))
            (HasTriplet(listing.services, service) ? listing.leftOut : listing.services).push_back(std::move(service));
    std::stable_sort(listing.services.begin(), listing.services.end(), ComesBefore);
    return listing;
}

std::vector<Service> ListServices(const Tables& tables, ServiceIds& ids) {
    return ListServices({std::make_shared<Tables>(tables)}, ids).services;
}

}  // namespace television
