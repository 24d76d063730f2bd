// The video, audio and subtitle components of the presented channel (OIPF DAE, clause 7.16.5).
#include "debug/Log.h"
#include "javascript/Variants.h"
#include "platform/IBroadcastPlayer.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace OipfVideoBroadcast {

using namespace OipfJavaScript;

namespace {

enum EComponentType : int { E_COMPONENT_VIDEO = 0, E_COMPONENT_AUDIO = 1, E_COMPONENT_SUBTITLE = 2 };

template <class Record>
std::vector<std::string> ParamsOf(const std::vector<Record>& records) {
    std::vector<std::string> params;
    for (const Record& record : records) params.push_back(record.ParamString());
    return params;
}

}  // namespace

bool COipfVideoBroadcast::m_GetComponents(const NPVariant* args, std::uint32_t argCount, NPVariant* result) {
    LOG_DETAIL("m_GetComponents() %d args", static_cast<int>(argCount));
    int type = 0;
    if (argCount >= 1 && t_NPVariantToInt(args[0], type) && m_playState != E_STATE_UNREALIZED && m_bcPlayer)
        m_GetComponents(type, result, false);
    else
        LOG_WARNING("m_GetComponents() invalid type, parameters or state");
    return true;
}

bool COipfVideoBroadcast::m_GetCurrentActiveComponents(const NPVariant* args, std::uint32_t argCount,
                                                       NPVariant* result) {
    LOG_DETAIL("%s() %d args", "m_GetCurrentActiveComponents", static_cast<int>(argCount));
    if (t_RefuseUnlessBroadcastRelated("m_GetCurrentActiveComponents - app is not broadcast related")) return true;
    int type = 0;
    if (argCount >= 1 && t_NPVariantToInt(args[0], type) && m_playState != E_STATE_UNREALIZED && m_bcPlayer)
        m_GetComponents(type, result, true);
    else
        LOG_WARNING("m_GetComponents() invalid type, parameters or state");
    return true;
}

void COipfVideoBroadcast::m_GetComponents(int type, NPVariant* result, bool activeOnly) {
    if (!m_npp) {
        LOG_WARNING("%s m_npp is NULL!", "m_GetComponents");
        return;
    }
    LOG_TRACE("m_GetComponents() type %d, active_only %d", type, activeOnly);
    NPObject* array = nullptr;
    if (!m_bcPlayer || !t_CreateJSObject("Array", "", false, &array)) {
        LOG_WARNING("m_GetComponents() failed to create Array.");
        return;
    }
    t_PushComponents(array, t_ComponentParams(type, activeOnly));
    *result = ObjectVariant(array);
}

// Creating script objects runs the page's code, so the player is asked for the list before that.
std::vector<std::string> COipfVideoBroadcast::t_ComponentParams(int type, bool activeOnly) {
    if (!m_bcPlayer) return {};
    if (type == E_COMPONENT_VIDEO) return ParamsOf(m_bcPlayer->GetVideoComponents(activeOnly));
    if (type == E_COMPONENT_AUDIO) return ParamsOf(m_bcPlayer->GetAudioComponents(activeOnly));
    if (type == E_COMPONENT_SUBTITLE) return ParamsOf(m_bcPlayer->GetSubtitleComponents(activeOnly));
    return {};
}

// A component whose object cannot be made leaves its position undefined.
void COipfVideoBroadcast::t_PushComponents(NPObject* array, const std::vector<std::string>& params) {
    std::vector<NPVariant> components(params.size(), VoidVariant());
    for (std::size_t i = 0; i < params.size(); ++i) {
        LOG_TRACE("Params : %s", params[i].c_str());
        NPObject* component = nullptr;
        if (t_CreateJSObject("AVComponent", params[i], true, &component)) components[i] = ObjectVariant(component);
    }
    NPVariant pushed = VoidVariant();
    const NPIdentifier push = m_pNPNFuncs->getstringidentifier("push");
    const auto count = static_cast<std::uint32_t>(components.size());
    if (m_npp && push && m_pNPNFuncs->invoke(m_npp, array, push, components.data(), count, &pushed)) {
        LOG_TRACE("%d AVComponents added to the array", static_cast<int>(count));
        ReleaseVariant(*m_pNPNFuncs, pushed);
    }
    for (NPVariant& component : components) {
        if (IsObject(component)) ReleaseVariant(*m_pNPNFuncs, component);
    }
}

bool COipfVideoBroadcast::t_AllowComponentChoice(const char* member, const NPVariant* args, std::uint32_t argCount) {
    if (!t_IsBroadcastRelated()) {
        LOG_WARNING("%s - app is not broadcast related", member);
        t_SetException("SecurityError");
        return false;
    }
    if (argCount >= 1 && IsObject(args[0])) return true;
    LOG_WARNING("%s() - incorrect arguments.", member);
    return false;
}

bool COipfVideoBroadcast::m_SelectComponent(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    if (!t_AllowComponentChoice("m_SelectComponent", args, argCount)) return true;
    NPObject& component = *args[0].value.objectValue;
    int type = -1, index = -1, pid = -1;
    if (!t_GetProperty("type", component, type)) return true;
    LOG_TRACE("AVComponent type is %d", type);
    if (t_GetProperty("index", component, index)) LOG_TRACE("AVComponent index is %d", index);
    if (type == E_COMPONENT_VIDEO) {
        t_GetProperty("pid", component, pid);
        LOG_TRACE("Video pid is %d", pid);
    }
    if (!m_bcPlayer) return true;
    if (type == E_COMPONENT_VIDEO) m_bcPlayer->SelectVideoComponent(static_cast<unsigned short>(pid));
    if (index == -1) return true;
    if (type == E_COMPONENT_AUDIO) m_bcPlayer->SelectAudioComponent(static_cast<unsigned int>(index));
    if (type == E_COMPONENT_SUBTITLE) m_bcPlayer->SelectSubtitleComponent(static_cast<unsigned int>(index));
    return true;
}

// Unlike selecting, a missing type or an index of -1 does not end the call early.
bool COipfVideoBroadcast::m_UnselectComponent(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    if (!t_AllowComponentChoice("m_UnselectComponent", args, argCount)) return true;
    NPObject& component = *args[0].value.objectValue;
    int type = -1, index = -1, pid = -1;
    if (t_GetProperty("index", component, index)) LOG_TRACE("AVComponent index is %d", index);
    t_GetProperty("type", component, type);
    LOG_TRACE("AVComponent type is %d", type);
    if (type == E_COMPONENT_VIDEO) {
        t_GetProperty("pid", component, pid);
        LOG_TRACE("Video pid is %d", pid);
    }
    if (!m_bcPlayer) return true;
    if (type == E_COMPONENT_VIDEO) m_bcPlayer->UnselectVideoComponent(static_cast<unsigned short>(pid));
    if (type == E_COMPONENT_AUDIO) m_bcPlayer->UnselectAudioComponent(static_cast<unsigned int>(index));
    if (type == E_COMPONENT_SUBTITLE) m_bcPlayer->UnselectSubtitleComponent(static_cast<unsigned int>(index));
    return true;
}

}  // namespace OipfVideoBroadcast
