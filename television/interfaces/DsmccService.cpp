// The DSM-CC protocol service. It keeps the callback's registrations; streams' events are not read yet, and every
// subscription is refused.
#include <mutex>
#include <string>

#include "platform/DSMCCProtocol.h"
#include "television/Log.h"

namespace television {
namespace {

class DsmccService : public IDSMCCProtocol {
public:
    unsigned long SubscribeStreamEvent(const char* targetUrl, const char* eventName, int) override {
        Log(std::string("The stream event \"") + (eventName ? eventName : "") + "\" of " +
            (targetUrl ? targetUrl : "an empty address") + " was refused: this television reads no stream events.");
        return 0;
    }

    bool UnsubscribeStreamEvent(unsigned long) override { return false; }

    void RegisterStreamEventCallback(const char*, const DSMCCStreamEventCallback& callback) override {
        std::lock_guard lock(m_mutex);
        m_callback = callback;
        ++m_registrations;
    }

    void UnregisterStreamEventCallback() override {
        std::lock_guard lock(m_mutex);
        if (m_registrations > 0 && --m_registrations == 0) m_callback = nullptr;
    }

private:
    std::mutex m_mutex;
    DSMCCStreamEventCallback m_callback = nullptr;
    unsigned long m_registrations = 0;
};

}  // namespace
}  // namespace television

IDSMCCProtocol* DSMCCProtocol_GetInstance() {
    static auto& service = *new television::DsmccService;
    return &service;
}
