// The function that the plug-in's objects registered for stream events.
#pragma once

#include <mutex>

#include "platform/DSMCCProtocol.h"

namespace television {

class StreamEventCallback {
public:
    static StreamEventCallback& TheCallback();

    // Counted: the function is kept until as many registrations were taken back as were made.
    void Register(DSMCCStreamEventCallback callback);
    // When the last one is taken back, no call is in progress or will come.
    void Unregister();
    // Hands a copy over, if there is a function.
    void Call(const CDSMCCStreamEventData& event);

private:
    std::mutex m_mutex;
    DSMCCStreamEventCallback m_callback = nullptr;
    unsigned long m_registrations = 0;
};

}  // namespace television
