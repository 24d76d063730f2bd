// Services, looked up by id, by triplet and by their place in the list.
#include "television/ServiceDirectory.h"

#include <algorithm>
#include <tuple>

namespace television {
namespace {

bool SameService(const Service& a, const Service& b) {
    const auto key = [](const Service& s) {
        return std::tie(s.id, s.idType, s.onid, s.nid, s.tsid, s.sid, s.number, s.type, s.name, s.provider, s.dsd, s.hd,
                        s.scrambled, s.hidden, s.locked);
    };
    return key(a) == key(b);
}

bool SameStream(const Component& a, const Component& b) {
    return a.type == b.type && a.pid == b.pid && a.streamType == b.streamType && a.encoding == b.encoding;
}

bool IsZapped(const Service& service) { return !service.hidden && service.type != ServiceType::Other; }

}  // namespace

bool Route::SameStreams(const Route& other) const {
    return state == other.state && sid == other.sid && mapPid == other.mapPid && clockPid == other.clockPid &&
           std::equal(components.begin(), components.end(), other.components.begin(), other.components.end(),
                      SameStream);
}

bool ServiceDirectory::Update(const Tables& tables) {
    std::lock_guard lock(m_mutex);
    m_tables = std::make_shared<Tables>(tables);
    auto services = ListServices(tables, m_ids);
    const bool same = std::equal(services.begin(), services.end(), m_services.begin(), m_services.end(), SameService);
    m_services = std::move(services);
    return !same;
}

void ServiceDirectory::Clear() {
    std::lock_guard lock(m_mutex);
    m_tables = std::make_shared<Tables>();
    m_services.clear();
}

std::shared_ptr<const Tables> ServiceDirectory::CurrentTables() const {
    std::lock_guard lock(m_mutex);
    return m_tables;
}

std::vector<Service> ServiceDirectory::Services() const {
    std::lock_guard lock(m_mutex);
    return m_services;
}

std::optional<Service> ServiceDirectory::Find(unsigned int id) const {
    std::lock_guard lock(m_mutex);
    const auto found =
        std::find_if(m_services.begin(), m_services.end(), [id](const Service& service) { return service.id == id; });
    return found == m_services.end() ? std::nullopt : std::optional(*found);
}

std::optional<Service> ServiceDirectory::FindTriplet(int onid, int tsid, int sid) const {
    std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_services.begin(), m_services.end(), [=](const Service& service) {
        return service.onid == onid && service.tsid == tsid && service.sid == sid;
    });
    return found == m_services.end() ? std::nullopt : std::optional(*found);
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

Route ServiceDirectory::RouteTo(unsigned int id) const {
    Route route;
    const auto service = Find(id);
    const auto tables = CurrentTables();
    if (!service || !tables->association) return route;
    route.sid = service->sid;
    for (const auto& entry : tables->association->services)
        if (entry.sid == service->sid) {
            route.state = Route::State::MapMissing;
            route.mapPid = entry.pid;
        }
    const auto map = tables->maps.find(service->sid);
    if (route.state != Route::State::MapMissing || map == tables->maps.end()) return route;
    route.state = Route::State::Ready;
    route.clockPid = map->second.clockPid;
    route.components = ListComponents(map->second, service->hd);
    for (const ElementaryStream& stream : map->second.streams)
        if (const auto tag = ComponentTag(stream)) route.taggedPids.try_emplace(*tag, stream.pid);
    return route;
}

std::vector<Programme> ServiceDirectory::Programmes(unsigned int id) const {
    const auto service = Find(id);
    return service ? ListProgrammes(*CurrentTables(), *service) : std::vector<Programme>{};
}

std::vector<Event> ServiceDirectory::Events(unsigned int id) const {
    const auto service = Find(id);
    const auto tables = CurrentTables();
    const auto found = service ? tables->events.find(service->sid) : tables->events.end();
    return found == tables->events.end() ? std::vector<Event>{} : found->second;
}

std::optional<NetworkTable> ServiceDirectory::Network() const { return CurrentTables()->network; }

}  // namespace television
