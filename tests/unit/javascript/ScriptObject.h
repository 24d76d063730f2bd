// A script object for tests of the framework, with the framework's protected operations open.
#pragma once

#include "tests/support/PluginTest.h"

#include "javascript/CJSEvent.h"
#include "javascript/JSNPObject.h"
#include "javascript/JSNpapiObject.h"
#include "javascript/Variants.h"
#include "tests/support/BrowserFunctions.h"

class ScriptObject : public OipfJavaScript::JSNPObject {
public:
    ScriptObject(NPP npp, NPNetscapeFuncs* funcs) : JSNPObject("[object Script]", npp, funcs) { ++s_living; }
    ~ScriptObject() override { --s_living; }

    using JSNPObject::m_defaultPrefix;
    using JSNPObject::m_npp;
    using JSNPObject::m_pBrowserAPI;
    using JSNPObject::m_pNPNFuncs;
    using JSNPObject::t_CallEventHandler;
    using JSNPObject::t_CallEventListeners;
    using JSNPObject::t_CreateEventObject;
    using JSNPObject::t_CreateJSObject;
    using JSNPObject::t_GetDocumentLocation;
    using JSNPObject::t_GetProperty;
    using JSNPObject::t_IsCurrentPageTrusted;
    using JSNPObject::t_MakeAbsolutePath;
    using JSNPObject::t_NPVariantToDouble;
    using JSNPObject::t_NPVariantToInt;
    using JSNPObject::t_NPVariantToString;
    using JSNPObject::t_RegisterConstant;
    using JSNPObject::t_RegisterMethod;
    using JSNPObject::t_RegisterProperty;
    using JSNPObject::t_StringToNPVariant;

    // Members to register.
    bool GetNumber(NPVariant* result) {
        *result = OipfJavaScript::Int32Variant(m_number);
        return true;
    }
    bool SetNumber(const NPVariant* value) { return t_NPVariantToInt(*value, m_number); }
    bool Refuse(NPVariant*) { return false; }
    // Answers how many arguments there were and remembers them.
    bool Count(const NPVariant* args, std::uint32_t argCount, NPVariant* result) {
        m_arguments.clear();
        for (std::uint32_t i = 0; i < argCount; ++i) {
            m_arguments.emplace_back(args[i]);
        }
        *result = OipfJavaScript::Int32Variant(static_cast<std::int32_t>(argCount));
        return true;
    }
    bool RefuseCall(const NPVariant*, std::uint32_t, NPVariant*) { return false; }
    // Runs m_action, which may do anything.
    bool Act(const NPVariant*, std::uint32_t, NPVariant*) {
        m_action();
        return true;
    }

    bool t_AllowEventListener() override { return m_allowsListeners; }

    int m_number = 7;
    support::Values m_arguments;
    std::function<void()> m_action = [] {};
    bool m_allowsListeners = true;
    static inline int s_living = 0;
};

// Makes one ScriptObject in an instance, as a browser does, and gives it back at the end.
class ScriptObjectTest : public support::PluginTest {
protected:
    using Class = OipfJavaScript::JSNpapiObject<ScriptObject>;

    ScriptObjectTest() {
        Class::s_pNPNFuncs = browser.Functions();
        object = Make();
    }

    void TearDown() override {
        Release();
        PluginTest::TearDown();
        EXPECT_EQ(ScriptObject::s_living, 0);
    }

    ScriptObject* Make() { return static_cast<ScriptObject*>(npn.createobject(npp, &Class::s_npclass)); }

    // Gives the reference of the instance back; the object dies unless somebody else holds it.
    void Release() {
        if (NPObject* held = std::exchange(object, nullptr)) {
            npn.releaseobject(held);
        }
    }

    // A heap variant as AddCustomProperty takes it; its string is in the browser's memory.
    NPVariant* NewVariant(const NPVariant& variant) { return new NPVariant(variant); }
    NPVariant* NewString(const std::string& text) {
        return NewVariant(OipfJavaScript::StringVariant(browser.GetLedger().AllocateText(text),
                                                        static_cast<std::uint32_t>(text.size())));
    }

    // A borrowed variant for calls of protected operations; lives until the test ends.
    const NPVariant& Passed(const support::Value& value) {
        m_passed.push_back(std::make_unique<support::PassedValues>(browser, support::Values{value}));
        return *m_passed.back()->Data();
    }

    NPNetscapeFuncs& npn = *browser.Functions();
    NPP npp = browser.MakeInstance();
    ScriptObject* object = nullptr;

private:
    std::vector<std::unique_ptr<support::PassedValues>> m_passed;
};
