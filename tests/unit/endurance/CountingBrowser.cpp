#include "tests/unit/endurance/CountingBrowser.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "javascript/CJSEvent.h"
#include "javascript/JSNpapiObject.h"
#include "javascript/Variants.h"
#include "tests/support/BrowserFunctions.h"

namespace endurance {

using namespace OipfJavaScript;

namespace {

CountingBrowser* s_browser = nullptr;

using ClassOfEvents = JSNpapiObject<CJSEvent>;
using ClassOfObjects = JSNpapiObject<Embedded::Object>;

}  // namespace

struct CountingBrowser::PageObject : NPObject {
    std::map<std::string, support::Value> properties;
    Function function;

    static NPClass* Class() {
        static NPClass pageClass{};
        pageClass.structVersion = NP_CLASS_STRUCT_VERSION_CTOR;
        pageClass.deallocate = [](NPObject* object) { delete static_cast<PageObject*>(object); };
        return &pageClass;
    }
};

struct CountingBrowser::Calls {
    static CountingBrowser& Enter() {
        if (std::this_thread::get_id() != s_browser->m_mainThread) {
            ADD_FAILURE() << "The browser was called on a thread that is not the main thread.";
        }
        return *s_browser;
    }

    static void* MemAlloc(std::uint32_t size) {
        ++Enter().m_held.blocks;
        return std::malloc(size);
    }
    static void MemFree(void* block) {
        if (block != nullptr) --Enter().m_held.blocks;
        std::free(block);
    }
    static NPVariant Text(const char* text) {
        const std::size_t length = std::strlen(text);
        auto* copy = static_cast<char*>(MemAlloc(static_cast<std::uint32_t>(length)));
        std::memcpy(copy, text, length);
        return StringVariant(copy, static_cast<std::uint32_t>(length));
    }
    static NPVariant HandOut(const support::Value& value) {
        switch (value.Type()) {
            case NPVariantType_Int32:
                return Int32Variant(value.Int());
            case NPVariantType_String:
                return Text(value.Text().c_str());
            default:
                return VoidVariant();
        }
    }

    static NPObject* Enter(NPObject* object, NPClass* objectClass) {
        object->_class = objectClass;
        object->referenceCount = 1;
        ++Enter().m_held.objects;
        ++Enter().m_held.references;
        return object;
    }
    static NPObject* CreateObject(NPP npp, NPClass* objectClass) {
        NPObject* object = objectClass->allocate(npp, objectClass);
        return object != nullptr ? Enter(object, objectClass) : nullptr;
    }
    static NPObject* RetainObject(NPObject* object) {
        ++Enter().m_held.references;
        ++object->referenceCount;
        return object;
    }
    static void ReleaseObject(NPObject* object) {
        --Enter().m_held.references;
        if (--object->referenceCount != 0) return;
        --Enter().m_held.objects;
        object->_class->deallocate(object);
    }
    static void ReleaseVariantValue(NPVariant* variant) {
        if (variant->type == NPVariantType_Object) ReleaseObject(variant->value.objectValue);
        if (variant->type == NPVariantType_String)
            MemFree(const_cast<char*>(variant->value.stringValue.UTF8Characters));
    }

    static NPIdentifier GetStringIdentifier(const NPUTF8* name) { return support::IdentifierOf(name); }
    static bool GetProperty(NPP, NPObject* object, NPIdentifier name, NPVariant* result) {
        const auto& properties = static_cast<PageObject*>(object)->properties;
        const auto found = properties.find(support::NameOfIdentifier(name));
        *result = found != properties.end() ? HandOut(found->second) : VoidVariant();
        return true;
    }
    static bool Invoke(NPP, NPObject*, NPIdentifier, const NPVariant*, std::uint32_t, NPVariant* result) {
        *result = Text("invoked");
        return true;
    }
    static bool InvokeDefault(NPP, NPObject* object, const NPVariant* args, std::uint32_t count, NPVariant* result) {
        const Function& function = static_cast<PageObject*>(object)->function;
        function(count != 0 ? args[0] : VoidVariant());
        *result = Text("called");
        return true;
    }
    static bool Evaluate(NPP, NPObject*, NPString* script, NPVariant* result) {
        const std::string_view text(script->UTF8Characters, script->UTF8Length);
        if (text == "document.location.href") {
            *result = Text("http://tv.example/app/index.html");
        } else if (text.starts_with("new ")) {
            *result = ObjectVariant(Enter(new PageObject, PageObject::Class()));
            if (Enter().onConstruct) Enter().onConstruct(text);
        } else {
            *result = BoolVariant(true);
        }
        return true;
    }

