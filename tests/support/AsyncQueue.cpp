// The asynchronous calls that the plug-in asked for.
#include "tests/support/AsyncQueue.h"

#include <optional>

namespace support {

void AsyncQueue::Add(NPP instance, Function function, void* data) {
    const std::lock_guard lock(m_mutex);
    if (m_instances.contains(instance)) {
        m_calls.push_back({instance, function, data});
        m_added.notify_all();
    }
}

void AsyncQueue::InstanceBegins(NPP instance) {
    const std::lock_guard lock(m_mutex);
    m_instances.insert(instance);
}

void AsyncQueue::InstanceEnds(NPP instance, bool dropItsCalls) {
    const std::lock_guard lock(m_mutex);
    m_instances.erase(instance);
    if (dropItsCalls) {
        std::erase_if(m_calls, [&](const Call& call) { return call.instance == instance; });
    }
}

bool AsyncQueue::RunOne() {
    std::optional<Call> next;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_calls.empty()) {
            next = m_calls.front();
            m_calls.pop_front();
        }
    }
    if (next) {
        next->function(next->data);
    }
    return next.has_value();
}

std::size_t AsyncQueue::RunAll() {
    std::size_t count = 0;
    while (RunOne()) {
        ++count;
    }
    return count;
}

void AsyncQueue::Drop() {
    const std::lock_guard lock(m_mutex);
    m_calls.clear();
}

std::size_t AsyncQueue::Pending() const {
    const std::lock_guard lock(m_mutex);
    return m_calls.size();
}

bool AsyncQueue::Wait(std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    return m_added.wait_for(lock, limit, [&] { return !m_calls.empty(); });
}

}  // namespace support
