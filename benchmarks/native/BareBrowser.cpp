#include "benchmarks/native/BareBrowser.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

namespace benchmarks {

namespace {

struct AsyncCall {
    void (*function)(void*);
    void* data;
};

std::vector<AsyncCall>& AsyncCalls() {
    static std::vector<AsyncCall> s_calls;
    return s_calls;
}

bool ReturnVoid(NPVariant* result) {
    *result = MakeVariant(NPVariantType_Void);
    return true;
}

NPClass s_functionClass{
    NP_CLASS_STRUCT_VERSION_CTOR,
    [](NPP, NPClass*) { return new NPObject; },
    [](NPObject* object) { delete object; },
    nullptr,
    nullptr,
    nullptr,
    [](NPObject*, const NPVariant*, std::uint32_t, NPVariant* result) { return ReturnVoid(result); },
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr};

NPObject* CreateObject(NPP npp, NPClass* objectClass) {
    NPObject* object = objectClass->allocate(npp, objectClass);
    object->_class = objectClass;
    object->referenceCount = 1;
    return object;
}

NPObject* RetainObject(NPObject* object) {
    ++object->referenceCount;
    return object;
}

void ReleaseObject(NPObject* object) {
    if (--object->referenceCount == 0) object->_class->deallocate(object);
}

void ReleaseVariantValue(NPVariant* variant) {
    if (variant->type == NPVariantType_String) std::free(const_cast<char*>(variant->value.stringValue.UTF8Characters));
    if (variant->type == NPVariantType_Object) ReleaseObject(variant->value.objectValue);
    variant->type = NPVariantType_Void;
}

bool InvokeDefault(NPP, NPObject* object, const NPVariant* args, std::uint32_t count, NPVariant* result) {
    return object->_class->invokeDefault(object, args, count, result);
}

// The document's URL as a text, everything else as a new object.
bool Evaluate(NPP, NPObject*, NPString* script, NPVariant* result) {
    static const std::string s_location = "http://tv.example/app/index.html";
    const std::string text(script->UTF8Characters, script->UTF8Length);
    if (text.find("location") == std::string::npos) {
        *result = MakeObject(BareBrowser::NewFunction());
        return true;
    }
    auto* copy = static_cast<char*>(std::malloc(s_location.size()));
    std::memcpy(copy, s_location.data(), s_location.size());
    *result = MakeVariant(NPVariantType_String);
    result->value.stringValue = {copy, static_cast<std::uint32_t>(s_location.size())};
    return true;
}

NPError GetValue(NPP, NPNVariable variable, void* value) {
    if (variable != NPNVWindowNPObject) return NPERR_GENERIC_ERROR;
    *static_cast<NPObject**>(value) = BareBrowser::NewFunction();
    return NPERR_NO_ERROR;
}

NPNetscapeFuncs MakeTable() {
    NPNetscapeFuncs table{};
    table.size = sizeof table;
    table.version = 26;
    table.memalloc = [](std::uint32_t size) { return std::malloc(size); };
    table.memfree = [](void* block) { std::free(block); };
    table.getstringidentifier = [](const NPUTF8* name) { return BareBrowser::Name(name); };
    table.createobject = CreateObject;
    table.retainobject = RetainObject;
    table.releaseobject = ReleaseObject;
    table.releasevariantvalue = ReleaseVariantValue;
    table.invokeDefault = InvokeDefault;
    table.evaluate = Evaluate;
    table.getvalue = GetValue;
    table.setvalue = [](NPP, NPPVariable, void*) -> NPError { return NPERR_NO_ERROR; };
    table.setexception = [](NPObject*, const NPUTF8*) {};
    table.pluginthreadasynccall = [](NPP, void (*function)(void*), void* data) {
        AsyncCalls().push_back({function, data});
    };
    return table;
}

}  // namespace

NPNetscapeFuncs& BareBrowser::Functions() {
    static NPNetscapeFuncs s_table = MakeTable();
    return s_table;
}

NPIdentifier BareBrowser::Name(const std::string& name) {
    static std::map<std::string, NPIdentifier> s_names;
    NPIdentifier& identifier = s_names[name];
    if (!identifier) identifier = new std::string(name);
    return identifier;
}

NPObject* BareBrowser::NewFunction() { return CreateObject(nullptr, &s_functionClass); }

void BareBrowser::RunAsyncCalls() {
    for (std::size_t i = 0; i < AsyncCalls().size(); ++i) {
        const AsyncCall call = AsyncCalls()[i];
        call.function(call.data);
    }
    AsyncCalls().clear();
}

void BareBrowser::DropAsyncCalls() { AsyncCalls().clear(); }

Instance::Instance(const NPPluginFuncs& plugin, const std::string& type) : m_plugin(plugin) {
    std::string mutableType = type;
    m_plugin.newp(mutableType.data(), &m_npp, NP_EMBED, 0, nullptr, nullptr, nullptr);
    m_plugin.getvalue(&m_npp, NPPVpluginScriptableNPObject, &m_object);
}

Instance::~Instance() {
    if (m_object->_class->invalidate) m_object->_class->invalidate(m_object);
    m_plugin.destroy(&m_npp, nullptr);
    ReleaseObject(m_object);
}

void Instance::Get(NPIdentifier name) const {
    NPVariant result = MakeVariant(NPVariantType_Void);
    m_object->_class->getProperty(m_object, name, &result);
    ReleaseVariantValue(&result);
}

void Instance::Set(NPIdentifier name, const NPVariant& value) const {
    m_object->_class->setProperty(m_object, name, &value);
}

void Instance::Call(NPIdentifier name, const NPVariant* args, std::uint32_t count) const {
    NPVariant result = MakeVariant(NPVariantType_Void);
    m_object->_class->invoke(m_object, name, args, count, &result);
    ReleaseVariantValue(&result);
}

NPVariant MakeVariant(NPVariantType type) {
    NPVariant variant;
    std::memset(&variant, 0, sizeof variant);
    variant.type = type;
    return variant;
}

NPVariant MakeBool(bool value) {
    NPVariant variant = MakeVariant(NPVariantType_Bool);
    variant.value.boolValue = value;
    return variant;
}

NPVariant MakeInt(int value) {
    NPVariant variant = MakeVariant(NPVariantType_Int32);
    variant.value.intValue = value;
    return variant;
}

NPVariant MakeObject(NPObject* object) {
    NPVariant variant = MakeVariant(NPVariantType_Object);
    variant.value.objectValue = object;
    return variant;
}

NPVariant MakeString(const std::string& text) {
    NPVariant variant = MakeVariant(NPVariantType_String);
    variant.value.stringValue = {text.data(), static_cast<std::uint32_t>(text.size())};
    return variant;
}

}  // namespace benchmarks
