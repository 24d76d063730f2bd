// What the object does about each notification, on the browser's main thread.
#include <memory>

#include "debug/Log.h"
#include "platform/CDAEBrowserAPI.h"
#include "videobroadcast/CEventArguments.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

// Id 0 names no channel: the play state follows, the page is told of none.
void COipfVideoBroadcast::t_Report(std::uintptr_t channelId, EChannelChangeError error) {
    if (channelId != 0) m_SendChChange(static_cast<unsigned int>(channelId), error);
}

void COipfVideoBroadcast::t_OnProgrammesChanged(std::uintptr_t) {
    CEventArguments none(m_pNPNFuncs);
    m_OnEvent(E_PROP_PROGRAMMES_CHANGED, none.List());
}

void COipfVideoBroadcast::t_OnParentalRating(std::uintptr_t data) { t_CheckRating(static_cast<unsigned char>(data)); }

void COipfVideoBroadcast::t_OnStreamEvent(std::uintptr_t data) {
    const std::unique_ptr<CDSMCCStreamEventData> event(reinterpret_cast<CDSMCCStreamEventData*>(data));
    if (event) m_OnDsmEvent(*event);
}

void COipfVideoBroadcast::t_OnSuspend(std::uintptr_t) { m_OnSuspend(); }

void COipfVideoBroadcast::t_OnResume(std::uintptr_t) { m_OnResume(); }

void COipfVideoBroadcast::t_OnChannelChange(std::uintptr_t) { m_SetPlayState(E_STATE_CONNECTING, E_ERR_NONE); }

void COipfVideoBroadcast::t_OnTuneSuccess(std::uintptr_t channelId) {
    m_SetPlayState(E_STATE_PRESENTING, E_ERR_NONE);
    t_Report(channelId, E_ERR_NONE);
}

void COipfVideoBroadcast::t_OnTuneFail(std::uintptr_t channelId) {
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_CANNOT_TUNE);
    t_Report(channelId, E_ERR_CANNOT_TUNE);
}

void COipfVideoBroadcast::t_OnServiceNotAvailable(std::uintptr_t channelId) {
    m_SetPlayState(E_STATE_UNREALIZED, E_ERR_NONE);
    t_Report(channelId, E_ERR_CHANNEL_NOT_FOUND);
}

void COipfVideoBroadcast::t_OnLocked(std::uintptr_t) {
    if (m_playState == E_STATE_CONNECTING && m_blocked) {
        LOG_TRACE("Connecting and blocked - but m_blocked already set");
        return;
    }
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_PARENTAL_LOCK);
    m_blocked = true;
}

// The tune itself succeeded, and that is what the page is told.
void COipfVideoBroadcast::t_OnTunedLocked(std::uintptr_t channelId) {
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_PARENTAL_LOCK);
    m_blocked = true;
    t_Report(channelId, E_ERR_NONE);
}

void COipfVideoBroadcast::t_OnUnlocked(std::uintptr_t) {
    if (m_playState == E_STATE_CONNECTING) m_SetPlayState(E_STATE_PRESENTING, E_ERR_NONE);
}

void COipfVideoBroadcast::t_OnUpdateLayout(std::uintptr_t) { m_UpdateLayout(); }

void COipfVideoBroadcast::t_OnScrambled(std::uintptr_t caSystemId) {
    LOG_TRACE("E_CH_SCRAMBLED - send DrmRightsError message");
    m_SendDrmRightsError(E_RIGHTS_NONE, static_cast<unsigned short>(caSystemId));
    m_scrambled = true;
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_ENCRYPTED);
}

void COipfVideoBroadcast::t_OnScrambledTune(std::uintptr_t channelId) {
    m_scrambled = true;
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_ENCRYPTED);
    t_Report(channelId, E_ERR_NONE);
}

void COipfVideoBroadcast::t_OnUnscrambled(std::uintptr_t caSystemId) {
    LOG_TRACE("E_CH_UNSCRAMBLED - send message");
    m_SendDrmRightsError(E_RIGHTS_VALID, static_cast<unsigned short>(caSystemId));
    m_scrambled = false;
    if (m_playState == E_STATE_CONNECTING) m_SetPlayState(E_STATE_PRESENTING, E_ERR_NONE);
}

void COipfVideoBroadcast::m_OnSuspend() {
    LOG_TRACE("COipfVideoBroadcast::m_OnSuspend()");
    if (!m_bcPlayer) {
        LOG_WARNING("COipfVideoBroadcast::m_OnSuspend() - no broadcast player");
        return;
    }
    if (CDAEBrowserAPI* api = CDAEBrowserAPI::Instance()) api->EnableMediaPlaybackMode();
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_INSUFFICIENT_RESOURCES);
}

bool COipfVideoBroadcast::t_IsMediaPlaybackMode() {
    CDAEBrowserAPI* api = CDAEBrowserAPI::Instance();
    return api && api->IsMediaPlaybackMode();
}

void COipfVideoBroadcast::m_OnResume() {
    LOG_TRACE("COipfVideoBroadcast::m_OnResume()");
    if (t_IsMediaPlaybackMode() && !CDAEBrowserAPI::Instance()->DisableMediaPlaybackMode()) {
        LOG_WARNING("COipfVideoBroadcast::m_OnResume - fail to restore channel");
        return;
    }
    if (m_playState != E_STATE_CONNECTING || m_scrambled) return;
    LOG_TRACE("Set play state to presenting.");
    m_SetPlayState(E_STATE_PRESENTING, E_ERR_NONE);
}

}  // namespace OipfVideoBroadcast
