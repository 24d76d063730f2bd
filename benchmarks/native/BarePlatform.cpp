// The least platform: pages may use the broadcast, but there is no player; stream events can be subscribed to. The rest
// comes from the platform that supports nothing.
#include "benchmarks/native/BarePlatform.h"

#include "platform/CDAEBrowserAPI.h"

namespace {

class BareBrowserAPI final : public CDAEBrowserAPI {
public:
    bool IsBroadcastRelated() override { return true; }
    bool IsURLInAppBoundary(std::string&) override { return true; }
    IBroadcastPlayer* GetBroadcastPlayer() override { return nullptr; }
    void ReleaseBroadcastPlayer(IBroadcastPlayer*) override {}
    void SetChannel(unsigned int, bool) override {}
    bool CurrentChannel(unsigned int&) override { return false; }
    bool IsMediaPlaybackMode() override { return false; }
    void EnableMediaPlaybackMode() override {}
    bool DisableMediaPlaybackMode() override { return true; }
    void CorrectVideoAspectRatio(unsigned int, unsigned int, unsigned int, unsigned int, TPTRect&) override {}
    bool ConvertGraphicsToVideo(const TPTRect&, TPTRect&, TPTRect&) override { return false; }
    void GetPanelResolution(int&, int&) override {}
};

DSMCCStreamEventCallback s_callback = nullptr;
unsigned long s_lastJob = 0;

class BareDsmcc final : public IDSMCCProtocol {
public:
    unsigned long SubscribeStreamEvent(const char*, const char*, int) override { return ++s_lastJob; }
    bool UnsubscribeStreamEvent(unsigned long) override { return true; }
    void RegisterStreamEventCallback(const char*, const DSMCCStreamEventCallback& callback) override {
        s_callback = callback;
    }
    void UnregisterStreamEventCallback() override {}
};

}  // namespace

CDAEBrowserAPI* CDAEBrowserAPI::Instance() {
    static BareBrowserAPI s_api;
    return &s_api;
}

IDSMCCProtocol* DSMCCProtocol_GetInstance() {
    static BareDsmcc s_service;
    return &s_service;
}

namespace benchmarks {

unsigned long LastJob() { return s_lastJob; }

void DeliverStreamEvent(unsigned long job) {
    s_callback(new CDSMCCStreamEventData{CDSMCCStreamEventData::E_STATUS_TRIGGER, 1, "event", {1, 2, 3, 4}, job, 0});
}

}  // namespace benchmarks
