// The NPN_ functions of the fake browser that work on script objects, the page's and the plug-in's.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/BrowserFunctions.h"
#include "tests/support/CallList.h"
#include "tests/support/FakeBrowser.h"

namespace support {
namespace {

Values Copy(const std::string& function, const NPVariant* args, std::uint32_t count) {
    Values values;
    for (std::uint32_t i = 0; i < count; ++i) {
        values.emplace_back(args[i]);
        if (values.back().Type() == NPVariantType_Object) {
            FakeBrowser::Current()->GetLedger().Check("An argument of " + function, args[i].value.objectValue);
        }
    }
    return values;
}

// The class of an object of the plug-in, null for the page's.
NPClass* ClassOf(FakeBrowser& browser, NPObject* object) {
    return browser.Fake(object) == nullptr ? object->_class : nullptr;
}

NPObject* Allocate(NPP npp, NPClass* objectClass) {
    if (objectClass->allocate != nullptr) {
        return objectClass->allocate(npp, objectClass);
    }
    return static_cast<NPObject*>(std::calloc(1, sizeof(NPObject)));
}

}  // namespace

NPClass* BrowserFunctions::HandleClass() {
    static NPClass handleClass{};
    handleClass.structVersion = NP_CLASS_STRUCT_VERSION_CTOR;
    return &handleClass;
}

NPObject* BrowserFunctions::CreateObject(NPP npp, NPClass* objectClass) {
    FakeBrowser* browser = Enter("createobject", npp);
    NPObject* object = browser != nullptr ? Allocate(npp, objectClass) : nullptr;
    if (object != nullptr) {
        object->_class = objectClass;
        browser->m_ledger.AddObject(object, "plug-in object", true);
    }
    return object;
}

NPObject* BrowserFunctions::RetainObject(NPObject* object) {
    if (FakeBrowser* browser = Enter("retainobject")) {
        browser->m_ledger.Retain("NPN_RetainObject", object);
    }
    return object;
}

void BrowserFunctions::ReleaseObject(NPObject* object) {
    if (FakeBrowser* browser = Enter("releaseobject")) {
        browser->m_ledger.Release("NPN_ReleaseObject", object);
    }
}

void BrowserFunctions::ReleaseVariantValue(NPVariant* variant) {
    FakeBrowser* browser = Enter("releasevariantvalue");
    if (browser == nullptr) {
        return;
    }
    const NPVariant held = *variant;
    if (browser->releaseMakesVoid) {
        variant->type = NPVariantType_Void;
    }
    if (held.type == NPVariantType_Object) {
        browser->m_ledger.Release("NPN_ReleaseVariantValue", held.value.objectValue);
    } else if (held.type == NPVariantType_String && held.value.stringValue.UTF8Characters != nullptr) {
        browser->m_ledger.Free("NPN_ReleaseVariantValue", const_cast<NPUTF8*>(held.value.stringValue.UTF8Characters));
    }
}

bool BrowserFunctions::Invoke(NPP npp, NPObject* object, NPIdentifier method, const NPVariant* args,
                              std::uint32_t count, NPVariant* result) {
    FakeBrowser* browser = Enter("invoke", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_Invoke", object)) {
        return false;
    }
    if (NPClass* objectClass = ClassOf(*browser, object)) {
        return objectClass->invoke(object, method, args, count, result);
    }
    const auto answer = browser->Fake(object)->CallMethod(NameOfIdentifier(method), Copy("NPN_Invoke", args, count));
    *result = browser->HandOut(answer.value_or(Value()));
    return answer.has_value();
}

bool BrowserFunctions::InvokeDefault(NPP npp, NPObject* object, const NPVariant* args, std::uint32_t count,
                                     NPVariant* result) {
    FakeBrowser* browser = Enter("invokeDefault", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_InvokeDefault", object)) {
        return false;
    }
    if (NPClass* objectClass = ClassOf(*browser, object)) {
        return objectClass->invokeDefault(object, args, count, result);
    }
    FakeObject& fake = *browser->Fake(object);
    const auto answer = fake.Call(Copy("NPN_InvokeDefault", args, count));
    if (!fake.IsAlive()) {
        ADD_FAILURE() << fake.Name() << " died during its own call: its caller did not hold it.";
    }
    *result = browser->HandOut(answer.value_or(Value()));
    return answer.has_value();
}

bool BrowserFunctions::Evaluate(NPP npp, NPObject* object, NPString* script, NPVariant* result) {
    FakeBrowser* browser = FakeBrowser::Current();
    const std::string text(script->UTF8Characters, script->UTF8Length);
    if (browser != nullptr) {
        browser->m_evaluated.push_back(text);
        CallList::Instance().Add("evaluate " + text);
    }
    browser = Enter("evaluate", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_Evaluate", object)) {
        return false;
    }
    EXPECT_EQ(object, browser->Window().Pointer()) << "NPN_Evaluate was given another object than the window.";
    const auto answer = browser->Evaluate(text);
    if (answer) {
        *result = browser->HandOut(*answer);
    }
    return answer.has_value();
}

bool BrowserFunctions::GetProperty(NPP npp, NPObject* object, NPIdentifier name, NPVariant* result) {
    FakeBrowser* browser = Enter("getproperty", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_GetProperty", object)) {
        return false;
    }
    if (NPClass* objectClass = ClassOf(*browser, object)) {
        return objectClass->getProperty(object, name, result);
    }
    *result = browser->HandOut(browser->Fake(object)->Read(NameOfIdentifier(name)));
    return true;
}

bool BrowserFunctions::SetProperty(NPP npp, NPObject* object, NPIdentifier name, const NPVariant* value) {
    FakeBrowser* browser = Enter("setproperty", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_SetProperty", object)) {
        return false;
    }
    if (NPClass* objectClass = ClassOf(*browser, object)) {
        return objectClass->setProperty(object, name, value);
    }
    browser->Hold(Value(*value));
    browser->Fake(object)->Set(NameOfIdentifier(name), Value(*value));
    return true;
}

bool BrowserFunctions::RemoveProperty(NPP npp, NPObject* object, NPIdentifier name) {
    FakeBrowser* browser = Enter("removeproperty", npp);
    return browser != nullptr && browser->m_ledger.Check("NPN_RemoveProperty", object) &&
           ClassOf(*browser, object) == nullptr && browser->Fake(object)->Remove(NameOfIdentifier(name));
}

bool BrowserFunctions::HasProperty(NPP npp, NPObject* object, NPIdentifier name) {
    FakeBrowser* browser = Enter("hasproperty", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_HasProperty", object)) {
        return false;
    }
    NPClass* objectClass = ClassOf(*browser, object);
    return objectClass != nullptr ? objectClass->hasProperty(object, name)
                                  : browser->Fake(object)->Has(NameOfIdentifier(name));
}

bool BrowserFunctions::HasMethod(NPP npp, NPObject* object, NPIdentifier name) {
    FakeBrowser* browser = Enter("hasmethod", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_HasMethod", object)) {
        return false;
    }
    NPClass* objectClass = ClassOf(*browser, object);
    return objectClass != nullptr ? objectClass->hasMethod(object, name)
                                  : browser->Fake(object)->HasMethod(NameOfIdentifier(name));
}

bool BrowserFunctions::Enumerate(NPP npp, NPObject* object, NPIdentifier** identifiers, std::uint32_t* count) {
    FakeBrowser* browser = Enter("enumerate", npp);
    if (browser == nullptr || !browser->m_ledger.Check("NPN_Enumerate", object)) {
        return false;
    }
    if (NPClass* objectClass = ClassOf(*browser, object)) {
        return objectClass->enumerate(object, identifiers, count);
    }
    const auto names = browser->Fake(object)->Names();
    *count = static_cast<std::uint32_t>(names.size());
    *identifiers = static_cast<NPIdentifier*>(browser->m_ledger.Allocate(names.size() * sizeof(NPIdentifier)));
    for (std::size_t i = 0; i < names.size(); ++i) {
        (*identifiers)[i] = IdentifierOf(names[i]);
    }
    return true;
}

}  // namespace support
