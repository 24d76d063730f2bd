// The platform's integration with its browser.
#include "platform/CDAEBrowserAPI.h"

#include "television/Core.h"
#include "television/Geometry.h"
#include "television/Log.h"
#include "television/interfaces/BroadcastPlayer.h"
#include "television/interfaces/ChannelCache.h"

namespace television {
namespace {

constexpr TPTRect kVideoPlane{0, 0, Television::kPlaneWidth, Television::kPlaneHeight};

class BrowserApi : public CDAEBrowserAPI {
public:
    bool IsBroadcastRelated() override { return Core::Instance().Page().IsBroadcastRelated(); }
    bool IsURLInAppBoundary(std::string& origin) override { return Core::Instance().Page().Contains(origin); }

    IBroadcastPlayer* GetBroadcastPlayer() override {
        return Core::Instance().TakePlayer() ? &BroadcastPlayer::ThePlayer() : nullptr;
    }

    void ReleaseBroadcastPlayer(IBroadcastPlayer* player) override {
        if (player == &BroadcastPlayer::ThePlayer()) Core::Instance().GiveBackPlayer();
    }

    void SetChannel(unsigned int channelId, bool) override {
        Log(channelId == 0 ? std::string("The page gave up the broadcast.")
                           : "The page selected channel " + std::to_string(channelId) + ".");
    }

    bool CurrentChannel(unsigned int& channelId) override { return BroadcastPlayer::ThePlayer().GetChannel(channelId); }

    bool IsMediaPlaybackMode() override {
        const auto set = Core::Instance().Set();
        return set && set->ThePresentation().IsSuspended();
    }

    void EnableMediaPlaybackMode() override {
        if (const auto set = Core::Instance().Set()) set->ThePresentation().Suspend();
    }

    bool DisableMediaPlaybackMode() override {
        const auto set = Core::Instance().Set();
        return set && !set->TheResources().IsMediaPlaying() && set->ThePresentation().Resume();
    }

    void CorrectVideoAspectRatio(unsigned int x, unsigned int y, unsigned int width, unsigned int height,
                                 TPTRect& corrected) override {
        corrected = {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y), static_cast<std::int32_t>(width),
                     static_cast<std::int32_t>(height)};
        const auto set = Core::Instance().Set();
        if (const auto aspect = set ? set->TheScreen().AspectRatio() : std::nullopt)
            corrected = Fit(corrected, *aspect);
    }

    bool ConvertGraphicsToVideo(const TPTRect& graphics, TPTRect& graphicsPlane, TPTRect& video) override {
        return Convert(graphics, graphicsPlane, kVideoPlane, video);
    }

    void GetPanelResolution(int& width, int& height) override {
        width = Television::kPlaneWidth;
        height = Television::kPlaneHeight;
    }
};

}  // namespace
}  // namespace television

CDAEBrowserAPI* CDAEBrowserAPI::Instance() {
    static auto& api = *new television::BrowserApi;
    return &api;
}
