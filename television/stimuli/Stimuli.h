// What happens to a television on a sofa and cannot be read in a stream, each by a name: the rows behind
// Television::Stimulate. A new stimulus is a new row here, and an operation of the class that it concerns.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace television {

class TelevisionSet;

struct Stimulus {
    const char* name;      // a word
    const char* argument;  // what is to follow it, as a user reads it; null: nothing
    const char* meaning;   // a phrase that tells what happens
    // `argument` has no blanks around it, and is empty only for a stimulus that takes none. A sentence on failure.
    std::optional<std::string> (*run)(TelevisionSet& set, const std::string& argument);
};

std::span<const Stimulus> AllStimuli();

// Finds the row for "NAME ARGUMENT" and runs it. A sentence when there is no such row, or when it failed.
std::optional<std::string> RunStimulus(TelevisionSet& set, const std::string& line);

}  // namespace television
