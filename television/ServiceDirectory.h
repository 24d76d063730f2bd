// The services that are known now, for all threads.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "television/Television.h"
#include "television/tables/Components.h"
#include "television/tables/ServiceList.h"
#include "television/tables/Tables.h"

namespace television {

// What the presentation of a service needs of the multiplex.
struct Route {
    enum class State { Ready, MapMissing, NotInStream };
    State state = State::NotInStream;
    std::uint16_t sid = 0, mapPid = 0, clockPid = 0;
    std::vector<Component> components;
    std::map<int, std::uint16_t> taggedPids;  // of all streams that have a component tag, by it
    // What decides how it is decoded: a new route that is like the old one need not interrupt the presentation.
    bool SameStreams(const Route& other) const;
};

class ServiceDirectory {
public:
    // True when the list of services differs from the one before.
    bool Update(const Tables& tables);
    void Clear();

    std::vector<Service> Services() const;
    std::optional<Service> Find(unsigned int id) const;
    std::optional<Service> FindTriplet(int onid, int tsid, int sid) const;
    // The service `steps` places after the one with this id among those that a viewer zaps through.
    std::optional<Service> Neighbour(unsigned int id, int steps) const;
    // What a television shows first.
    std::optional<Service> First() const;

    Route RouteTo(unsigned int id) const;
    std::vector<Programme> Programmes(unsigned int id) const;
    // The events behind Programmes, to see whether they changed.
    std::vector<Event> Events(unsigned int id) const;
    // The descriptors of all transport streams of the network.
    std::optional<NetworkTable> Network() const;

private:
    std::shared_ptr<const Tables> CurrentTables() const;

    mutable std::mutex m_mutex;
    std::shared_ptr<const Tables> m_tables = std::make_shared<Tables>();
    std::vector<Service> m_services;
    ServiceIds m_ids;
};

}  // namespace television
