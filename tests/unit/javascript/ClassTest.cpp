// The NPClass of a native class: its hooks, and the life of an object between them.
#include "tests/support/Slots.h"
#include "tests/unit/javascript/ScriptObject.h"

namespace {

using OipfJavaScript::JSNpapiObject;
using OipfJavaScript::JSNPObject;
using OipfJavaScript::make_method;
using OipfJavaScript::make_property;
using support::IdentifierOf;
using support::SlotOf;
using support::Value;

class ClassTest : public ScriptObjectTest {
protected:
    NPClass& hooks = Class::s_npclass;
};

TEST_F(ClassTest, TheClassIsOfVersionThreeWithAllHooks) {
    EXPECT_EQ(hooks.structVersion, 3u);
    EXPECT_NE(hooks.allocate, nullptr);
    EXPECT_NE(hooks.deallocate, nullptr);
    EXPECT_NE(hooks.invalidate, nullptr);
    EXPECT_NE(hooks.hasMethod, nullptr);
    EXPECT_NE(hooks.invoke, nullptr);
    EXPECT_NE(hooks.invokeDefault, nullptr);
    EXPECT_NE(hooks.hasProperty, nullptr);
    EXPECT_NE(hooks.getProperty, nullptr);
    EXPECT_NE(hooks.setProperty, nullptr);
    EXPECT_NE(hooks.removeProperty, nullptr);
    EXPECT_NE(hooks.enumerate, nullptr);
    EXPECT_NE(hooks.construct, nullptr);
}

TEST_F(ClassTest, EachNativeClassHasAClassOfItsOwn) {
    EXPECT_NE(&hooks, &JSNpapiObject<OipfJavaScript::CJSEvent>::s_npclass);
}

TEST_F(ClassTest, TheBrowsersPartBeginsOnePointerAfterTheObject) {
    const auto* header = reinterpret_cast<const char*>(static_cast<NPObject*>(object));
    EXPECT_EQ(header - reinterpret_cast<const char*>(object), static_cast<std::ptrdiff_t>(sizeof(void*)));
}

TEST_F(ClassTest, TableInstanceIdAndBrowserInterfaceFollowTheBrowsersPartInThisOrder) {
    const auto at = [this](const auto& field) {
        return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(object);
    };
    const auto afterHeader = static_cast<std::ptrdiff_t>(sizeof(void*) + sizeof(NPObject));
    const auto word = static_cast<std::ptrdiff_t>(sizeof(void*));
    EXPECT_EQ(at(object->m_pNPNFuncs), afterHeader);
    EXPECT_EQ(at(object->m_npp), afterHeader + word);
    EXPECT_EQ(at(object->m_defaultPrefix), afterHeader + 2 * word);
    EXPECT_EQ(at(object->m_pBrowserAPI),
              afterHeader + 2 * word + static_cast<std::ptrdiff_t>(sizeof object->m_defaultPrefix));
}

TEST_F(ClassTest, NullObjectsAreRefused) {
    NPVariant result{};
    NPIdentifier* names = nullptr;
    std::uint32_t count = 0;
    hooks.deallocate(nullptr);
    hooks.invalidate(nullptr);
    EXPECT_FALSE(hooks.hasMethod(nullptr, IdentifierOf("toString")));
    EXPECT_FALSE(hooks.invoke(nullptr, IdentifierOf("toString"), nullptr, 0, &result));
    EXPECT_FALSE(hooks.invokeDefault(nullptr, nullptr, 0, &result));
    EXPECT_FALSE(hooks.hasProperty(nullptr, IdentifierOf("x")));
    EXPECT_FALSE(hooks.getProperty(nullptr, IdentifierOf("x"), &result));
    EXPECT_FALSE(hooks.setProperty(nullptr, IdentifierOf("x"), &result));
    EXPECT_FALSE(hooks.removeProperty(nullptr, IdentifierOf("x")));
    EXPECT_FALSE(hooks.enumerate(nullptr, &names, &count));
    EXPECT_FALSE(hooks.construct(nullptr, nullptr, 0, &result));
}

TEST_F(ClassTest, TheBaseRefusesWhatItCannotDo) {
    NPVariant result{};
    NPIdentifier* names = nullptr;
    std::uint32_t count = 0;
    char text[64];
    std::snprintf(text, sizeof text, "JSNPObject::InvokeDefault() %p", static_cast<void*>(object));
    EXPECT_FALSE(hooks.invokeDefault(object, nullptr, 0, &result));
    ExpectLogged(3, text);
    EXPECT_FALSE(hooks.removeProperty(object, IdentifierOf("toString")));
    ExpectLogged(3, "JSNPObject::RemoveProperty()");
    EXPECT_FALSE(hooks.enumerate(object, &names, &count));
    ExpectLogged(3, "JSNPObject::Enumerate()");
    EXPECT_FALSE(hooks.construct(object, nullptr, 0, &result));
    ExpectLogged(3, "JSNPObject::Construct()");
    EXPECT_EQ(result.type, NPVariantType_Void);
    EXPECT_EQ(names, nullptr);
    EXPECT_EQ(count, 0u);
}

TEST_F(ClassTest, TheBaseAnswersTheInstanceAsOneThatWantsNothing) {
    NPStream stream{};
    object->SetWindow(nullptr);
    object->SetAttributes(0, nullptr, nullptr);
    object->SetMimeType(nullptr);
    EXPECT_EQ(object->HandleEvent(nullptr), 0);
    EXPECT_EQ(object->NewStream(&stream), NPERR_INVALID_PARAM);
    EXPECT_EQ(object->DestroyStream(&stream, 0), NPERR_INVALID_PARAM);
    EXPECT_EQ(object->WriteReady(&stream), -1);
    EXPECT_EQ(object->Write(&stream, 0, 0, nullptr), -1);
}

TEST_F(ClassTest, InvalidatingForgetsTheInstanceAndLeavesTheObjectAlive) {
    char text[64];
    std::snprintf(text, sizeof text, "JSNPObject::Invalidate() %p %d", static_cast<void*>(object), 1);
    hooks.invalidate(object);
    ExpectLogged(3, text);
    EXPECT_EQ(object->m_npp, nullptr);
    EXPECT_EQ(ScriptObject::s_living, 1);
    hooks.invalidate(object);
    EXPECT_EQ(object->m_npp, nullptr);
}

TEST_F(ClassTest, AnObjectDiesWithItsLastReferenceThroughItsOwnDestructor) {
    npn.retainobject(object);
    npn.releaseobject(object);
    EXPECT_EQ(ScriptObject::s_living, 1);
    Release();
    EXPECT_EQ(ScriptObject::s_living, 0);
}

TEST_F(ClassTest, AnObjectThatScriptDestroysDuringItsCallLivesUntilTheCallEnds) {
    browser.pageHoldsDuringCalls = false;
    object->t_RegisterMethod("act", make_method(object, &ScriptObject::Act));
    object->m_action = [this] {
        NPObject* self = object;
        Release();
        EXPECT_EQ(ScriptObject::s_living, 1);
        EXPECT_EQ(self->referenceCount, 1u);
    };
    NPVariant result{};
    EXPECT_TRUE(hooks.invoke(object, IdentifierOf("act"), nullptr, 0, &result));
    EXPECT_EQ(ScriptObject::s_living, 0);
}

TEST_F(ClassTest, AnObjectThatIsInvalidatedAndDestroyedDuringItsCallLivesUntilTheCallEnds) {
    object->t_RegisterMethod("act", make_method(object, &ScriptObject::Act));
    object->m_action = [this] {
        object->Invalidate();
        Release();
        EXPECT_EQ(ScriptObject::s_living, 1);
    };
    NPVariant result{};
    EXPECT_TRUE(hooks.invoke(object, IdentifierOf("act"), nullptr, 0, &result));
    EXPECT_EQ(ScriptObject::s_living, 0);
}

TEST_F(ClassTest, AnObjectThatNobodyHasYetOrThatHasNoInstanceIsNotHeld) {
    const unsigned retained = browser.Uses("retainobject");
    {
        ScriptObject unborn(npp, &npn);
        const OipfJavaScript::CSelfHold hold(unborn);
    }
    object->Invalidate();
    {
        const OipfJavaScript::CSelfHold hold(*object);
    }
    EXPECT_EQ(browser.Uses("retainobject"), retained);
}

// Each hook that may run script holds the object; what a derived class does there may destroy it.
class Suicidal : public OipfJavaScript::JSNPObject {
public:
    Suicidal(NPP npp, NPNetscapeFuncs* funcs) : JSNPObject("[object Suicidal]", npp, funcs) {
        t_RegisterProperty("property", make_property(this, &Suicidal::Read));
        ++s_living;
    }
    ~Suicidal() override { --s_living; }

