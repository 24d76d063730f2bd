// Event listeners, and the calls that events make into script.
#include <algorithm>
#include <utility>

#include "debug/Log.h"
#include "javascript/CJSEvent.h"
#include "javascript/JSNPObject.h"
#include "javascript/JSNpapiObject.h"
#include "javascript/Variants.h"

namespace OipfJavaScript {

bool JSNPObject::t_AllowEventListener() { return true; }

bool JSNPObject::t_ListenerArguments(const char* method, const NPVariant* args, std::uint32_t argCount,
                                     std::string& type) {
    if (argCount != 3) {
        LOG_WARNING("%s() wrong number of args", method);
        return false;
    }
    if (!IsString(args[0]) || !IsObject(args[1]) || args[2].type != NPVariantType_Bool) {
        LOG_WARNING("%s() wrong type of args", method);
        return false;
    }
    LOG_TRACE("%s correct args", method);
    t_NPVariantToString(args[0], type, true);
    LOG_DETAIL("type %s, object %p, useCapture %s", type.c_str(), static_cast<void*>(args[1].value.objectValue),
               args[2].value.boolValue ? "true" : "false");
    return true;
}

bool JSNPObject::m_AddEventListenter(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    if (!t_AllowEventListener()) return true;
    std::string type;
    if (!t_ListenerArguments("addEventListener", args, argCount, type)) return false;

    NPObject* listener = args[1].value.objectValue;
    const auto [first, last] = m_listeners.equal_range(type);
    if (std::any_of(first, last, [listener](const auto& entry) { return entry.second == listener; })) {
        LOG_TRACE("EventListener already added");
        return true;
    }
    LOG_TRACE("EventListener added");
    m_listeners.emplace(type, listener);
    m_pNPNFuncs->retainobject(listener);
    return true;
}

bool JSNPObject::m_RemoveEventListener(const NPVariant* args, std::uint32_t argCount, NPVariant*) {
    LOG_ERROR("JSNPObject::m_RemoveEventListener");
    if (!t_AllowEventListener()) return true;
    std::string type;
    if (!t_ListenerArguments("removeEventListener", args, argCount, type)) return false;

    NPObject* listener = args[1].value.objectValue;
    const auto [first, last] = m_listeners.equal_range(type);
    const auto found = std::find_if(first, last, [listener](const auto& entry) { return entry.second == listener; });
    if (found == last) return false;
    LOG_TRACE("Remove %s EventListener()", type.c_str());
    m_listeners.erase(found);
    m_pNPNFuncs->releaseobject(listener);  // last: a release can run anything
    return true;
}

CJSEvent* JSNPObject::t_CreateEventObject(const std::string& type, NPObject* target) {
    LOG_TRACE("CreateEventObject \"%s\"", type.c_str());
    if (!m_npp) {
        t_LogInvalidated("t_CreateEventObject");
        return nullptr;
    }
    if (!JSNpapiObject<CJSEvent>::s_pNPNFuncs) JSNpapiObject<CJSEvent>::s_pNPNFuncs = m_pNPNFuncs;
    NPObject* created = m_pNPNFuncs->createobject(m_npp, &JSNpapiObject<CJSEvent>::s_npclass);
    if (!created) {
        LOG_WARNING("CreateEventObject failed");
        return nullptr;
    }
    auto* event = static_cast<CJSEvent*>(created);
    event->Set(type, target);
    if (target == this) event->t_FollowTarget(*this);
    return event;
}

void JSNPObject::t_CallEventListeners(const std::string& type, NPObject* eventObject) {
    LOG_TRACE("CallEventListeners \"%s\"", type.c_str());
    if (!m_npp) {
        t_LogInvalidated("t_CallEventListeners");
        return;
    }
    std::vector<NPObject*> listeners;
    const auto [first, last] = m_listeners.equal_range(type);
    for (auto entry = first; entry != last; ++entry)
        listeners.push_back(m_pNPNFuncs->retainobject(entry->second));
    LOG_DETAIL("There are %d callbacks for this event", static_cast<int>(listeners.size()));

    const NPP npp = m_npp;
    const NPVariant argument = eventObject ? ObjectVariant(eventObject) : NullVariant();
    for (NPObject* listener : listeners) {
        LOG_TRACE("Invoke %s EventListener", type.c_str());
        if (m_npp == npp) {
            NPVariant result = VoidVariant();
            if (m_pNPNFuncs->invokeDefault(npp, listener, &argument, 1, &result))
                ReleaseVariant(*m_pNPNFuncs, result);
        } else {
            LOG_WARNING("JSNPObject deleted?");
        }
        m_pNPNFuncs->releaseobject(listener);
    }
}

void JSNPObject::t_CallEventHandler(NPObject* handler, std::vector<NPVariant*>& args) {
    if (!m_npp) {
        t_LogInvalidated("t_CallEventHandler");
        return;
    }
    CDelivery delivery(*this);
    std::vector<NPVariant> copies;
    copies.reserve(args.size());
    for (const NPVariant* argument : args) copies.push_back(t_CopyArgument(*argument));
    m_argumentCopies.insert(m_argumentCopies.end(), copies.begin(), copies.end());

    const NPP npp = m_npp;
    NPVariant result = VoidVariant();
    m_pNPNFuncs->retainobject(handler);  // it may clear the property that it is called from
    const bool called = m_pNPNFuncs->invokeDefault(npp, handler, copies.data(),
                                                   static_cast<std::uint32_t>(copies.size()), &result);
    if (m_npp != npp) LOG_WARNING("JSNPObject deleted? %p %p", static_cast<void*>(npp), static_cast<void*>(m_npp));
    if (called) ReleaseVariant(*m_pNPNFuncs, result);
    m_pNPNFuncs->releaseobject(handler);
}

// A copy that cannot be allocated is Void.
NPVariant JSNPObject::t_CopyArgument(const NPVariant& argument) {
    if (IsString(argument)) {
        NPVariant copy = VoidVariant();
        const NPString& text = argument.value.stringValue;
        t_BytesToNPVariant(text.UTF8Characters, text.UTF8Length, copy);
        return copy;
    }
    if (IsObject(argument)) m_pNPNFuncs->retainobject(argument.value.objectValue);
    return argument;
}

void JSNPObject::t_ReleaseArgumentCopies() {
    for (NPVariant& copy : std::exchange(m_argumentCopies, {})) {
        if (IsString(copy) || IsObject(copy)) ReleaseVariant(*m_pNPNFuncs, copy);
    }
}

JSNPObject::CDelivery::~CDelivery() {
    if (--m_object.m_deliveries == 0) m_object.t_ReleaseArgumentCopies();
}

}  // namespace OipfJavaScript
