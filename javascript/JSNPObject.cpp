#include "javascript/JSNPObject.h"

#include <memory>
#include <string>
#include <utility>

#include "debug/Log.h"
#include "javascript/CJSEvent.h"
#include "javascript/Variants.h"
#include "platform/CDAEBrowserAPI.h"

namespace OipfJavaScript {

JSNPObject::JSNPObject(const std::string& className, NPP npp, NPNetscapeFuncs* funcs)
    : NPObject{},
      m_pNPNFuncs(funcs),
      m_npp(npp),
      m_defaultPrefix("__OIPF_DEFAULT_"),
      m_pBrowserAPI(CDAEBrowserAPI::Instance()),
      m_className(className) {
    t_RegisterMethod("addEventListener", make_method(this, &JSNPObject::m_AddEventListenter));
    t_RegisterMethod("removeEventListener", make_method(this, &JSNPObject::m_RemoveEventListener));
    t_RegisterMethod("toString", make_method(this, &JSNPObject::m_ToString));
}

JSNPObject::~JSNPObject() {
    m_npp = nullptr;
    for (CJSEvent* event : m_livingEvents) event->t_ForgetTarget();
    t_ReleaseArgumentCopies();

    const auto drop = [this](NPVariant* value) {
        ReleaseVariant(*m_pNPNFuncs, *value);
        delete value;
    };
    for (const auto& [name, value] : std::exchange(m_customProperties, {})) drop(value);
    for (NPVariant* value : std::exchange(m_unnamedValues, {})) drop(value);
    for (const auto& [name, functor] : std::exchange(m_properties, {})) delete functor;
    for (const auto& [name, functor] : std::exchange(m_methods, {})) delete functor;
}

void JSNPObject::Invalidate() {
    LOG_TRACE("JSNPObject::Invalidate() %p %d", static_cast<void*>(this), static_cast<int>(referenceCount));
    m_npp = nullptr;
}

bool JSNPObject::InvokeDefault(const NPVariant*, std::uint32_t, NPVariant*) {
    LOG_TRACE("JSNPObject::InvokeDefault() %p", static_cast<void*>(this));
    return false;
}

bool JSNPObject::RemoveProperty(NPIdentifier) {
    LOG_TRACE("JSNPObject::RemoveProperty()");
    return false;
}

bool JSNPObject::Enumerate(NPIdentifier**, std::uint32_t*) {
    LOG_TRACE("JSNPObject::Enumerate()");
    return false;
}

bool JSNPObject::Construct(const NPVariant*, std::uint32_t, NPVariant*) {
    LOG_TRACE("JSNPObject::Construct()");
    return false;
}

void JSNPObject::SetWindow(NPWindow*) {}
void JSNPObject::SetAttributes(std::int16_t, char**, char**) {}
void JSNPObject::SetMimeType(char*) {}
std::int16_t JSNPObject::HandleEvent(void*) { return 0; }
NPError JSNPObject::NewStream(NPStream*) { return NPERR_INVALID_PARAM; }
NPError JSNPObject::DestroyStream(NPStream*, NPReason) { return NPERR_INVALID_PARAM; }
std::int32_t JSNPObject::WriteReady(NPStream*) { return -1; }
std::int32_t JSNPObject::Write(NPStream*, std::int32_t, std::int32_t, void*) { return -1; }

bool JSNPObject::HasMethod(NPIdentifier name) { return m_methodNames.contains(name); }

bool JSNPObject::Invoke(NPIdentifier name, const NPVariant* args, std::uint32_t argCount, NPVariant* result) {
    if (!m_methodNames.contains(name)) {
        LOG_WARNING("Invoke() failed");
        return false;
    }
    const auto method = m_methods.find(name);
    if (method == m_methods.end() || !method->second) {
        LOG_WARNING("Invoke() functor NOT found");
        return false;
    }
    return (*method->second)(args, argCount, result);
}

bool JSNPObject::HasProperty(NPIdentifier name) {
    return m_customProperties.contains(name) || m_propertyNames.contains(name);
}

bool JSNPObject::GetProperty(NPIdentifier name, NPVariant* result) {
    if (const auto custom = m_customProperties.find(name); custom != m_customProperties.end())
        return t_CopyCustomProperty(*custom->second, result);
    if (!m_propertyNames.contains(name)) {
        LOG_WARNING("GetProperty() failed");
        return false;
    }
    const auto property = m_properties.find(name);
    if (property == m_properties.end() || !property->second) {
        LOG_WARNING("GetProperty() has no functor!");
        return false;
    }
    return property->second->GetProp(result);
}

bool JSNPObject::t_CopyCustomProperty(const NPVariant& stored, NPVariant* result) {
    if (IsString(stored)) {
        const NPString& text = stored.value.stringValue;
        t_BytesToNPVariant(text.UTF8Characters, text.UTF8Length, *result);
        return true;
    }
    if (IsObject(stored)) m_pNPNFuncs->retainobject(stored.value.objectValue);
    *result = stored;
    return true;
}

bool JSNPObject::SetProperty(NPIdentifier name, const NPVariant* value) {
    if (!m_propertyNames.contains(name)) {
        LOG_WARNING("SetProperty() failed");
        return false;
    }
    const auto property = m_properties.find(name);
    if (property == m_properties.end() || !property->second) {
        LOG_WARNING("SetProperty() has NO functor");
        return false;
    }
    return property->second->SetProp(value);
}

// Should there be no memory, the value stays the caller's.
void JSNPObject::AddCustomProperty(std::string_view name, NPVariant* value) {
    if (const NPIdentifier id = t_IdentifierOf(name))
        m_customProperties[id] = value;
    else
        m_unnamedValues.push_back(value);
}

NPIdentifier JSNPObject::t_IdentifierOf(std::string_view name) {
    return m_pNPNFuncs->getstringidentifier(std::string(name).c_str());
}

void JSNPObject::t_RegisterProperty(std::string_view name, IPropertyFunctor* functor) {
    std::unique_ptr<IPropertyFunctor> owned(functor);
    const NPIdentifier id = t_IdentifierOf(name);
    if (!id) return;
    m_propertyNames[id] = name;
    IPropertyFunctor*& registered = m_properties[id];
    delete std::exchange(registered, owned.release());
}

void JSNPObject::t_RegisterMethod(std::string_view name, IMethodFunctor* functor) {
    std::unique_ptr<IMethodFunctor> owned(functor);
    const NPIdentifier id = t_IdentifierOf(name);
    if (!id) return;
    m_methodNames[id] = name;
    IMethodFunctor*& registered = m_methods[id];
    delete std::exchange(registered, owned.release());
}

void JSNPObject::t_RegisterConstant(std::string_view name, int value) {
    auto owned = std::make_unique<NPVariant>(Int32Variant(value));
    AddCustomProperty(name, owned.get());
    owned.release();
}

bool JSNPObject::m_ToString(const NPVariant*, std::uint32_t, NPVariant* result) {
    t_StringToNPVariant(m_className, *result);
    return true;
}

void JSNPObject::t_SetException(const char* text) { m_pNPNFuncs->setexception(this, text); }

void JSNPObject::t_LogInvalidated(const char* operation) {
    LOG_WARNING("%s, Object has been invalidated! (m_npp is NULL)", operation);
}

CSelfHold::CSelfHold(JSNPObject& object)
    : m_funcs(object.m_pNPNFuncs), m_object(object.m_npp && object.referenceCount > 0 ? &object : nullptr) {
    if (m_object) m_funcs->retainobject(m_object);
}

CSelfHold::~CSelfHold() {
    if (m_object) m_funcs->releaseobject(m_object);
}

}  // namespace OipfJavaScript
