// DSM-CC stream events: subscriptions from script, and delivery to script.
#include <list>

#include "debug/Log.h"
#include "javascript/CJSEvent.h"
#include "javascript/Variants.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

std::string BytesOf(const NPVariant& variant) {
    const NPString& text = variant.value.stringValue;
    return text.UTF8Characters ? std::string(text.UTF8Characters, text.UTF8Length) : std::string();
}

}  // namespace

// False when the arguments are of no use. `refused`: the page was told by an exception; otherwise its location could
// not be had, and the call fails.
bool COipfVideoBroadcast::t_StreamEventArguments(const char* member, const NPVariant* args, std::uint32_t argCount,
                                                 std::string& url, std::string& name, bool& refused) {
    LOG_TRACE("%s()", member);
    refused = true;
    if (argCount != 3) {
        t_SetException((std::string(member) + " invalid number of arguments").c_str());
        return false;
    }
    if (!IsString(args[0]) || !IsString(args[1]) || !IsObject(args[2])) {
        t_SetException((std::string(member) + " invalid arguments").c_str());
        return false;
    }
    refused = false;
    url = BytesOf(args[0]);
    if (!t_MakeAbsolutePath(url)) return false;
    name = BytesOf(args[1]);
    return true;
}

bool COipfVideoBroadcast::m_AddStreamEventListener(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    std::string url;
    std::string name;
    bool refused = false;
    if (!t_StreamEventArguments("m_AddStreamEventListener", args, argCount, url, name, refused)) return refused;
    NPObject* listener = args[2].value.objectValue;
    m_heldListeners.Hold(listener);
    m_streamEventHandler.AddEventListener(url.c_str(), name.c_str(), listener);
    if (!m_streamEventHandler.HoldsListener(listener)) m_heldListeners.Release(listener);
    return true;
}

bool COipfVideoBroadcast::m_RemoveStreamEventListener(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    std::string url;
    std::string name;
    bool refused = false;
    if (!t_StreamEventArguments("m_RemoveStreamEventListener", args, argCount, url, name, refused)) return refused;
    NPObject* listener = args[2].value.objectValue;
    m_heldListeners.Hold(listener);  // once more: given back with the listener's last entry
    m_streamEventHandler.RemoveEventListener(url.c_str(), name.c_str(), listener);
    if (!m_streamEventHandler.HoldsListener(listener)) m_heldListeners.Release(listener);
    return true;
}

void COipfVideoBroadcast::m_OnDsmEvent(const CDSMCCStreamEventData& event) {
    LOG_TRACE("[COipfVideoBroadcast::m_OnDsmEvent] ");
    std::list<NPObject*> listeners;
    NPObject* erased = m_streamEventHandler.GetStreamEventDataListeners(event, listeners);
    if (erased && !m_streamEventHandler.HoldsListener(erased)) m_heldListeners.Release(erased);
    for (NPObject* listener : listeners) m_HandleStreamEventCallback(listener, event);
    m_HandleStreamEventCallback(m_handlers[E_PROP_STREAM_EVENT], event);
}

void COipfVideoBroadcast::m_HandleStreamEventCallback(NPObject* listener, const CDSMCCStreamEventData& event) {
    LOG_TRACE("[%s] ", "m_HandleStreamEventCallback");
    if (!listener) {
        LOG_TRACE("[%s] there is no callback", "m_HandleStreamEventCallback");
        return;
    }
    const std::string text(event.data.begin(), event.data.end());
    std::string data;
    if (!event.data.empty())
        CStreamEventHandler::FormatHexData(event.data.data(), static_cast<unsigned int>(event.data.size()), data);
    const std::string status = CStreamEventHandler::FormatStatus(event.status);
    LOG_TRACE("[COipfVideoBroadcast::m_HandleStreamEventCallback] creating event id=%d, name=%s, data=%s, text=%s, "
              "status=%s",
              event.eventId, event.name.c_str(), data.c_str(), text.c_str(), status.c_str());

    m_pNPNFuncs->retainobject(listener);  // it may clear the property that it is called from
    if (CJSEvent* scriptEvent = t_CreateStreamEvent({event.name, data, text, status})) {
        if (m_npp) {
            const NPVariant argument = ObjectVariant(scriptEvent);
            NPVariant result = VoidVariant();
            if (m_pNPNFuncs->invokeDefault(m_npp, listener, &argument, 1, &result))
                ReleaseVariant(*m_pNPNFuncs, result);
        } else {
            LOG_WARNING("%s m_npp is NULL!", "m_HandleStreamEventCallback");
        }
        m_pNPNFuncs->releaseobject(scriptEvent);
    }
    m_pNPNFuncs->releaseobject(listener);
}

// A text that cannot be copied to the browser's memory leaves its property undefined.
CJSEvent* COipfVideoBroadcast::t_CreateStreamEvent(const std::array<std::string, 4>& values) {
    static constexpr std::array<const char*, 4> kNames{"name", "data", "text", "status"};
    std::array<NPVariant, 4> copies{};  // Void
    for (std::size_t i = 0; i < values.size(); ++i) t_BytesToNPVariant(values[i].data(), values[i].size(), copies[i]);
    CJSEvent* event = t_CreateEventObject(m_eventNames[E_PROP_STREAM_EVENT], this);
    if (!event) {
        LOG_WARNING("Failed to create DOM stream event object");
        for (NPVariant& copy : copies) ReleaseVariant(*m_pNPNFuncs, copy);
        return nullptr;
    }
    for (std::size_t i = 0; i < copies.size(); ++i) event->AddCustomProperty(kNames[i], new NPVariant(copies[i]));
    return event;
}

}  // namespace OipfVideoBroadcast
