// The DOM Event object that listeners get (DOM Level 2 Events, clause 1.4).
#pragma once

#include <string>

#include "javascript/JSNPObject.h"

namespace OipfJavaScript {

class CJSEvent : public JSNPObject {
public:
    CJSEvent(NPP npp, NPNetscapeFuncs* funcs);
    ~CJSEvent() override;

    // The target is not retained.
    void Set(const std::string& type, NPObject* target);

    // The target, an object of ours, tells this event when it dies; "target" is null from then on.
    void t_FollowTarget(JSNPObject& target);
    void t_ForgetTarget();

private:
    bool m_GetType(NPVariant* result);
    bool m_GetTarget(NPVariant* result);
    bool m_GetCurrentTarget(NPVariant* result);
    bool m_GetEventPhase(NPVariant* result);
    bool m_GetBubble(NPVariant* result);
    bool m_GetCancelable(NPVariant* result);
    bool m_GetNamespaceURI(NPVariant* result);

    NPObject* m_target = nullptr;
    std::string m_type;
    std::string m_namespaceURI;
    JSNPObject* m_followed = nullptr;
};

}  // namespace OipfJavaScript
