// The play state machine, and the delivery of script events.
#include <array>

#include "debug/Log.h"
#include "javascript/CJSEvent.h"
#include "javascript/Decimal.h"
#include "javascript/Variants.h"
#include "platform/IJSChannelCache.h"
#include "videobroadcast/CEventArguments.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

constexpr std::size_t kStates = COipfVideoBroadcast::E_STATE_STOPPED + 1;

constexpr std::array<const char*, kStates> kStateNames{"E_STATE_UNREALIZED", "E_STATE_CONNECTING",
                                                       "E_STATE_PRESENTING", "E_STATE_STOPPED"};

constexpr bool no = false, yes = true;
constexpr bool kTransitions[][kStates] = {
    // to: UNREALIZED, CONNECTING, PRESENTING, STOPPED
    {no, yes, no, no},    // from UNREALIZED
    {yes, yes, yes, yes}, // from CONNECTING
    {yes, yes, no, yes},  // from PRESENTING
    {yes, yes, no, no},   // from STOPPED
};
static_assert(std::size(kTransitions) == kStates, "every state has its row");

// The names under which an Event carries the arguments. A wrong count is logged where there is a text for it.
struct EventRow {
    unsigned int id;
    std::size_t count;
    std::array<const char*, 4> names;
    const char* wrongCount;
};

constexpr EventRow kEvents[] = {
    {E_PROP_CH_CHANGE_ERROR, 2, {"channel", "errorState"}, "Wrong parameters for ChannelChangeError"},
    {E_PROP_CH_CHANGE_SUCCEEDED, 1, {"channel"}, "Wrong parameters for ChannelChangeSuccess"},
    {E_PROP_PLAY_STATE_CHANGE, 2, {"state", "error"}, nullptr},
    {E_PROP_PARENTAL_RATING_CHANGE, 3, {"contentID", "rating", "DRMSystemID"}, nullptr},
    {E_PROP_PARENTAL_RATING_ERROR, 3, {"contentID", "rating", "DRMSystemID"}, nullptr},
    {E_PROP_STREAM_EVENT, 4, {"name", "data", "text", "status"}, nullptr},
    {E_PROP_DRM_RIGHTS_ERROR, 4, {"errorState", "contentID", "DRMSystemID", "rightsIssuerURL"}, nullptr},
};

// Puts the arguments on the Event, which then owns their holders. False when it took none.
bool AddEventProperties(CJSEvent& event, unsigned int eventId, const std::vector<NPVariant*>& args) {
    for (const EventRow& row : kEvents) {
        if (row.id != eventId) continue;
        if (row.count != args.size()) {
            if (row.wrongCount) LOG_WARNING("%s", row.wrongCount);
            return false;
        }
        for (std::size_t i = 0; i < row.count; ++i) event.AddCustomProperty(row.names[i], args[i]);
        return true;
    }
    return false;
}

}  // namespace

void COipfVideoBroadcast::m_SetPlayState(EPlayState state, EChannelChangeError error) {
    const auto requested = static_cast<std::size_t>(state);
    LOG_TRACE("COipfVideoBroadcast::m_SetPlayState (%s) called (err %d)",
              requested < kStates ? kStateNames[requested] : "?", error);
    if (requested >= kStates || !kTransitions[m_playState][requested]) {
        LOG_WARNING("Invalid transition from %d to %d with (err %d)", m_playState, state, error);
        return;
    }
    if (state == E_STATE_CONNECTING) {
        if (m_playState == E_STATE_CONNECTING && error == m_lastError) {
            LOG_TRACE("Still in CONNECTING, and error is same as last error - do nothing");
            return;
        }
        m_lastError = error;
    }
    m_playState = state;
    if (!m_invalidated) {
        CEventArguments arguments(m_pNPNFuncs);
        arguments.Add(Int32Variant(state));
        arguments.Add(error == E_ERR_NONE ? VoidVariant() : Int32Variant(error));
        m_OnEvent(E_PROP_PLAY_STATE_CHANGE, arguments.List());
    }
    m_UpdateLayout();
    LOG_TRACE("COipfVideoBroadcast::m_SetPlayState OK");
}

// A Channel object that could not be made arrives as Void and is reported as undefined.
void COipfVideoBroadcast::m_SendChChange(NPVariant channel, EChannelChangeError error) {
    CEventArguments arguments(m_pNPNFuncs);
    if (IsObject(channel))
        arguments.Add(ObjectVariant(m_pNPNFuncs->retainobject(channel.value.objectValue)));
    else
        arguments.Add(channel.type == NPVariantType_Null ? NullVariant() : VoidVariant());
    if (error == E_ERR_NONE) {
        m_OnEvent(E_PROP_CH_CHANGE_SUCCEEDED, arguments.List());
        return;
    }
    arguments.Add(Int32Variant(error));
    m_OnEvent(E_PROP_CH_CHANGE_ERROR, arguments.List());
}

void COipfVideoBroadcast::m_SendChChange(unsigned int channelId, EChannelChangeError error) {
    NPVariant channel = VoidVariant();
    NPObject* object = nullptr;
    if (t_CreateChannel(channelId, &object)) {
        channel = ObjectVariant(object);
    } else {
        LOG_WARNING("Failed to create Channel object");
        t_ReleaseChannel(channelId);
    }
    m_SendChChange(channel, error);
    ReleaseVariant(*m_pNPNFuncs, channel);
}

// The page's Channel object of a channel that the platform named by id; it keeps the hold of the id.
bool COipfVideoBroadcast::t_CreateChannel(unsigned int channelId, NPObject** object) {
    return t_CreateJSObject("Channel", Decimal(channelId), true, object);
}

void COipfVideoBroadcast::t_ReleaseChannel(unsigned int channelId) {
    if (IJSChannelCache* cache = IJSChannelCache::Instance()) cache->ReleaseChannel(channelId);
}

void COipfVideoBroadcast::m_OnEvent(unsigned int eventId, std::vector<NPVariant*>& args) {
    if (!m_npp) {
        LOG_WARNING("%s m_npp is NULL!", "m_OnEvent");
        return;
    }
    CDelivery delivery(*this);
    LOG_TRACE("COipfVideoBroadcast::m_OnEvent(%d)", static_cast<int>(eventId));
    CJSEvent* event = nullptr;
    bool taken = false;
    if (eventId < E_SUSPEND) {
        const auto property = static_cast<EProperty>(eventId);
        if (NPObject* handler = m_handlers[property]) {
            LOG_TRACE("Invoke handler()");
            t_CallEventHandler(handler, args);
        }
        const std::string name = m_eventNames[property];
        LOG_TRACE("Create DOM Event for %s", name.c_str());
        event = t_CreateEventObject(name, this);
        if (event) {
            LOG_TRACE("Call Event listenters");
            taken = AddEventProperties(*event, eventId, args);
            t_CallEventListeners(name, event);
        }
    }
    for (NPVariant* argument : args) {
        ReleaseVariant(*m_pNPNFuncs, *argument);
        *argument = VoidVariant();  // the Event that owns it releases it once more
    }
    if (taken) args.clear();
    if (event) m_pNPNFuncs->releaseobject(event);
}

}  // namespace OipfVideoBroadcast
