// What the page of the benchmark controls it with: clocks, and a thread that notifies as the platform's threads do.
#pragma once

#include <memory>
#include <vector>

#include "npapi/npfunctions.h"

namespace benchmarks {

// Script sees "cpu" (the main thread's processor time in microseconds), "postingCpu" (that of the last thread),
// "latency" (the median of the last exchange in microseconds), and
//   post(target, kind, count)      notifies `count` times from a new thread, and returns when that is done;
//   exchange(target, kind, count)  the thread waits after each notification until script has called arrived(), which
//                                  returns how many are still to come.
// `target` is "object" or "floor"; the kinds are "playState", "programmes" and "channel".
struct Control : NPObject {
    Control();
    ~Control();

    static NPClass s_class;
    // The instances that are notified, null before there is one; they live as long as the page.
    static NPP s_object;
    static NPP s_floor;

    struct Exchange;
    double postingCpu = 0;
    std::unique_ptr<Exchange> exchange;
};

}  // namespace benchmarks
