// The failures that lead to something of their own, as differences from a sound tour.
#pragma once

#include <string>
#include <vector>

#include "tests/unit/endurance/Tour.h"

namespace endurance {

struct FaultRow {
    std::string function;
    Lines steps;
    unsigned use;  // of the function in the step; 0: each
    Lines gone;    // the lines that the step has not any more
    Lines come;    // and those that it has instead

    // Whether `come` is all that the step came to.
    bool IsWhole() const { return gone == Lines{"*"}; }
};

const std::vector<FaultRow>& FaultRows();

}  // namespace endurance
