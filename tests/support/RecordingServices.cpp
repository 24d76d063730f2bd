// The singletons of the recording platform: browser integration, cache, keys, DSM-CC, applications, screen.
#include <gtest/gtest.h>

#include "platform/CAppScreen.h"
#include "platform/CTaskManager.h"
#include "platform/IJSChannelCache.h"
#include "platform/IJSObjCreation.h"
#include "tests/support/RecordingPlatform.h"
#include "tests/support/Text.h"

namespace support {
namespace {

RecordingPlatform& Platform() { return RecordingPlatform::Instance(); }

std::string RectText(const TPTRect& rect) { return "[" + Text(rect.x, rect.y, rect.width, rect.height) + "]"; }

TPTRect Scaled(const TPTRect& graphics, const TPTRect& plane) {
    return {graphics.x * 1920 / plane.width, graphics.y * 1080 / plane.height, graphics.width * 1920 / plane.width,
            graphics.height * 1080 / plane.height};
}

}  // namespace

class RecordingBrowserAPI final : public CDAEBrowserAPI {
public:
    bool IsBroadcastRelated() override {
        return !Platform().Enter("browser.IsBroadcastRelated", "") && Platform().answers.broadcastRelated;
    }

    bool IsURLInAppBoundary(std::string& origin) override {
        Platform().origins.push_back(origin);
        const bool fails = Platform().Enter("browser.IsURLInAppBoundary", origin);
        origin = "changed by the platform";  // it may: the text is the caller's copy
        return !fails && Platform().answers.inAppBoundary;
    }

    IBroadcastPlayer* GetBroadcastPlayer() override {
        return Platform().Enter("browser.GetBroadcastPlayer", "") ? nullptr : Platform().HandOutPlayer();
    }

    void ReleaseBroadcastPlayer(IBroadcastPlayer* player) override {
        Platform().Enter("browser.ReleaseBroadcastPlayer", player != nullptr ? "player" : "null");
        Platform().TakeBackPlayer(player);
    }

    void SetChannel(unsigned int channelId, bool byPage) override {
        Platform().Enter("browser.SetChannel", Text(channelId, byPage));
    }

    bool CurrentChannel(unsigned int& channelId) override {
        const bool fails = Platform().Enter("browser.CurrentChannel", "");
        if (!fails && Platform().LookUp(Platform().answers.currentChannel, channelId)) {
            return true;
        }
        channelId = 4242;  // it should not, but only true promises an id
        return false;
    }

    bool IsMediaPlaybackMode() override {
        return !Platform().Enter("browser.IsMediaPlaybackMode", "") && Platform().answers.mediaPlaybackMode;
    }

    void EnableMediaPlaybackMode() override {
        Platform().Enter("browser.EnableMediaPlaybackMode", "");
        Platform().answers.mediaPlaybackMode = true;
    }

    bool DisableMediaPlaybackMode() override {
        const bool fails = Platform().Enter("browser.DisableMediaPlaybackMode", "");
        if (fails || !Platform().answers.canRestoreChannel) {
            return false;
        }
        Platform().answers.mediaPlaybackMode = false;
        return true;
    }

    void CorrectVideoAspectRatio(unsigned int x, unsigned int y, unsigned int width, unsigned int height,
                                 TPTRect& corrected) override {
        Platform().Enter("browser.CorrectVideoAspectRatio", Text(x, y, width, height) + ", " + RectText(corrected));
        corrected = Platform().answers.corrected.value_or(
            TPTRect{static_cast<std::int32_t>(x), static_cast<std::int32_t>(y), static_cast<std::int32_t>(width),
                    static_cast<std::int32_t>(height)});
    }

    bool ConvertGraphicsToVideo(const TPTRect& graphics, TPTRect& graphicsPlane, TPTRect& video) override {
        const bool fails = Platform().Enter("browser.ConvertGraphicsToVideo",
                                            Text(RectText(graphics), RectText(graphicsPlane), RectText(video)));
        video = Platform().answers.video.value_or(Scaled(graphics, graphicsPlane));
        graphicsPlane = {-1, -1, -1, -1};  // it may: the record is the caller's
        return !fails && Platform().answers.convertible;
    }