    bool Die() {
        m_pNPNFuncs->releaseobject(this);
        return s_living == 1;
    }
    bool Read(NPVariant*) { return Die(); }
    bool InvokeDefault(const NPVariant*, std::uint32_t, NPVariant*) override { return Die(); }
    bool SetProperty(NPIdentifier, const NPVariant*) override { return Die(); }
    bool RemoveProperty(NPIdentifier) override { return Die(); }
    bool Enumerate(NPIdentifier**, std::uint32_t*) override { return Die(); }
    bool Construct(const NPVariant*, std::uint32_t, NPVariant*) override { return Die(); }

    static inline int s_living = 0;
};

TEST_F(ClassTest, EveryHookThatMayRunScriptHoldsTheObject) {
    using SuicidalClass = JSNpapiObject<Suicidal>;
    SuicidalClass::s_pNPNFuncs = browser.Functions();
    NPClass& deadly = SuicidalClass::s_npclass;
    NPVariant value{};
    const auto make = [&] { return npn.createobject(npp, &deadly); };
    EXPECT_TRUE(deadly.getProperty(make(), IdentifierOf("property"), &value));
    EXPECT_EQ(Suicidal::s_living, 0);
    EXPECT_TRUE(deadly.setProperty(make(), IdentifierOf("property"), &value));
    EXPECT_TRUE(deadly.invokeDefault(make(), nullptr, 0, &value));
    EXPECT_TRUE(deadly.removeProperty(make(), IdentifierOf("property")));
    EXPECT_TRUE(deadly.enumerate(make(), nullptr, nullptr));
    EXPECT_TRUE(deadly.construct(make(), nullptr, 0, &value));
    EXPECT_EQ(Suicidal::s_living, 0);
}

// A native class whose code throws.
class Throwing : public OipfJavaScript::JSNPObject {
public:
    Throwing(NPP npp, NPNetscapeFuncs* funcs) : JSNPObject("[object Throwing]", npp, funcs) {
        if (s_throwsAtOnce) {
            throw std::runtime_error("constructor");
        }
        t_RegisterMethod("fail", make_method(this, &Throwing::Fail));
        t_RegisterProperty("fail", make_property(this, &Throwing::Read));
    }
    bool Fail(const NPVariant*, std::uint32_t, NPVariant*) { throw std::runtime_error("method"); }
    bool Read(NPVariant*) { throw std::runtime_error("getter"); }

