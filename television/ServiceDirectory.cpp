// Services, looked up by id, by triplet and by their place in the list.
#include "television/ServiceDirectory.h"

#include <algorithm>
#include <tuple>

#include "television/tables/Associations.h"
#include "television/tables/ProgrammeList.h"

namespace television {
namespace {

bool SameService(const Service& a, const Service& b) {
    const auto key = [](const Service& s) {
        return std::tie(s.id, s.idType, s.onid, s.nid, s.tsid, s.sid, s.number, s.type, s.name, s.provider, s.dsd, s.hd,
                        s.scrambled, s.hidden, s.locked);
    };
    return key(a) == key(b);
}

bool SameElementaryStream(const Component& a, const Component& b) {
    return a.type == b.type && a.pid == b.pid && a.streamType == b.streamType && a.encoding == b.encoding;
}

// One table loses a service before another does, and meanwhile it is what it was.
void KeepDescription(const Service& before, Service& service) {
    if (service.described || !before.described) return;
    std::tie(service.type, service.hd, service.name, service.provider) =
        std::tie(before.type, before.hd, before.name, before.provider);
    service.described = true;
}

bool IsZapped(const Service& service) { return !service.hidden && service.type != ServiceType::Other; }

}  // namespace

bool Route::SameStreams(const Route& other) const {
    return state == other.state && id == other.id && sid == other.sid && mapPid == other.mapPid &&
           clockPid == other.clockPid &&
           std::equal(components.begin(), components.end(), other.components.begin(), other.components.end(),
                      SameElementaryStream);
}

std::optional<std::uint16_t> Route::AssociatedPid(std::uint16_t association) const {
    if (const auto found = associatedPids.find(association); found != associatedPids.end()) return found->second;
    const auto tagged = taggedPids.find(association & 0xff);
    return tagged == taggedPids.end() ? std::nullopt : std::optional(tagged->second);
}

bool ServiceDirectory::Update(const Tables& tables, std::size_t multiplex) {
    std::lock_guard lock(m_mutex);
    while (m_tables.size() <= multiplex) m_tables.push_back(std::make_shared<Tables>());
    m_tables[multiplex] = std::make_shared<Tables>(tables);
    const auto before = std::move(m_listing.services);
    m_listing = ListServices(m_tables, m_ids);
    for (Service& service : m_listing.services) {
        KeepDescription(m_known[service.id], service);
        m_known[service.id] = service;
    }
    return !std::equal(before.begin(), before.end(), m_listing.services.begin(), m_listing.services.end(), SameService);
}

void ServiceDirectory::Clear() {
    std::lock_guard lock(m_mutex);
    m_tables.clear();
    m_listing = {};
    m_known.clear();
}

void ServiceDirectory::SetCountry(const std::string& country) {
    std::lock_guard lock(m_mutex);
    m_country = country;
}

std::string ServiceDirectory::Country() const {
    std::lock_guard lock(m_mutex);
    return m_country;
}

MultiplexTables ServiceDirectory::CurrentTables() const {
    std::lock_guard lock(m_mutex);
    return m_tables;
}

std::vector<Service> ServiceDirectory::Services() const {
    std::lock_guard lock(m_mutex);
    return m_listing.services;
}

std::vector<Service> ServiceDirectory::LeftOut() const {
    std::lock_guard lock(m_mutex);
    return m_listing.leftOut;
}

std::optional<Service> ServiceDirectory::Describe(unsigned int id) const {
    std::lock_guard lock(m_mutex);
    const auto known = m_known.find(id);
    return known == m_known.end() ? std::nullopt : std::optional(known->second);
}

std::optional<Service> ServiceDirectory::Find(unsigned int id) const {
    std::lock_guard lock(m_mutex);
    const auto& services = m_listing.services;
    const auto found =
        std::find_if(services.begin(), services.end(), [id](const Service& service) { return service.id == id; });
    return found == services.end() ? std::nullopt : std::optional(*found);
}

std::optional<Service> ServiceDirectory::FindTriplet(int onid, int tsid, int sid) const {
    std::lock_guard lock(m_mutex);
    const auto& services = m_listing.services;
    const auto found = std::find_if(services.begin(), services.end(), [=](const Service& service) {
        return service.onid == onid && service.tsid == tsid && service.sid == sid;
    });
    return found == services.end() ? std::nullopt : std::optional(*found);
}

Delivery ServiceDirectory::FindDelivered(const DeliverySystem& wanted, int sid, std::optional<Service>& service) const {
    Delivery result = Delivery::OtherKind;
    for (const auto& tables : CurrentTables()) {
        if (!tables->network) continue;
        for (const auto& stream : tables->network->streams)
            for (const DeliverySystem& system : ListDeliverySystems(stream.descriptors)) {
                if (SameKind(system, wanted)) result = std::max(result, Delivery::OtherStream);
                if (!SameStream(system, wanted)) continue;
                service = FindTriplet(stream.onid, stream.tsid, sid);
                if (service) return Delivery::Found;
                result = Delivery::OtherService;
            }
    }
    return result;
}

std::optional<Service> ServiceDirectory::Neighbour(unsigned int id, int steps) const {
    std::vector<Service> zapped = Services();
    std::erase_if(zapped, [id](const Service& service) { return !IsZapped(service) && service.id != id; });
    const auto count = static_cast<int>(zapped.size());
    const auto current = std::find_if(zapped.begin(), zapped.end(), [id](const Service& s) { return s.id == id; });
    if (current == zapped.end()) return First();
    const int index = (static_cast<int>(current - zapped.begin()) + steps % count + count) % count;
    return zapped[static_cast<std::size_t>(index)];
}

std::optional<Service> ServiceDirectory::First() const {
    const auto services = Services();
    const auto found = std::find_if(services.begin(), services.end(), IsZapped);
    if (found != services.end()) return *found;
    return services.empty() ? std::nullopt : std::optional(services.front());
}

std::optional<ServiceDirectory::Source> ServiceDirectory::SourceOf(unsigned int id) const {
    std::lock_guard lock(m_mutex);
    const auto place = m_ids.PlaceOf(id);
    if (!place || place->multiplex >= m_tables.size()) return std::nullopt;
    return Source{*place, m_tables[place->multiplex]};
}

std::optional<std::size_t> ServiceDirectory::MultiplexOf(unsigned int id) const {
    std::lock_guard lock(m_mutex);
    const auto place = m_ids.PlaceOf(id);
    return place ? std::optional(place->multiplex) : std::nullopt;
}

Route ServiceDirectory::RouteTo(unsigned int id) const {
    Route route;
    const auto source = SourceOf(id);
    if (!source) return route;
    const auto& [place, tables] = *source;
    route.multiplex = place.multiplex;
    route.id = id;
    route.sid = place.sid;
    if (!tables->association) return route;
    for (const auto& entry : tables->association->services)
        if (entry.sid == place.sid) {
            route.state = Route::State::MapMissing;
            route.mapPid = entry.pid;
        }
    const auto map = tables->maps.find(place.sid);
    if (route.state != Route::State::MapMissing || map == tables->maps.end()) return route;
    const auto service = Find(id);
    route.state = Route::State::Ready;
    route.clockPid = map->second.clockPid;
    route.components = ListComponents(map->second, service && service->hd);
    for (const ElementaryStream& stream : map->second.streams)
        if (const auto tag = ComponentTag(stream)) route.taggedPids.try_emplace(*tag, stream.pid);
    route.associatedPids = ListAssociations(*tables, place.sid);
    return route;
}

std::vector<Programme> ServiceDirectory::Programmes(unsigned int id) const {
    const auto service = Find(id);
    const auto source = SourceOf(id);
    return service && source ? ListProgrammes(*source->tables, *service) : std::vector<Programme>{};
}

std::vector<Event> ServiceDirectory::Events(unsigned int id) const {
    const auto source = SourceOf(id);
    if (!source) return {};
    const auto found = source->tables->events.find(source->place.sid);
    return found == source->tables->events.end() ? std::vector<Event>{} : found->second;
}

}  // namespace television
