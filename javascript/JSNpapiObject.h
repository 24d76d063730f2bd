// The NPClass through which the browser makes, uses and deletes script objects of a native class.
#pragma once

#include "javascript/JSNPObject.h"

namespace OipfJavaScript {

// T derives from JSNPObject and has a constructor T(NPP, NPNetscapeFuncs*). There is one static NPClass for each T:
// browsers remember per class which names it knows.
template <class T>
class JSNpapiObject {
public:
    JSNpapiObject() = delete;

    static NPClass s_npclass;
    // Handed to new objects; set by whoever makes the first object of T.
    static NPNetscapeFuncs* s_pNPNFuncs;

private:
    static T* Object(NPObject* object) { return static_cast<T*>(object); }

    // Whatever script does during the call, the object lives until its end. No C++ exception reaches the browser.
    template <class Operation>
    static bool Held(NPObject* object, Operation operation) noexcept {
        if (!object) return false;
        try {
            CSelfHold hold(*Object(object));
            return operation(*Object(object));
        } catch (...) {
            return false;
        }
    }

    static NPObject* s_Allocate(NPP npp, NPClass*) noexcept {
        try {
            return new T(npp, s_pNPNFuncs);
        } catch (...) {
            return nullptr;
        }
    }
    static void s_Deallocate(NPObject* object) { delete Object(object); }
    static void s_Invalidate(NPObject* object) {
        if (object) Object(object)->Invalidate();
    }
    static bool s_HasMethod(NPObject* object, NPIdentifier name) { return object && Object(object)->HasMethod(name); }
    static bool s_Invoke(NPObject* object, NPIdentifier name, const NPVariant* args, std::uint32_t count,
                         NPVariant* result) {
        return Held(object, [=](T& held) { return held.Invoke(name, args, count, result); });
    }
    static bool s_InvokeDefault(NPObject* object, const NPVariant* args, std::uint32_t count, NPVariant* result) {
        return Held(object, [=](T& held) { return held.InvokeDefault(args, count, result); });
    }
    static bool s_HasProperty(NPObject* object, NPIdentifier name) {
        return object && Object(object)->HasProperty(name);
    }
    static bool s_GetProperty(NPObject* object, NPIdentifier name, NPVariant* result) {
        return Held(object, [=](T& held) { return held.GetProperty(name, result); });
    }
    static bool s_SetProperty(NPObject* object, NPIdentifier name, const NPVariant* value) {
        return Held(object, [=](T& held) { return held.SetProperty(name, value); });
    }
    static bool s_RemoveProperty(NPObject* object, NPIdentifier name) {
        return Held(object, [=](T& held) { return held.RemoveProperty(name); });
    }
    static bool s_Enumerate(NPObject* object, NPIdentifier** names, std::uint32_t* count) {
        return Held(object, [=](T& held) { return held.Enumerate(names, count); });
    }
    static bool s_Construct(NPObject* object, const NPVariant* args, std::uint32_t count, NPVariant* result) {
        return Held(object, [=](T& held) { return held.Construct(args, count, result); });
    }
};

template <class T>
NPNetscapeFuncs* JSNpapiObject<T>::s_pNPNFuncs = nullptr;

template <class T>
NPClass JSNpapiObject<T>::s_npclass = {NP_CLASS_STRUCT_VERSION_CTOR,
                                       s_Allocate,
                                       s_Deallocate,
                                       s_Invalidate,
                                       s_HasMethod,
                                       s_Invoke,
                                       s_InvokeDefault,
                                       s_HasProperty,
                                       s_GetProperty,
                                       s_SetProperty,
                                       s_RemoveProperty,
                                       s_Enumerate,
                                       s_Construct};

}  // namespace OipfJavaScript