    static void SetException(NPObject*, const NPUTF8* message) { ADD_FAILURE() << "Exception: " << message; }
    static NPError GetValue(NPP, NPNVariable, void* value) {
        *static_cast<NPObject**>(value) = Enter(new PageObject, PageObject::Class());  // the window
        return NPERR_NO_ERROR;
    }
    static NPError SetValue(NPP, NPPVariable, void*) { return NPERR_NO_ERROR; }
    static void PluginThreadAsyncCall(NPP npp, void (*function)(void*), void* data) {
        s_browser->m_async.Add(npp, function, data);
    }

    static NPNetscapeFuncs Table() {
        NPNetscapeFuncs table{};
        table.size = sizeof table;
        table.memalloc = MemAlloc;
        table.memfree = MemFree;
        table.createobject = CreateObject;
        table.retainobject = RetainObject;
        table.releaseobject = ReleaseObject;
        table.releasevariantvalue = ReleaseVariantValue;
        table.getstringidentifier = GetStringIdentifier;
        table.getproperty = GetProperty;
        table.invoke = Invoke;
        table.invokeDefault = InvokeDefault;
        table.evaluate = Evaluate;
        table.setexception = SetException;
        table.getvalue = GetValue;
        table.setvalue = SetValue;
        table.pluginthreadasynccall = PluginThreadAsyncCall;
        return table;
    }
};

NPNetscapeFuncs* CountingBrowser::Functions() {
    static NPNetscapeFuncs table = Calls::Table();
    return &table;
}

// The classes keep the table that they saw first.
CountingBrowser::CountingBrowser()
    : m_functionsOfEvents(ClassOfEvents::s_pNPNFuncs), m_functionsOfObjects(ClassOfObjects::s_pNPNFuncs) {
    s_browser = this;
    ClassOfEvents::s_pNPNFuncs = ClassOfObjects::s_pNPNFuncs = Functions();
}

CountingBrowser::~CountingBrowser() {
    ClassOfEvents::s_pNPNFuncs = m_functionsOfEvents;
    ClassOfObjects::s_pNPNFuncs = m_functionsOfObjects;
    s_browser = nullptr;
}

Embedded::Embedded(CountingBrowser& browser) : m_browser(browser), m_npp(&browser.m_instances.emplace_back()) {
    browser.m_async.InstanceBegins(m_npp);
    m_object = static_cast<Object*>(CountingBrowser::Functions()->createobject(m_npp, &ClassOfObjects::s_npclass));
}

Embedded::~Embedded() {
    CountingBrowser::Release(m_object);
    m_browser.m_async.InstanceEnds(m_npp, false);
}

NPObject* CountingBrowser::MakeObject(std::map<std::string, support::Value> properties) {
    auto* object = new PageObject;
    object->properties = std::move(properties);
    return Calls::Enter(object, PageObject::Class());
}

NPObject* CountingBrowser::MakeFunction(Function function) {
    auto* object = new PageObject;
    object->function = std::move(function);
    return Calls::Enter(object, PageObject::Class());
}

bool CountingBrowser::Set(NPObject* object, const std::string& name, NPObject* function) {
    const NPVariant value = function != nullptr ? ObjectVariant(function) : NullVariant();
    return object->_class->setProperty(object, support::IdentifierOf(name), &value);
}

bool CountingBrowser::Get(NPObject* object, const std::string& name) {
    NPVariant result = VoidVariant();
    const bool accepted = object->_class->getProperty(object, support::IdentifierOf(name), &result);
    if (accepted) Calls::ReleaseVariantValue(&result);
    return accepted;
}

// Texts are passed with a terminator, which the plug-in must not need; objects stay the page's.
bool CountingBrowser::Call(NPObject* object, const std::string& name, const support::Values& arguments) {
    std::vector<NPVariant> passed;
    for (const support::Value& argument : arguments) {
        const bool isObject = argument.Type() == NPVariantType_Object;
        const bool isBool = argument.Type() == NPVariantType_Bool;
        passed.push_back(isObject ? ObjectVariant(argument.Object())
                         : isBool ? BoolVariant(argument.Boolean())
                                  : Calls::HandOut(argument));
    }
    NPVariant result = VoidVariant();
    const bool accepted = object->_class->invoke(object, support::IdentifierOf(name), passed.data(),
                                                 static_cast<std::uint32_t>(passed.size()), &result);
    if (accepted) Calls::ReleaseVariantValue(&result);
    for (NPVariant& variant : passed) {
        if (variant.type == NPVariantType_String) Calls::ReleaseVariantValue(&variant);
    }
    return accepted;
}

}  // namespace endurance