    static inline bool s_throwsAtOnce = false;
};

TEST_F(ClassTest, NoNativeExceptionReachesTheBrowser) {
    using ThrowingClass = JSNpapiObject<Throwing>;
    ThrowingClass::s_pNPNFuncs = browser.Functions();
    Throwing::s_throwsAtOnce = true;
    EXPECT_EQ(npn.createobject(npp, &ThrowingClass::s_npclass), nullptr);
    Throwing::s_throwsAtOnce = false;
    NPObject* thrower = npn.createobject(npp, &ThrowingClass::s_npclass);
    EXPECT_FALSE(browser.Call(thrower, "fail").accepted);
    EXPECT_FALSE(browser.Get(thrower, "fail").accepted);
    npn.releaseobject(thrower);
}

TEST_F(ClassTest, TheOperationsKeepTheirSlots) {
    EXPECT_EQ(SlotOf(&JSNPObject::Invalidate), 2u);  // after the destructor's two
    EXPECT_EQ(SlotOf(&JSNPObject::InvokeDefault), 3u);
    EXPECT_EQ(SlotOf(&JSNPObject::SetProperty), 4u);
    EXPECT_EQ(SlotOf(&JSNPObject::RemoveProperty), 5u);
    EXPECT_EQ(SlotOf(&JSNPObject::Enumerate), 6u);
    EXPECT_EQ(SlotOf(&JSNPObject::Construct), 7u);
    EXPECT_EQ(SlotOf(&JSNPObject::SetWindow), 8u);
    EXPECT_EQ(SlotOf(&JSNPObject::SetAttributes), 9u);
    EXPECT_EQ(SlotOf(&JSNPObject::SetMimeType), 10u);
    EXPECT_EQ(SlotOf(&JSNPObject::HandleEvent), 11u);
    EXPECT_EQ(SlotOf(&JSNPObject::NewStream), 12u);
    EXPECT_EQ(SlotOf(&JSNPObject::DestroyStream), 13u);
    EXPECT_EQ(SlotOf(&JSNPObject::WriteReady), 14u);
    EXPECT_EQ(SlotOf(&JSNPObject::Write), 15u);
    EXPECT_EQ(SlotOf(&ScriptObject::t_AllowEventListener), 16u);
}

TEST_F(ClassTest, TheFunctorsKeepTheirSlots) {
    EXPECT_EQ(SlotOf(&OipfJavaScript::IMethodFunctor::operator()), 0u);
    EXPECT_EQ(SlotOf(&OipfJavaScript::IPropertyFunctor::GetProp), 0u);
    EXPECT_EQ(SlotOf(&OipfJavaScript::IPropertyFunctor::SetProp), 1u);
}

}  // namespace
