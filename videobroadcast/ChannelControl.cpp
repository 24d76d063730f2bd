// Moving between channels, and stopping.
#include "debug/Log.h"
#include "javascript/Variants.h"
#include "platform/CDAEBrowserAPI.h"
#include "platform/CTaskManager.h"
#include "platform/IBroadcastPlayer.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

unsigned char _hex2num(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned char>(digit - '0');
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned char>(digit - 'A' + 10);
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned char>(digit - 'a' + 10);
    LOG_WARNING("%s: Cannot convert %c into number", "_hex2num", digit);
    return 0;
}

// Text of odd length gives no bytes.
std::string BytesOfHexText(const std::string& text) {
    std::string bytes;
    if (text.size() % 2 != 0) return bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const unsigned char high = _hex2num(text[i]);
        const auto byte = static_cast<unsigned char>(high << 4 | _hex2num(text[i + 1]));
        LOG_DETAIL("0x%02X, ", byte);
        bytes.push_back(static_cast<char>(byte));
    }
    return bytes;
}

}  // namespace

bool COipfVideoBroadcast::t_IsPvrOperating() {
    CWrapperManager* wrappers = g_pTaskManager ? g_pTaskManager->GetWrapperManager() : nullptr;
    auto* pvr = wrappers ? dynamic_cast<CPvrWrapper*>(wrappers->GetWrapperInstance(DTV_APPLICATION_PVR)) : nullptr;
    return pvr && pvr->IsPvrOperating();
}

// Reports the failed change to the page and leaves the object without a channel.
void COipfVideoBroadcast::t_ChannelFailed(const NPVariant& channel, EChannelChangeError error) {
    m_SendChChange(channel, error);
    m_SetPlayState(E_STATE_UNREALIZED, error);
}

bool COipfVideoBroadcast::m_SetChannel(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    if (argCount > 3) {
        t_SetException("SetChannel - wrong number of args.");
        return true;
    }
    const bool unbinds = argCount > 0 && args[0].type == NPVariantType_Null;
    if (!unbinds && (argCount == 0 || !IsObject(args[0]))) {
        t_SetException("setChannel arg 0 invalid");
        return true;
    }
    if (t_IsPvrOperating()) {
        LOG_WARNING("Can't setChannel - PVR operating!");
        m_SendChChange(args[0], E_ERR_RECORDING_IN_PROGRESS);
        return true;
    }
    m_GetBroadcastPlayer();
    if (!m_bcPlayer) {
        t_ChannelFailed(args[0], E_ERR_INSUFFICIENT_RESOURCES);
        return true;
    }
    if (unbinds) {
        m_GetBroadcastPlayer();
        m_SetNullChannel(true);
        m_SendChChange(args[0], E_ERR_NONE);
        m_ReleaseBroadcastPlayer();
        return true;
    }
    unsigned int id = 0;
    bool fromDsd = false;
    if (t_FindChannel(args[0], id, fromDsd)) t_TuneTo(args[0], id, fromDsd);
    return true;
}

// The id of the channel that a page's Channel object stands for. False when there is none, and that is reported.
// Reading the object's properties may run the page's code, which may have released the player.
bool COipfVideoBroadcast::t_FindChannel(const NPVariant& channel, unsigned int& id, bool& fromDsd) {
    NPObject& object = *channel.value.objectValue;
    if (t_GetProperty("mid", object, id))
        LOG_TRACE("Got channel id %d", static_cast<int>(id));
    else
        LOG_TRACE("Failed to get Channel ID!");
    if (id != 0) return true;

    std::string text;
    if (!t_GetProperty("dsd", object, text)) text.clear();
    const std::string dsd = BytesOfHexText(text);
    int idType = -1;
    int sid = 0;
    t_GetProperty("idType", object, idType);
    t_GetProperty("sid", object, sid);
    if (dsd.empty())
        t_FindChannelByTriplet(object, idType, sid, id);
    else if (!t_FindChannelByDsd(channel, dsd, idType, sid, id, fromDsd))
        return false;
    if (id != 0) return true;
    if (!m_bcPlayer) {
        t_ChannelFailed(channel, E_ERR_INSUFFICIENT_RESOURCES);
        return false;
    }
    LOG_WARNING("setChannel() - channel not found.");
    t_ChannelFailed(channel, E_ERR_CHANNEL_NOT_FOUND);
    return false;
}

// False when the descriptor is refused, and that is reported.
bool COipfVideoBroadcast::t_FindChannelByDsd(const NPVariant& channel, const std::string& dsd, int idType, int sid,
                                             unsigned int& id, bool& fromDsd) {
    if (!m_bcPlayer) return true;
    switch (m_bcPlayer->GetChannelFromDSD(idType, dsd, sid, id)) {
        case 0:
            LOG_TRACE("Got channel from DSD, id %d", static_cast<int>(id));
            fromDsd = true;
            return true;
        case 1:
            LOG_WARNING("DSD Parse error - failed to get channel from DSD!");
            t_ChannelFailed(channel, E_ERR_UNIDENTIFIED);
            return false;
        case 2:
            LOG_WARNING("Channel not supported from DSD");
            t_ChannelFailed(channel, E_ERR_CHANNEL_NOT_SUPPORTED);
            return false;
        default:
            return true;
    }
}

