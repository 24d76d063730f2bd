// The hold of the broadcast player, and the object's end.
#include <algorithm>

#include "debug/Log.h"
#include "platform/CDAEBrowserAPI.h"
#include "platform/IBroadcastPlayer.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

void COipfVideoBroadcast::m_GetBroadcastPlayer() {
    LOG_TRACE("m_GetBroadcastPlayer request %p", static_cast<void*>(this));
    if (m_bcPlayer) return;
    CDAEBrowserAPI* api = CDAEBrowserAPI::Instance();
    m_bcPlayer = api ? api->GetBroadcastPlayer() : nullptr;
    if (!m_bcPlayer) return;
    ++m_playerHold;
    m_bcPlayer->SetListener(this);
}

// The play state event may run script that gives this player back itself, or takes another: only the hold that stood
// at the start is given back here.
void COipfVideoBroadcast::m_ReleaseBroadcastPlayer() {
    LOG_TRACE("m_ReleaseBroadcastPlayer request %p", static_cast<void*>(this));
    if (!m_bcPlayer) return;
    const unsigned int hold = m_playerHold;
    m_lastRatingValid = false;
    m_blocked = false;
    m_SetPlayState(E_STATE_UNREALIZED, E_ERR_NONE);
    if (!m_bcPlayer || m_playerHold != hold) return;
    CDAEBrowserAPI::Instance()->ReleaseBroadcastPlayer(m_bcPlayer);
    m_bcPlayer = nullptr;
    LOG_TRACE("m_ReleaseBroadcastPlayer finished");
}

void COipfVideoBroadcast::m_SetNullChannel(bool bc) {
    LOG_TRACE("CVBOEmbeddedObject::SetNullChannel bc = %s", bc ? "true" : "false");
    m_lastRatingValid = false;
    m_blocked = false;
    if (!m_bcPlayer) return;
    CDAEBrowserAPI::Instance()->SetChannel(0, bc);
    m_bcPlayer->StopChannel();
    LOG_TRACE("CVBOEmbeddedObject::SetNullChannel complete");
}

void COipfVideoBroadcast::Invalidate() {
    LOG_TRACE("COipfVideoBroadcast::Invalidate() %p %d", static_cast<void*>(this), static_cast<int>(referenceCount));
    t_Forget();
    if (m_bcPlayer) {
        LOG_TRACE("Release the broadcast player.");
        m_invalidated = true;
        m_ReleaseBroadcastPlayer();
    }
    t_GiveBackHolds();
}

// From here on no notification reaches the object: none is queued, and those that were are dropped.
void COipfVideoBroadcast::t_Forget() {
    std::vector<event_t> dropped;
    {
        CLock lock(s_mutex);
        m_npp = nullptr;
        if (t_IsMediaPlaybackMode() && !CDAEBrowserAPI::Instance()->DisableMediaPlaybackMode())
            LOG_ERROR("m_ReleaseBroadcastPlayer - fail to restore channel");
        s_vboInstances.remove(this);
        dropped = t_TakePendingEvents();
        for (const event_t& event : dropped) t_KeepHold(event);
        LOG_TRACE("%u events remaining in s_asyncEvent map", static_cast<unsigned int>(s_asyncEvent.size()));
    }
    for (const event_t& event : dropped) t_FreePayload(event);
}

// Under s_mutex: remembers the channel that a dropped record names with a hold on its id (IBroadcastPlayerListener).
// Only the main thread may give it back.
void COipfVideoBroadcast::t_KeepHold(const event_t& event) {
    constexpr ENotification kWithHold[] = {E_TUNE_SUCCESS, E_TUNE_FAIL, E_SERVICE_NOT_AVAILABLE, E_CH_TUNED_LOCKED,
                                           E_CH_SCRAMBLED_TUNE};
    if (event.data != 0 && std::ranges::find(kWithHold, event.id) != std::ranges::end(kWithHold))
        m_droppedHolds.push_back(static_cast<unsigned int>(event.data));
}

// The player is given back by now: no more of them come.
void COipfVideoBroadcast::t_GiveBackHolds() {
    std::vector<unsigned int> channels;
    {
        CLock lock(s_mutex);
        channels.swap(m_droppedHolds);
    }
    for (const unsigned int channel : channels) t_ReleaseChannel(channel);
}

// Under s_mutex.
std::vector<COipfVideoBroadcast::event_t> COipfVideoBroadcast::t_TakePendingEvents() {
    std::vector<event_t> taken;
    for (auto entry = s_asyncEvent.begin(); entry != s_asyncEvent.end();) {
        if (entry->second.first != this) {
            ++entry;
            continue;
        }
        LOG_TRACE("Remove event %d pending in s_asyncEvent map", static_cast<int>(entry->second.second.id));
        taken.push_back(entry->second.second);
        entry = s_asyncEvent.erase(entry);
    }
    return taken;
}

// Script functions still held by handler properties and event listeners are not given back here.
COipfVideoBroadcast::~COipfVideoBroadcast() {
    LOG_TRACE("COipfVideoBroadcast::~COipfVideoBroadcast()");
    COipfVideoBroadcast::Invalidate();
}

}  // namespace OipfVideoBroadcast
