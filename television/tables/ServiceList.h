// The list of services, as the tables tell them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "television/Television.h"
#include "television/tables/Tables.h"

namespace television {

// A service where it is received: the multiplex by its place in the configuration.
struct ServicePlace {
    std::size_t multiplex = 0;
    std::uint16_t sid = 0;
    auto operator<=>(const ServicePlace&) const = default;
};

// Gives each service a channel id that it keeps, whatever the tables say later.
class ServiceIds {
public:
    unsigned int Of(const ServicePlace& place);
    // Nothing for an id that was never given.
    std::optional<ServicePlace> PlaceOf(unsigned int id) const;

private:
    std::vector<ServicePlace> m_places;  // id 1 stands first
};

// The tables of all multiplexes of a network.
using MultiplexTables = std::vector<std::shared_ptr<const Tables>>;

struct ServiceListing {
    // By logical channel number; those without one follow in the tables' order.
    std::vector<Service> services;
    // Those whose triplet another multiplex before has, too: only one of them can be meant by it.
    std::vector<Service> leftOut;
};

// Services of the PATs and the SDTs.
ServiceListing ListServices(const MultiplexTables& multiplexes, ServiceIds& ids);
std::vector<Service> ListServices(const Tables& tables, ServiceIds& ids);

// What the network tables say of this transport stream: its own one, else another's. Null when they say nothing.
const NetworkTable::Entry* FindRunningStream(const Tables& tables, const MultiplexTables& others = {});

}  // namespace television
