#include "browser/host/adapter/RootObject.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "browser/host/adapter/HeldFunctions.h"
#include "browser/host/adapter/Observation.h"
#include "browser/host/adapter/PluginLibrary.h"

namespace adapter {

namespace {

// The plug-in's class with hooks of ours in it. The objects point to the base, so the hook finds the original behind it.
struct AdaptedClass : NPClass {
    const NPClass* original = nullptr;
};

// The instances whose objects are not invalidated.
std::map<NPObject*, NPP>& Living() {
    static auto* s_living = new std::map<NPObject*, NPP>;
    return *s_living;
}

const NPClass& Original(NPObject* object) {
    return *static_cast<AdaptedClass*>(object->_class)->original;
}

bool Replace(NPObject* object, NPVariant& value) {
    const auto living = Living().find(object);
    return living != Living().end() && ReplaceByHeld(living->second, value);
}

bool TakesUseCapture(NPIdentifier method) {
    static const NPIdentifier s_add = Browser().getstringidentifier("addEventListener");
    static const NPIdentifier s_remove = Browser().getstringidentifier("removeEventListener");
    return method == s_add || method == s_remove;
}

bool TakesListener(NPIdentifier method) {
    static const NPIdentifier s_add = Browser().getstringidentifier("addStreamEventListener");
    static const NPIdentifier s_remove = Browser().getstringidentifier("removeStreamEventListener");
    return method == s_add || method == s_remove || TakesUseCapture(method);
}

bool InvokeWithListener(NPObject* object, NPIdentifier method, std::vector<NPVariant> arguments, NPVariant* result) {
    std::vector<NPObject*> held;
    for (NPVariant& argument : arguments) {
        if (Replace(object, argument)) {
            held.push_back(argument.value.objectValue);
        }
    }
    if (arguments.size() == 2 && TakesUseCapture(method)) {
        arguments.push_back(NPVariant{NPVariantType_Bool, {}});
    }
    const bool done = Original(object).invoke(object, method, arguments.data(), std::uint32_t(arguments.size()),
                                              result);
    std::for_each(held.begin(), held.end(), Browser().releaseobject);
    return done;
}

bool Invoke(NPObject* object, NPIdentifier method, const NPVariant* arguments, std::uint32_t count,
            NPVariant* result) {
    ReportCall(method, arguments, count);
    if (TakesListener(method)) {
        return InvokeWithListener(object, method, {arguments, arguments + count}, result);
    }
    return Original(object).invoke(object, method, arguments, count, result);
}

bool SetProperty(NPObject* object, NPIdentifier name, const NPVariant* value) {
    NPVariant given = *value;
    const bool replaced = Replace(object, given);
    if (replaced) {
        NameHandler(given, name);
    }
    const bool done = Original(object).setProperty(object, name, &given);
    if (replaced) {
        Browser().releaseobject(given.value.objectValue);
    }
    return done;
}

bool GetProperty(NPObject* object, NPIdentifier name, NPVariant* result) {
    const bool done = Original(object).getProperty(object, name, result);
    if (done) {
        ReplaceByOriginal(*result);
    }
    return done;
}

// One adapted class for each original, for ever: Qt WebKit remembers per class what members its objects have.
NPClass* Adapted(NPClass* original) {
    static std::map<NPClass*, AdaptedClass> s_adapted;
    AdaptedClass& adapted = s_adapted[original];
    if (adapted.original == nullptr) {
        static_cast<NPClass&>(adapted) = *original;
        adapted.original = original;
        adapted.invoke = Invoke;
        adapted.setProperty = SetProperty;
        adapted.getProperty = GetProperty;
    }
    return &adapted;
}

bool IsComplete(const NPClass& scriptClass) {
    return scriptClass.invoke != nullptr && scriptClass.setProperty != nullptr && scriptClass.getProperty != nullptr;
}

bool IsAdapted(const NPObject* object) {
    return object->_class->invoke == Invoke;
}

}  // namespace

RootObject::RootObject(NPP npp) {
    const auto getValue = PluginFunctions().getvalue;
    if (getValue == nullptr || getValue(npp, NPPVpluginScriptableNPObject, &m_object) != NPERR_NO_ERROR) {
        m_object = nullptr;
    }
    if (m_object == nullptr) {
        return;
    }
    Living()[m_object] = npp;
    if (IsComplete(*m_object->_class) && !IsAdapted(m_object)) {
        m_object->_class = Adapted(m_object->_class);
    }
}

void RootObject::Invalidate() {
    NPObject* object = std::exchange(m_object, nullptr);
    if (object == nullptr) {
        return;
    }
    Living().erase(object);
    if (object->_class->invalidate != nullptr) {
        object->_class->invalidate(object);
    }
    Browser().releaseobject(object);
}

}  // namespace adapter
