// What the demonstration's broadcaster does: services come, go and change, programmes move on.
#pragma once

#include <optional>
#include <string>

namespace television {

class TelevisionSet;

std::optional<std::string> ServiceAppears(TelevisionSet& set, const std::string& number);
std::optional<std::string> ServiceDisappears(TelevisionSet& set, const std::string& number);
std::optional<std::string> ServiceRenamed(TelevisionSet& set, const std::string& numberAndName);
std::optional<std::string> ServiceRenumbered(TelevisionSet& set, const std::string& numbers);
std::optional<std::string> MoveProgramme(TelevisionSet& set, const std::string& where);

}  // namespace television
