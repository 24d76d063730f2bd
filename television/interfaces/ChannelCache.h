// The holds on channel ids that script objects keep.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>

#include "platform/IJSChannelCache.h"

namespace television {

class ChannelCache : public IJSChannelCache {
public:
    static ChannelCache& TheCache();

    void ReleaseChannel(unsigned int channelId) override;

    // Takes a hold and returns the id. Any thread.
    unsigned int Hold(unsigned int channelId);
    // Drops all holds: the page that had them is gone.
    void ReleaseAll();
    std::size_t Holds() const;

private:
    mutable std::mutex m_mutex;
    std::map<unsigned int, std::size_t> m_holds;
};

}  // namespace television
