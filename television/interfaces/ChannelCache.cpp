// Counted holds, one count for each channel id.
#include "television/interfaces/ChannelCache.h"

IJSChannelCache* IJSChannelCache::Instance() { return &television::ChannelCache::TheCache(); }

namespace television {

ChannelCache& ChannelCache::TheCache() {
    static auto& cache = *new ChannelCache;
    return cache;
}

void ChannelCache::ReleaseChannel(unsigned int channelId) {
    std::lock_guard lock(m_mutex);
    const auto found = m_holds.find(channelId);
    if (found != m_holds.end() && --found->second == 0) m_holds.erase(found);
}

unsigned int ChannelCache::Hold(unsigned int channelId) {
    std::lock_guard lock(m_mutex);
    ++m_holds[channelId];
    return channelId;
}

void ChannelCache::ReleaseAll() {
    std::lock_guard lock(m_mutex);
    m_holds.clear();
}

std::size_t ChannelCache::Holds() const {
    std::lock_guard lock(m_mutex);
    std::size_t holds = 0;
    for (const auto& [id, count] : m_holds) holds += count;
    return holds;
}

}  // namespace television
