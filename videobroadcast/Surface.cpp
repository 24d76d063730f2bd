// What script sees on the object, and the object's construction.
#include <array>
#include <cstring>
#include <utility>

#include "debug/Log.h"
#include "javascript/Decimal.h"
#include "javascript/Variants.h"
#include "platform/CDAEBrowserAPI.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

struct HandlerRow {
    EProperty property;
    const char* name;
    const char* eventType;
    const char* getterLog;
    const char* setterLog;
};

// In the order in which they are registered.
constexpr std::array<HandlerRow, 11> kHandlers{{
    {E_PROP_CH_CHANGE_ERROR, "onChannelChangeError", "ChannelChangeError", "m_GetOnChChangeErr()",
     "m_SetOnChChangeErr()"},
    {E_PROP_CH_CHANGE_SUCCEEDED, "onChannelChangeSucceeded", "ChannelChangeSucceeded", "m_GetOnChChangeSucceeded()",
     "m_SetOnChChangeSucceeded()"},
    {E_PROP_PLAY_STATE_CHANGE, "onPlayStateChange", "PlayStateChange", "m_GetOnPlayStateCh()",
     "m_SetOnPlayStateCh()"},
    {E_PROP_FULL_SCREEN_CHANGE, "onFullScreenChange", "FullScreenChange", "m_GetOnFullScreenCh()",
     "m_SetOnFullScreenCh()"},
    {E_PROP_FOCUS, "onFocus", "Focus", "m_GetOnFocus()", "m_SetOnFocus()"},
    {E_PROP_BLUR, "onBlur", "Blur", "m_GetOnBlur()", "m_SetOnBlur()"},
    {E_PROP_PROGRAMMES_CHANGED, "onProgrammesChanged", "ProgrammesChanged", "m_GetOnProgrammesCh()",
     "m_SetOnProgrammesCh()"},
    {E_PROP_PARENTAL_RATING_CHANGE, "onParentalRatingChange", "ParentalRatingChange", "m_GetOnParentalRatingCh()",
     "m_SetOnParentalRatingCh()"},
    {E_PROP_PARENTAL_RATING_ERROR, "onParentalRatingError", "ParentalRatingError", "m_GetOnParentalRatingErr()",
     "m_SetOnParentalRatingErr()"},
    {E_PROP_DRM_RIGHTS_ERROR, "onDRMRightsError", "DrmRightsError", "m_GetOnDrmRightsErr()", "m_SetOnDrmRightsErr()"},
    {E_PROP_STREAM_EVENT, "onStreamEvent", "StreamEvent", "m_GetOnStreamEvent()", "m_SetOnStreamEvent()"},
}};

constexpr const HandlerRow& RowOf(EProperty property) {
    std::size_t row = 0;
    while (kHandlers[row].property != property) ++row;
    return kHandlers[row];
}

// The browser's own variable for "this is the broadcast plug-in"; no NPAPI header has it.
constexpr auto kPluginOipfPluginBool = static_cast<NPPVariable>(3001);

}  // namespace

const char* COipfVideoBroadcast::PluginDescription() { return "video/broadcast::OIPF Video Broadcast Plugin"; }

COipfVideoBroadcast::COipfVideoBroadcast(NPP npp, NPNetscapeFuncs* browserFuncs)
    : JSNPObject("[OIPF video/broadcast]", npp, browserFuncs), m_heldListeners(browserFuncs) {
    LOG_TRACE("COipfVideoBroadcast::COipfVideoBroadcast(%p) -> %p", static_cast<void*>(npp), static_cast<void*>(this));
    s_mutex.Create();
    {
        CLock lock(s_mutex);
        s_vboInstances.push_back(this);
    }
    try {
        m_defaultPrefix = "__OIPF_VBO_" + Decimal(reinterpret_cast<std::uintptr_t>(this));
        t_RegisterProperties();
        t_RegisterMethods();
        t_SetBrowserValues();
        t_MarkPage();
        t_RegisterStreamEvents();
    } catch (...) {
        t_Forget();
        if (!m_dsmcc) t_RegisterStreamEvents();  // the registry of listeners gives one registration back at its end
        throw;
    }
}

