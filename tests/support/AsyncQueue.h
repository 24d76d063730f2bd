// The asynchronous calls that the plug-in asked for.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <set>

#include "npapi/npruntime.h"

namespace support {

// First in, first out. Add may be called on any thread.
class AsyncQueue {
public:
    using Function = void (*)(void*);

    // A call for an instance that does not live (any more) is ignored, as browsers do.
    void Add(NPP instance, Function function, void* data);
    void InstanceBegins(NPP instance);
    void InstanceEnds(NPP instance, bool dropItsCalls);

    bool RunOne();
    std::size_t RunAll();  // also those that come while it runs; how many
    void Drop();
    std::size_t Pending() const;
    // Waits until one is pending; false when none came in time.
    bool Wait(std::chrono::milliseconds limit);

private:
    struct Call {
        NPP instance;
        Function function;
        void* data;
    };

    mutable std::mutex m_mutex;
    std::condition_variable m_added;
    std::deque<Call> m_calls;
    std::set<NPP> m_instances;
};

}  // namespace support
