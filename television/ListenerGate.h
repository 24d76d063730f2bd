// The page object's listener behind a gate: a call of it and an operation of the player never overlap.
#pragma once

#include <functional>
#include <mutex>

#include "platform/IBroadcastPlayerListener.h"

namespace television {

class ListenerGate {
public:
    // When these return, no call of the listener before is in progress or will come.
    void Set(IBroadcastPlayerListener* listener) {
        std::lock_guard lock(m_mutex);
        m_listener = listener;
    }

    bool HasListener() {
        std::lock_guard lock(m_mutex);
        return m_listener;
    }

    // While this is held no listener call is in progress. What an operation of the player changes while it holds this,
    // no listener call made later can have missed.
    [[nodiscard]] std::unique_lock<std::mutex> Close() { return std::unique_lock(m_mutex); }

    // Calls the listener if there is one and `wanted` is still true. Not from a listener call.
    bool Tell(const std::function<bool()>& wanted, const std::function<void(IBroadcastPlayerListener&)>& call) {
        std::lock_guard lock(m_mutex);
        if (!m_listener || !wanted()) return false;
        call(*m_listener);
        return true;
    }

private:
    std::mutex m_mutex;
    IBroadcastPlayerListener* m_listener = nullptr;
};

}  // namespace television
