#include "javascript/CJSEvent.h"

#include "javascript/Variants.h"

namespace OipfJavaScript {

CJSEvent::CJSEvent(NPP npp, NPNetscapeFuncs* funcs) : JSNPObject("[object Event]", npp, funcs) {
    t_RegisterProperty("type", make_property(this, &CJSEvent::m_GetType));
    t_RegisterProperty("target", make_property(this, &CJSEvent::m_GetTarget));
    t_RegisterProperty("currentTarget", make_property(this, &CJSEvent::m_GetCurrentTarget));
    t_RegisterProperty("eventPhase", make_property(this, &CJSEvent::m_GetEventPhase));
    t_RegisterProperty("bubbles", make_property(this, &CJSEvent::m_GetBubble));
    t_RegisterProperty("cancelable", make_property(this, &CJSEvent::m_GetCancelable));
    t_RegisterProperty("namespaceURI", make_property(this, &CJSEvent::m_GetNamespaceURI));
}

CJSEvent::~CJSEvent() {
    if (m_followed) m_followed->m_livingEvents.erase(this);
}

void CJSEvent::Set(const std::string& type, NPObject* target) {
    m_type = type;
    m_target = target;
}

void CJSEvent::t_FollowTarget(JSNPObject& target) {
    m_followed = &target;
    target.m_livingEvents.insert(this);
}

void CJSEvent::t_ForgetTarget() {
    if (m_target == m_followed) m_target = nullptr;
    m_followed = nullptr;
}

bool CJSEvent::m_GetType(NPVariant* result) { return t_StringToNPVariant(m_type, *result); }

bool CJSEvent::m_GetTarget(NPVariant* result) {
    *result = m_target ? ObjectVariant(m_pNPNFuncs->retainobject(m_target)) : NullVariant();
    return true;
}

bool CJSEvent::m_GetCurrentTarget(NPVariant* result) { return m_GetTarget(result); }

bool CJSEvent::m_GetEventPhase(NPVariant* result) {
    constexpr std::int32_t kAtTarget = 2;
    *result = Int32Variant(kAtTarget);
    return true;
}

bool CJSEvent::m_GetBubble(NPVariant* result) {
    *result = BoolVariant(false);
    return true;
}

bool CJSEvent::m_GetCancelable(NPVariant* result) {
    *result = BoolVariant(false);
    return true;
}

bool CJSEvent::m_GetNamespaceURI(NPVariant* result) { return t_StringToNPVariant(m_namespaceURI, *result); }

}  // namespace OipfJavaScript
