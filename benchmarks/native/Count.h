// Counts the instructions that an operation takes. They are the same whatever else the machine does.
#pragma once

#include <valgrind/callgrind.h>

#include <string>

namespace benchmarks {

// The operation is run a few times, then `times` times while valgrind's callgrind counts; the count goes into a file of
// callgrind's with the text "NAME;TIMES".
template <class Operation>
void Count(const std::string& name, int times, Operation operation) {
    constexpr int kWarmUp = 4;
    const std::string text = name + ";" + std::to_string(times);
    for (int i = 0; i < kWarmUp; ++i) operation();
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    for (int i = 0; i < times; ++i) operation();
    CALLGRIND_DUMP_STATS_AT(text.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
}

}  // namespace benchmarks