struct COipfVideoBroadcast::SurfaceRow {
    const char* name;
    bool (COipfVideoBroadcast::*method)(const NPVariant*, std::uint32_t, NPVariant*);
};

void COipfVideoBroadcast::t_RegisterProperties() {
    using This = COipfVideoBroadcast;
    t_RegisterProperty("width", make_property(this, &This::m_GetWidth, &This::m_SetWidth));
    t_RegisterProperty("height", make_property(this, &This::m_GetHeight, &This::m_SetHeight));
    t_RegisterProperty("fullscreen", make_property(this, &This::m_GetFullScreen));
    t_RegisterHandlers(std::make_index_sequence<kHandlers.size()>());
    t_RegisterProperty("playState", make_property(this, &This::m_GetPlayState));
    t_RegisterProperty("programmes", make_property(this, &This::m_GetProgrammes));
    t_RegisterProperty("currentChannel", make_property(this, &This::m_GetCurrCh));
}

template <std::size_t... rows>
void COipfVideoBroadcast::t_RegisterHandlers(std::index_sequence<rows...>) {
    (t_RegisterHandler<kHandlers[rows].property>(), ...);
}

template <EProperty property>
void COipfVideoBroadcast::t_RegisterHandler() {
    constexpr const HandlerRow& row = RowOf(property);
    t_RegisterProperty(row.name, make_property(this, &COipfVideoBroadcast::m_GetHandler<property>,
                                               &COipfVideoBroadcast::m_SetHandler<property>));
    m_eventNames[property] = row.eventType;
}

void COipfVideoBroadcast::t_RegisterMethods() {
    using This = COipfVideoBroadcast;
    static constexpr SurfaceRow kMethods[] = {
        {"getChannelConfig", &This::m_GetChannelConfig},
        {"bindToCurrentChannel", &This::m_BindToCurrentCh},
        {"createChannelObject", &This::m_CreateChannelObj},
        {"setChannel", &This::m_SetChannel},
        {"prevChannel", &This::m_PrevChannel},
        {"nextChannel", &This::m_NextChannel},
        {"setFullScreen", &This::m_SetFullScreen},
        {"setVolume", &This::m_SetVolume},
        {"getVolume", &This::m_GetVolume},
        {"release", &This::m_Release},
        {"stop", &This::m_Stop},
        {"getComponents", &This::m_GetComponents},
        {"getCurrentActiveComponents", &This::m_GetCurrentActiveComponents},
        {"selectComponent", &This::m_SelectComponent},
        {"unselectComponent", &This::m_UnselectComponent},
        {"addStreamEventListener", &This::m_AddStreamEventListener},
        {"removeStreamEventListener", &This::m_RemoveStreamEventListener},
    };
    for (const SurfaceRow& row : kMethods) t_RegisterMethod(row.name, make_method(this, row.method));
    t_RegisterConstant("COMPONENT_TYPE_VIDEO", 0);
    t_RegisterConstant("COMPONENT_TYPE_AUDIO", 1);
    t_RegisterConstant("COMPONENT_TYPE_SUBTITLE", 2);
}

// The values travel in the pointer.
void COipfVideoBroadcast::t_SetBrowserValues() {
    const auto no = static_cast<void*>(nullptr);
    const auto yes = reinterpret_cast<void*>(std::uintptr_t{1});
    m_pNPNFuncs->setvalue(m_npp, NPPVpluginWindowBool, no);
    m_pNPNFuncs->setvalue(m_npp, NPPVpluginTransparentBool, no);
    const NPError error = m_pNPNFuncs->setvalue(m_npp, kPluginOipfPluginBool, yes);
    LOG_TRACE("Called setvalue with NPPVpluginOIPFPluginBool (%d), err %d", static_cast<int>(kPluginOipfPluginBool),
              error);
}

