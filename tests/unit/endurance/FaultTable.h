// What a failure of the browser or the platform leads to in the step in which it comes.
#pragma once

#include <string>

#include "tests/unit/endurance/Tour.h"

namespace endurance {

// Compares the struck step with the same step of a sound tour. `fault.use` counts from the step's beginning. Empty when
// the difference is the one that such a failure must make; otherwise what is wrong.
std::string WrongIn(const Fault& fault, const Step& sound, const Step& struck);

}  // namespace endurance
