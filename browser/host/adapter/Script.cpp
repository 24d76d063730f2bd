#include "browser/host/adapter/Script.h"

#include "browser/host/adapter/PluginLibrary.h"

namespace adapter {

namespace {

NPVariant Void() {
    return NPVariant{NPVariantType_Void, {}};
}

ScriptObject TakeObject(NPP npp, NPVariant value) {
    if (value.type == NPVariantType_Object) {
        return ScriptObject(npp, value.value.objectValue);
    }
    Browser().releasevariantvalue(&value);
    return {};
}

}  // namespace

ScriptObject& ScriptObject::operator=(ScriptObject&& other) noexcept {
    if (this != &other) {
        Release();
        m_npp = other.m_npp;
        m_object = std::exchange(other.m_object, nullptr);
    }
    return *this;
}

void ScriptObject::Release() {
    if (m_object != nullptr) {
        Browser().releaseobject(std::exchange(m_object, nullptr));
    }
}

NPVariant ScriptObject::Read(const char* name) const {
    NPVariant value = Void();
    if (m_object != nullptr) {
        Browser().getproperty(m_npp, m_object, Browser().getstringidentifier(name), &value);
    }
    return value;
}

ScriptObject ScriptObject::Member(const char* name) const {
    return TakeObject(m_npp, Read(name));
}

std::optional<double> ScriptObject::Number(const char* name) const {
    NPVariant value = Read(name);
    std::optional<double> number;
    if (value.type == NPVariantType_Double) {
        number = value.value.doubleValue;
    } else if (value.type == NPVariantType_Int32) {
        number = value.value.intValue;
    }
    Browser().releasevariantvalue(&value);
    return number;
}

std::string ScriptObject::Text(const char* name) const {
    NPVariant value = Read(name);
    std::string text;
    if (value.type == NPVariantType_String) {
        text.assign(value.value.stringValue.UTF8Characters, value.value.stringValue.UTF8Length);
    }
    Browser().releasevariantvalue(&value);
    return text;
}

ScriptObject ScriptObject::Call(const char* method, const NPVariant* arguments, std::uint32_t count) const {
    NPVariant result = Void();
    if (m_object != nullptr) {
        Browser().invoke(m_npp, m_object, Browser().getstringidentifier(method), arguments, count, &result);
    }
    return TakeObject(m_npp, result);
}

ScriptObject ElementOf(NPP npp) {
    NPObject* element = nullptr;
    const NPError error = Browser().getvalue(npp, NPNVPluginElementNPObject, &element);
    return error == NPERR_NO_ERROR ? ScriptObject(npp, element) : ScriptObject();
}

}  // namespace adapter
