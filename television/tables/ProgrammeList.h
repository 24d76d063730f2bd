// The programmes of a service, as its events tell them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "television/Television.h"
#include "television/tables/Tables.h"

namespace television {

// The present and the following programme of a service.
std::vector<Programme> ListProgrammes(const Tables& tables, const Service& service);

// The rating that holds for a viewer in this country (three letters): the country's own, else the first one.
std::optional<std::uint8_t> RatingFor(const std::vector<ParentalRating>& ratings, const std::string& country);
// The same of the present event among these; nothing when there is none, or it has no rating.
std::optional<std::uint8_t> PresentRating(const std::vector<Event>& events, const std::string& country);

}  // namespace television