void COipfVideoBroadcast::t_FindChannelByTriplet(NPObject& channel, int idType, int sid, unsigned int& id) {
    int onid = 0;
    int tsid = 0;
    t_GetProperty("onid", channel, onid);
    t_GetProperty("tsid", channel, tsid);
    if (!m_bcPlayer) return;
    if (m_bcPlayer->GetChannelFromTriplet(idType, onid, tsid, sid, id))
        LOG_TRACE("Got channel from triplet, id %d", static_cast<int>(id));
    else
        LOG_WARNING("Failed to get channel from triplet!");
}

void COipfVideoBroadcast::t_TuneTo(const NPVariant& channel, unsigned int id, bool fromDsd) {
    if (!m_bcPlayer) {
        t_ReleaseChannel(id);
        t_ChannelFailed(channel, E_ERR_INSUFFICIENT_RESOURCES);
        return;
    }
    if (!m_bcPlayer->SetChannel(id, fromDsd)) {
        LOG_WARNING("setChannel(%d) failed.", static_cast<int>(id));
        t_ReleaseChannel(id);
        t_ChannelFailed(channel, E_ERR_UNIDENTIFIED);
        return;
    }
    if (m_pBrowserAPI) m_pBrowserAPI->SetChannel(id, false);
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_NONE);
    t_ReleaseChannel(id);
}

bool COipfVideoBroadcast::m_NextChannel(const NPVariant*, std::uint32_t, NPVariant*) {
    return m_NextOrPrevChannel(true);
}

bool COipfVideoBroadcast::m_PrevChannel(const NPVariant*, std::uint32_t, NPVariant*) {
    return m_NextOrPrevChannel(false);
}

bool COipfVideoBroadcast::m_NextOrPrevChannel(bool next) {
    m_lastRatingValid = false;
    m_blocked = false;
    if (t_RefuseUnlessBroadcastRelated("GetBroadcastPlayer is not broadcast related ")) return true;
    if (t_IsPvrOperating()) {
        LOG_WARNING("Can't call next/prevChannel - PVR operating!");
        t_SetException("PVR operating");
        return true;
    }
    m_GetBroadcastPlayer();
    EChannelChangeError error = E_ERR_INSUFFICIENT_RESOURCES;
    if (m_bcPlayer) {
        if (next ? m_bcPlayer->NextChannel() : m_bcPlayer->PrevChannel()) {
            m_SetPlayState(E_STATE_CONNECTING, E_ERR_NONE);
            return true;
        }
        LOG_WARNING("IBroadcastPlayer::Next/PrevChannel() FAILED");
        error = E_ERR_NO_CHANNEL_LIST;
    }
    t_ChannelFailed(NullVariant(), error);
    return true;
}

bool COipfVideoBroadcast::m_BindToCurrentCh(const NPVariant*, std::uint32_t, NPVariant*) {
    m_lastRatingValid = false;
    m_blocked = false;
    if (t_RefuseUnlessBroadcastRelated("m_BindToCurrentCh - app is not broadcast related ")) return true;
    if (m_playState != E_STATE_UNREALIZED && m_playState != E_STATE_STOPPED) {
        LOG_WARNING("m_BindToCurrentCh in wrong state (%d)", m_playState);
        return true;
    }
    m_GetBroadcastPlayer();
    if (!m_bcPlayer) {
        t_BindWithoutPlayer();
        return true;
    }
    m_bcPlayer->BindToCurrentChannel();
    m_SetPlayState(E_STATE_CONNECTING, E_ERR_NONE);
    if (!m_scrambled) {
        LOG_TRACE("Set play state to presenting.");
        m_SetPlayState(E_STATE_PRESENTING, E_ERR_NONE);
    }
    LOG_TRACE("COipfVideoBroadcast::bindToCurrentChannel OK");
    return true;
}

// The page is told of the television's channel, also when it shows none: id 0 is asked for like any other.
void COipfVideoBroadcast::t_BindWithoutPlayer() {
    LOG_WARNING("bindToCurrentChannel failed to get m_bcPlayer");
    unsigned int id = 0;
    if (!m_pBrowserAPI || !m_pBrowserAPI->CurrentChannel(id)) id = 0;
    NPVariant channel = VoidVariant();
    NPObject* object = nullptr;
    if (t_CreateChannel(id, &object))
        channel = ObjectVariant(object);
    else
        t_ReleaseChannel(id);
    m_SendChChange(channel, E_ERR_INSUFFICIENT_RESOURCES);
    ReleaseVariant(*m_pNPNFuncs, channel);
    m_SetPlayState(E_STATE_UNREALIZED, E_ERR_INSUFFICIENT_RESOURCES);
}

bool COipfVideoBroadcast::m_Stop(const NPVariant*, std::uint32_t, NPVariant*) {
    if (!t_IsBroadcastRelated()) {
        LOG_WARNING("m_Stop - app is not broadcast related");
        return true;
    }
    m_lastRatingValid = false;
    if (!m_bcPlayer || (m_playState != E_STATE_CONNECTING && m_playState != E_STATE_PRESENTING)) {
        LOG_WARNING("CVBOEmbeddedObject::stop cannot stop in this state");
        return true;
    }
    m_bcPlayer->Stop();
    m_SetPlayState(E_STATE_STOPPED, E_ERR_NONE);
    return true;
}

bool COipfVideoBroadcast::m_Release(const NPVariant*, std::uint32_t, NPVariant*) {
    if (!t_IsBroadcastRelated())
        LOG_WARNING("m_Release - app is not broadcast related");
    else if (m_bcPlayer)
        m_ReleaseBroadcastPlayer();
    return true;
}

}  // namespace OipfVideoBroadcast
