// The cache of channels that script knows by id.
//
// A channel id is an unsigned number, not 0, that names one channel for as long as it is held. Ids that the platform
// hands out carry a hold where their operation says so: IBroadcastPlayer::GetChannel, GetChannelFromTriplet and
// GetChannelFromDSD, CDAEBrowserAPI::CurrentChannel, and the listener calls that IBroadcastPlayerListener names. A page
// object that is made from an id keeps the hold; otherwise the plug-in gives it back.
#pragma once

#include "platform/visibility.h"

class TVPLATFORM_API IJSChannelCache {
public:
    // The one instance, never null; it must live in the platform library itself.
    static IJSChannelCache* Instance();

    // Drops one hold of the id. Called on the browser's main thread. An id without a hold (it came from a page object's
    // "mid") must be ignored.
    virtual void ReleaseChannel(unsigned int channelId) = 0;

protected:
    virtual ~IJSChannelCache();
};
