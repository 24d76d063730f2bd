// The platform's integration with its browser: what the current page may do, who has the broadcast, where video goes.
//
// Implemented by the platform library, called by the plug-in. Every operation is called on the browser's main thread
// and must answer without waiting for anything that needs that thread. All are required; a platform without a feature
// answers as its operation says.
#pragma once

#include <string>

#include "platform/TPTRect.h"
#include "platform/visibility.h"

class IBroadcastPlayer;

class TVPLATFORM_API CDAEBrowserAPI {
public:
    // The one instance, never null, alive until the process ends. It must live in the platform library itself (not in
    // an inline function or a template of a header): browsers load plug-ins with symbol scopes of their own.
    static CDAEBrowserAPI* Instance();

    // True when the current page belongs to a broadcast-related application, one that may control the broadcast
    // (ETSI TS 102 796, clause 6.2.2). Script gets "SecurityError" while it is false.
    virtual bool IsBroadcastRelated() = 0;

    // True when `origin` ("scheme://host:port", no path) lies inside the current application's boundary (OIPF DAE,
    // clause 5.1.1.3). `origin` is the caller's copy and may be changed.
    virtual bool IsURLInAppBoundary(std::string& origin) = 0;

    // The broadcast player for the current page, or null when none is to be had (in use by another object, or no
    // broadcast receiver). The player stays the platform's; the caller holds it until ReleaseBroadcastPlayer.
    virtual IBroadcastPlayer* GetBroadcastPlayer() = 0;

    // Gives a player back, once for each hand-out. Must forget the player's listener: when this returns, no listener
    // call is in progress on any thread and none will come. The caller holds no lock that a listener call needs.
    virtual void ReleaseBroadcastPlayer(IBroadcastPlayer* player) = 0;

    // Tells the browser integration which channel the page has selected. 0 is no channel: the page gave up the
    // broadcast. `byPage` is passed on from the null-channel request and is false otherwise. Nothing is tuned by it.
    virtual void SetChannel(unsigned int channelId, bool byPage) = 0;

    // True and the id of the channel that the television shows; false, `channelId` unchanged, when it shows none.
    // Takes a hold on the id (IJSChannelCache).
    virtual bool CurrentChannel(unsigned int& channelId) = 0;

    // Media playback mode: the broadcast is suspended while something else uses the screen. The three operations must
    // not wait for a listener call to end: the caller may hold the lock that listener calls take.
    virtual bool IsMediaPlaybackMode() = 0;
    virtual void EnableMediaPlaybackMode() = 0;
    // Restores the broadcast. False when the channel cannot be restored.
    virtual bool DisableMediaPlaybackMode() = 0;

    // The largest rectangle of the video's aspect ratio inside the given one, centred in it; all in pixels of the
    // graphics plane. x and y arrive as the bit patterns of signed numbers (an object may lie partly off the plane).
    // `corrected` arrives zeroed; without video it must become the given rectangle.
    virtual void CorrectVideoAspectRatio(unsigned int x, unsigned int y, unsigned int width, unsigned int height,
                                         TPTRect& corrected) = 0;

    // Converts `graphics` from the coordinates of `graphicsPlane` (the whole plane) to those of the video plane.
    // `video` must be written in any case; the returned bool tells whether the platform found it convertible and is
    // only logged.
    virtual bool ConvertGraphicsToVideo(const TPTRect& graphics, TPTRect& graphicsPlane, TPTRect& video) = 0;

    // The panel's resolution in pixels, which is the video plane's size. Both arrive preset to 1920 and 1080 and stay
    // so where it is unknown.
    virtual void GetPanelResolution(int& width, int& height) = 0;

protected:
    virtual ~CDAEBrowserAPI();
};
