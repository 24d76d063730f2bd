// Registrations of the callback for stream events, and its calls.
#include "television/interfaces/StreamEventCallback.h"

namespace television {

StreamEventCallback& StreamEventCallback::TheCallback() {
    static auto& callback = *new StreamEventCallback;
    return callback;
}

void StreamEventCallback::Register(DSMCCStreamEventCallback callback) {
    std::lock_guard lock(m_mutex);
    m_callback = callback;
    ++m_registrations;
}

void StreamEventCallback::Unregister() {
    std::lock_guard lock(m_mutex);
    if (m_registrations > 0 && --m_registrations == 0) m_callback = nullptr;
}

void StreamEventCallback::Call(const CDSMCCStreamEventData& event) {
    std::lock_guard lock(m_mutex);
    if (m_callback) m_callback(new CDSMCCStreamEventData(event));
}

}  // namespace television
