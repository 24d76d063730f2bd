// The benchmarks that need no browser.
#pragma once

#include "npapi/npfunctions.h"

namespace benchmarks {

// Each operation on the object and on the floor.
void Compare(const NPPluginFuncs& object, const NPPluginFuncs& floor);
// What operations cost when there are 1 to 10,000 live objects, pending records, listeners or subscriptions.
void Grow(const NPPluginFuncs& object);

}  // namespace benchmarks
