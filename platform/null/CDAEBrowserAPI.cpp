// No page may control the broadcast, and there is none: no player, no channel. The screen has its usual size.
#include "platform/CDAEBrowserAPI.h"

namespace {

constexpr int kPanelWidth = 1920;
constexpr int kPanelHeight = 1080;

std::int32_t Scale(std::int32_t length, std::int32_t plane, std::int32_t panel) {
    return plane > 0 ? static_cast<std::int32_t>(std::int64_t{length} * panel / plane) : length;
}

class NullBrowserAPI final : public CDAEBrowserAPI {
public:
    bool IsBroadcastRelated() override { return false; }
    bool IsURLInAppBoundary(std::string&) override { return false; }

    IBroadcastPlayer* GetBroadcastPlayer() override { return nullptr; }
    void ReleaseBroadcastPlayer(IBroadcastPlayer*) override {}
    void SetChannel(unsigned int, bool) override {}
    bool CurrentChannel(unsigned int&) override { return false; }

    bool IsMediaPlaybackMode() override { return false; }
    void EnableMediaPlaybackMode() override {}
    bool DisableMediaPlaybackMode() override { return true; }

    void CorrectVideoAspectRatio(unsigned int x, unsigned int y, unsigned int width, unsigned int height,
                                 TPTRect& corrected) override {
        corrected = {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y), static_cast<std::int32_t>(width),
                     static_cast<std::int32_t>(height)};
    }

    bool ConvertGraphicsToVideo(const TPTRect& graphics, TPTRect& graphicsPlane, TPTRect& video) override {
        video = {Scale(graphics.x, graphicsPlane.width, kPanelWidth),
                 Scale(graphics.y, graphicsPlane.height, kPanelHeight),
                 Scale(graphics.width, graphicsPlane.width, kPanelWidth),
                 Scale(graphics.height, graphicsPlane.height, kPanelHeight)};
        return graphicsPlane.width > 0 && graphicsPlane.height > 0;
    }

    void GetPanelResolution(int& width, int& height) override {
        width = kPanelWidth;
        height = kPanelHeight;
    }
};

}  // namespace

CDAEBrowserAPI* CDAEBrowserAPI::Instance() {
    static NullBrowserAPI api;
    return &api;
}
