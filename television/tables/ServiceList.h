// The list of services and their programmes, as the tables tell them.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "television/Television.h"
#include "television/tables/Tables.h"

namespace television {

// Gives each service a channel id that it keeps, whatever the tables say later.
class ServiceIds {
public:
    unsigned int Of(std::uint16_t sid);

private:
    std::map<std::uint16_t, unsigned int> m_ids;
};

// Services of the PAT and the SDT, by logical channel number; those without one follow in the tables' order.
std::vector<Service> ListServices(const Tables& tables, ServiceIds& ids);

// The present and the following programme of a service.
std::vector<Programme> ListProgrammes(const Tables& tables, const Service& service);

// The description of the transport stream itself in the NIT, or null.
const NetworkTable::Entry* FindRunningStream(const Tables& tables);

}  // namespace television
