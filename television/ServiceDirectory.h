// The services that are known now, for all threads.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "television/Television.h"
#include "television/tables/Components.h"
#include "television/tables/DeliverySystem.h"
#include "television/tables/ServiceList.h"
#include "television/tables/Tables.h"

namespace television {

// What the presentation of a service needs of the multiplex.
struct Route {
    enum class State { Ready, MapMissing, NotInStream };
    State state = State::NotInStream;
    std::size_t multiplex = 0;
    unsigned int id = 0;
    std::uint16_t sid = 0, mapPid = 0, clockPid = 0;
    std::vector<Component> components;
    std::map<int, std::uint16_t> taggedPids;                // of all streams that have a component tag, by it
    std::map<std::uint16_t, std::uint16_t> associatedPids;  // of streams that have an association tag, by it
    // Of the stream that a carousel calls so. An association tag that no descriptor gives is a component tag with
    // anything in the upper byte.
    std::optional<std::uint16_t> AssociatedPid(std::uint16_t association) const;
    // What decides how it is decoded: a new route that is like the old one need not interrupt the presentation.
    bool SameStreams(const Route& other) const;
};

// How far a delivery system descriptor and a service id lead.
enum class Delivery { OtherKind, OtherStream, OtherService, Found };

class ServiceDirectory {
public:
    // The tables of one of the multiplexes. True when the list of services differs from the one before.
    bool Update(const Tables& tables, std::size_t multiplex = 0);
    void Clear();
    // The viewer's, three letters.
    void SetCountry(const std::string& country);
    std::string Country() const;

    std::vector<Service> Services() const;
    // Services that are received but not listed: one of another multiplex has the same triplet.
    std::vector<Service> LeftOut() const;
    std::optional<Service> Find(unsigned int id) const;
    // As it was last known, also when it is not broadcast any more.
    std::optional<Service> Describe(unsigned int id) const;
    std::optional<Service> FindTriplet(int onid, int tsid, int sid) const;
    // Among the transport streams of the networks. `service` is written when one is found.
    Delivery FindDelivered(const DeliverySystem& wanted, int sid, std::optional<Service>& service) const;
    // The service `steps` places after the one with this id among those that a viewer zaps through.
    std::optional<Service> Neighbour(unsigned int id, int steps) const;
    // What a television shows first.
    std::optional<Service> First() const;

    // The place of the multiplex that a service is on; nothing for an id that was never given.
    std::optional<std::size_t> MultiplexOf(unsigned int id) const;
    Route RouteTo(unsigned int id) const;
    std::vector<Programme> Programmes(unsigned int id) const;
    // The events behind Programmes, to see whether they changed.
    std::vector<Event> Events(unsigned int id) const;

private:
    // Where a service comes from, and what the tables there say.
    struct Source {
        ServicePlace place;
        std::shared_ptr<const Tables> tables;
    };
    std::optional<Source> SourceOf(unsigned int id) const;
    MultiplexTables CurrentTables() const;

    mutable std::mutex m_mutex;
    MultiplexTables m_tables;
    ServiceListing m_listing;
    std::map<unsigned int, Service> m_known;  // by id
    ServiceIds m_ids;
    std::string m_country;
};

}  // namespace television