// Every live object marks its id as a true-valued global of the page.
void COipfVideoBroadcast::t_MarkPage() {
    NPObject* window = nullptr;
    const bool succeeded = m_pNPNFuncs->getvalue(m_npp, NPNVWindowNPObject, &window) == NPERR_NO_ERROR;
    if (!succeeded) window = nullptr;
    LOG_TRACE("get window object %s referenceCount %d", succeeded ? "success" : "fail",
              window ? static_cast<int>(window->referenceCount) : -1);
    if (!window) return;

    LOG_TRACE("Plugin ID is \"%s\"", m_defaultPrefix.c_str());
    const std::string script = "window." + m_defaultPrefix + " = true;";
    LOG_TRACE("Evaluate script \"%s\"", script.c_str());
    NPVariant result = VoidVariant();
    const bool evaluated = t_Evaluate(window, script, result);
    std::uint32_t word = 0;
    std::memcpy(&word, &result.value, sizeof word);
    LOG_TRACE("Evaluate %s", evaluated ? "succeeded" : "failed");
    LOG_TRACE("Object? %s", word != 0 ? "YES" : "NO");
    if (evaluated) ReleaseVariant(*m_pNPNFuncs, result);
    LOG_TRACE("Release window object");
    m_pNPNFuncs->releaseobject(window);
}

void COipfVideoBroadcast::t_RegisterStreamEvents() {
    static const DSMCCStreamEventCallback kCallback = &COipfVideoBroadcast::DsmEventCallback;
    m_dsmcc = DSMCCProtocol_GetInstance();
    if (!m_dsmcc) {
        LOG_ERROR("Failed to access DSM-CC");
        return;
    }
    m_dsmcc->RegisterStreamEventCallback("COipfVideoBroadcast", kCallback);
}

template <EProperty property>
bool COipfVideoBroadcast::m_GetHandler(NPVariant* result) {
    LOG_TRACE("%s", RowOf(property).getterLog);
    return m_GetProperty(property, result);
}

template <EProperty property>
bool COipfVideoBroadcast::m_SetHandler(const NPVariant* value) {
    LOG_TRACE("%s", RowOf(property).setterLog);
    return m_SetProperty(property, value);
}

bool COipfVideoBroadcast::m_GetProperty(EProperty property, NPVariant* result) {
    NPObject* handler = m_handlers[property];
    if (!handler) {
        LOG_TRACE("property has not been set!");
        return false;
    }
    LOG_TRACE("property has been set!");
    *result = ObjectVariant(m_pNPNFuncs->retainobject(handler));
    return true;
}

bool COipfVideoBroadcast::m_SetProperty(EProperty property, const NPVariant* value) {
    if (property < E_PROP_CH_CHANGE_ERROR || property > E_PROP_DRM_RIGHTS_ERROR) {
        LOG_WARNING("m_SetProperty on invalid property %d", static_cast<int>(property));
        return false;
    }
    const bool clears = value->type == NPVariantType_Void || value->type == NPVariantType_Null;
    if (!clears && !IsObject(*value)) {
        LOG_WARNING("Set property - value is not an object, null or undefined");
        t_SetException("value is not an object");
        return true;
    }
    if (NPObject* held = std::exchange(m_handlers[property], nullptr)) {
        LOG_TRACE("Release current property");
        m_pNPNFuncs->releaseobject(held);
    }
    if (clears) {
        LOG_TRACE("Set property to NULL");
        return true;
    }
    m_handlers[property] = value->value.objectValue;
    m_pNPNFuncs->retainobject(value->value.objectValue);
    LOG_TRACE("Set NPObject %p", static_cast<void*>(value->value.objectValue));
    return true;
}

bool COipfVideoBroadcast::t_IsBroadcastRelated() {
    CDAEBrowserAPI* api = CDAEBrowserAPI::Instance();
    return api && api->IsBroadcastRelated();
}

bool COipfVideoBroadcast::t_AllowEventListener() {
    if (t_IsBroadcastRelated()) return true;
    LOG_WARNING("%s() - app is not broadcast related", "t_AllowEventListener");
    t_SetException("SecurityError");
    return false;
}

// True, with the script exception raised, when the page may not use the broadcast.
bool COipfVideoBroadcast::t_RefuseUnlessBroadcastRelated(const char* logLine) {
    if (t_IsBroadcastRelated()) return false;
    LOG_WARNING("%s", logLine);
    t_SetException("SecurityError");
    return true;
}

}  // namespace OipfVideoBroadcast