    void GetPanelResolution(int& width, int& height) override {
        const bool fails = Platform().Enter("browser.GetPanelResolution", Text(width, height));
        if (!fails && Platform().answers.panel) {
            width = Platform().answers.panel->first;
            height = Platform().answers.panel->second;
        }
    }
};

class RecordingChannelCache final : public IJSChannelCache {
public:
    void ReleaseChannel(unsigned int channelId) override {
        Platform().Enter("cache.ReleaseChannel", Text(channelId));
        Platform().DropHold(channelId);
    }
};

class RecordingObjCreation final : public IJSObjCreation {
public:
    std::string GetKey(const std::string& objectId) override {
        return Platform().Enter("keys.GetKey", objectId) ? std::string() : Platform().answers.key;
    }
};

class RecordingDsmcc final : public IDSMCCProtocol {
public:
    unsigned long SubscribeStreamEvent(const char* targetUrl, const char* eventName, int flags) override {
        const bool fails = Platform().Enter("dsmcc.SubscribeStreamEvent", Text(targetUrl, eventName, flags));
        const unsigned long jobId = fails ? 0 : Platform().NextJobId();
        if (jobId != 0) {
            Platform().m_subscriptions[jobId] = {targetUrl, eventName};
        }
        return jobId;
    }

    bool UnsubscribeStreamEvent(unsigned long jobId) override {
        return !Platform().Enter("dsmcc.UnsubscribeStreamEvent", Text(jobId)) &&
               Platform().m_subscriptions.erase(jobId) != 0;
    }

    void RegisterStreamEventCallback(const char* name, const DSMCCStreamEventCallback& callback) override {
        EXPECT_NE(name, nullptr);
        Platform().Enter("dsmcc.RegisterStreamEventCallback", name);
        const std::lock_guard lock(Platform().m_dsmccMutex);
        Platform().m_callback = callback;
        ++Platform().m_registrations;
    }

    void UnregisterStreamEventCallback() override {
        Platform().Enter("dsmcc.UnregisterStreamEventCallback", "");
        const std::lock_guard lock(Platform().m_dsmccMutex);
        if (Platform().m_registrations != 0 && --Platform().m_registrations == 0) {
            Platform().m_callback = nullptr;
        }
    }
};

namespace {

class RecordingPvr final : public CPvrWrapper {
public:
    bool IsPvrOperating() override {
        return !Platform().Enter("pvr.IsPvrOperating", "") && Platform().answers.pvrOperating;
    }
};

class RecordingWrapperManager final : public CWrapperManager {
public:
    CWrapper* GetWrapperInstance(DTV_APPLICATION application) override {
        const bool fails = Platform().Enter("tasks.GetWrapperInstance", Text(static_cast<int>(application)));
        return !fails && Platform().answers.hasPvr && application == DTV_APPLICATION_PVR ? &m_pvr : nullptr;
    }

private:
    RecordingPvr m_pvr;
};

class RecordingTaskManager final : public CTaskManager {
public:
    CWrapperManager* GetWrapperManager() override {
        const bool fails = Platform().Enter("tasks.GetWrapperManager", "");
        return !fails && Platform().answers.hasWrapperManager ? &m_wrappers : nullptr;
    }
    void GetActiveApplication(DTV_APPLICATION* application) override {
        Platform().Enter("tasks.GetActiveApplication", "");
        *application = DTV_APPLICATION_NONE;
    }

private:
    RecordingWrapperManager m_wrappers;
};

class RecordingAppScreen final : public CAppScreen {
public:
    void SetDynamicContrast(int item, int value) override {
        Platform().Enter("screen.SetDynamicContrast", Text(item, value));
    }
};

}  // namespace

void RecordingPlatform::Apply() {
    static auto& tasks = *new RecordingTaskManager;
    static auto& screen = *new RecordingAppScreen;
    g_pTaskManager = answers.hasTaskManager ? &tasks : nullptr;
    g_pAppScreen = answers.hasAppScreen ? &screen : nullptr;
}

}  // namespace support

CTaskManager* g_pTaskManager = nullptr;
CAppScreen* g_pAppScreen = nullptr;

CDAEBrowserAPI* CDAEBrowserAPI::Instance() {
    static auto& api = *new support::RecordingBrowserAPI;
    return support::RecordingPlatform::Instance().answers.hasBrowserAPI ? &api : nullptr;
}

IJSChannelCache* IJSChannelCache::Instance() {
    static auto& cache = *new support::RecordingChannelCache;
    return support::RecordingPlatform::Instance().answers.hasChannelCache ? &cache : nullptr;
}

IJSObjCreation* IJSObjCreation::Instance() {
    static auto& creation = *new support::RecordingObjCreation;
    return support::RecordingPlatform::Instance().answers.hasObjCreation ? &creation : nullptr;
}

IDSMCCProtocol* DSMCCProtocol_GetInstance() {
    static auto& dsmcc = *new support::RecordingDsmcc;
    return support::RecordingPlatform::Instance().answers.hasDsmcc ? &dsmcc : nullptr;
}
