// The DSM-CC protocol service: subscriptions go to the television that is switched on.
#include "platform/DSMCCProtocol.h"
#include "television/Core.h"
#include "television/Log.h"
#include "television/interfaces/StreamEventCallback.h"

namespace television {
namespace {

class DsmccService : public IDSMCCProtocol {
public:
    unsigned long SubscribeStreamEvent(const char* targetUrl, const char* eventName, int) override {
        const auto set = Core::Instance().Set();
        if (!set || !targetUrl || !eventName) return 0;
        return set->Events().Subscribe(targetUrl, eventName);
    }

    bool UnsubscribeStreamEvent(unsigned long jobId) override {
        const auto set = Core::Instance().Set();
        return set && set->Events().Unsubscribe(jobId);
    }

    void RegisterStreamEventCallback(const char*, const DSMCCStreamEventCallback& callback) override {
        StreamEventCallback::TheCallback().Register(callback);
    }

    void UnregisterStreamEventCallback() override { StreamEventCallback::TheCallback().Unregister(); }
};

}  // namespace
}  // namespace television

IDSMCCProtocol* DSMCCProtocol_GetInstance() {
    static auto& service = *new television::DsmccService;
    return &service;
}
