// The members of a script object: registering them, finding them, using them.
#include "tests/unit/javascript/ScriptObject.h"

namespace {

using OipfJavaScript::make_method;
using OipfJavaScript::make_property;
using support::IdentifierOf;
using support::Outcome;
using support::Value;
using support::Values;

class RegistryTest : public ScriptObjectTest {
protected:
    bool GetRaw(const std::string& name, NPVariant& result) { return object->GetProperty(IdentifierOf(name), &result); }
};

TEST_F(RegistryTest, AnObjectStartsWithItsTableInstancePrefixAndBrowserInterface) {
    EXPECT_EQ(object->m_pNPNFuncs, browser.Functions());
    EXPECT_EQ(object->m_npp, npp);
    EXPECT_EQ(object->m_defaultPrefix, "__OIPF_DEFAULT_");
    EXPECT_EQ(object->m_pBrowserAPI, CDAEBrowserAPI::Instance());
}

TEST_F(RegistryTest, EveryObjectHasThreeMethodsAndNoProperty) {
    EXPECT_TRUE(browser.HasMethod(object, "addEventListener"));
    EXPECT_TRUE(browser.HasMethod(object, "removeEventListener"));
    EXPECT_TRUE(browser.HasMethod(object, "toString"));
    EXPECT_FALSE(browser.HasProperty(object, "toString"));
    EXPECT_FALSE(browser.HasMethod(object, "other"));
}

TEST_F(RegistryTest, ToStringGivesTheClassNameWhateverTheArguments) {
    EXPECT_EQ(browser.Call(object, "toString").value, Value("[object Script]"));
    EXPECT_EQ(browser.Call(object, "toString", {1, "x"}).value, Value("[object Script]"));
    object->Invalidate();
    EXPECT_EQ(browser.Call(object, "toString").value, Value("[object Script]"));
}

TEST_F(RegistryTest, ToStringOfANamelessClassIsNull) {
    struct Nameless : OipfJavaScript::JSNPObject {
        Nameless(NPP npp, NPNetscapeFuncs* funcs) : JSNPObject("", npp, funcs) {}
    } nameless(npp, &npn);
    NPVariant result = OipfJavaScript::Int32Variant(5);
    EXPECT_TRUE(nameless.Invoke(IdentifierOf("toString"), nullptr, 0, &result));
    EXPECT_EQ(Value(result), Value(nullptr));
}

TEST_F(RegistryTest, ToStringIsAcceptedButEmptyWhenThereIsNoMemory) {
    browser.FailNth("memalloc", 1);
    const Outcome outcome = browser.Call(object, "toString");
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.value, Value());
}

TEST_F(RegistryTest, APropertyIsReadAndWrittenThroughItsMembers) {
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber, &ScriptObject::SetNumber));
    EXPECT_TRUE(browser.HasProperty(object, "number"));
    EXPECT_FALSE(browser.HasMethod(object, "number"));
    EXPECT_EQ(browser.Get(object, "number").value, Value(7));
    EXPECT_TRUE(browser.Set(object, "number", 8).accepted);
    EXPECT_EQ(browser.Get(object, "number").value, Value(8));
    EXPECT_FALSE(browser.Set(object, "number", "eight").accepted);
    EXPECT_EQ(browser.Get(object, "number").value, Value(8));
}

TEST_F(RegistryTest, APropertyWithoutASetterIsReadOnly) {
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber));
    EXPECT_EQ(browser.Get(object, "number").value, Value(7));
    EXPECT_FALSE(browser.Set(object, "number", 8).accepted);
    EXPECT_EQ(object->m_number, 7);
}

TEST_F(RegistryTest, APropertyWithoutAGetterIsWriteOnly) {
    object->t_RegisterProperty("number", make_property<ScriptObject>(object, nullptr, &ScriptObject::SetNumber));
    EXPECT_FALSE(browser.Get(object, "number").accepted);
    EXPECT_TRUE(browser.Set(object, "number", 8).accepted);
    EXPECT_EQ(object->m_number, 8);
}

TEST_F(RegistryTest, AGettersRefusalReachesTheBrowser) {
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::Refuse));
    EXPECT_FALSE(browser.Get(object, "number").accepted);
}

TEST_F(RegistryTest, AMethodGetsItsArgumentsAndGivesItsResult) {
    object->t_RegisterMethod("count", make_method(object, &ScriptObject::Count));
    EXPECT_TRUE(browser.HasMethod(object, "count"));
    EXPECT_FALSE(browser.HasProperty(object, "count"));
    const Outcome outcome = browser.Call(object, "count", {1, "two", nullptr});
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.value, Value(3));
    EXPECT_EQ(object->m_arguments, (Values{1, "two", nullptr}));
    EXPECT_EQ(browser.Call(object, "count").value, Value(0));
}

TEST_F(RegistryTest, AMethodsRefusalReachesTheBrowser) {
    object->t_RegisterMethod("refuse", make_method(object, &ScriptObject::RefuseCall));
    object->t_RegisterMethod("nothing", make_method<ScriptObject>(object, nullptr));
    EXPECT_FALSE(browser.Call(object, "refuse").accepted);
    EXPECT_FALSE(browser.Call(object, "nothing").accepted);
    EXPECT_TRUE(browser.Exceptions().empty());
}

TEST_F(RegistryTest, ASecondRegistrationOfANameWins) {
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::Refuse));
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber));
    EXPECT_EQ(browser.Get(object, "number").value, Value(7));
    object->t_RegisterMethod("count", make_method(object, &ScriptObject::RefuseCall));
    object->t_RegisterMethod("count", make_method(object, &ScriptObject::Count));
    EXPECT_EQ(browser.Call(object, "count").value, Value(0));
}

TEST_F(RegistryTest, UnknownNamesAreRefusedWithALineAndNoException) {
    EXPECT_FALSE(browser.Get(object, "unknown").accepted);
    ExpectLogged(2, "GetProperty() failed");
    EXPECT_FALSE(browser.Set(object, "unknown", 1).accepted);
    ExpectLogged(2, "SetProperty() failed");
    EXPECT_FALSE(browser.Call(object, "unknown").accepted);
    ExpectLogged(2, "Invoke() failed");
    EXPECT_TRUE(browser.Exceptions().empty());
}

TEST_F(RegistryTest, AMethodIsNoPropertyAndAPropertyNoMethod) {
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber));
    EXPECT_FALSE(browser.Call(object, "number").accepted);
    ExpectLogged(2, "Invoke() failed");
    EXPECT_FALSE(browser.Get(object, "toString").accepted);
    ExpectLogged(2, "GetProperty() failed");
}

TEST_F(RegistryTest, ANameWithoutAFunctorIsKnownButRefused) {
    object->t_RegisterProperty("number", nullptr);
    object->t_RegisterMethod("count", nullptr);
    EXPECT_TRUE(browser.HasProperty(object, "number"));
    EXPECT_TRUE(browser.HasMethod(object, "count"));
    EXPECT_FALSE(browser.Get(object, "number").accepted);
    ExpectLogged(2, "GetProperty() has no functor!");
    EXPECT_FALSE(browser.Set(object, "number", 1).accepted);
    ExpectLogged(2, "SetProperty() has NO functor");
    EXPECT_FALSE(browser.Call(object, "count").accepted);
    ExpectLogged(2, "Invoke() functor NOT found");
}

TEST_F(RegistryTest, ANameWithoutAnIdentifierIsNotRegistered) {
    browser.FailFrom("getstringidentifier");
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber));
    object->t_RegisterMethod("count", make_method(object, &ScriptObject::Count));
    object->t_RegisterConstant("SEVEN", 7);
    object->AddCustomProperty("text", NewString("text"));  // is the object's to give back all the same
    browser.StopFailing("getstringidentifier");
    EXPECT_FALSE(browser.HasProperty(object, "number"));
    EXPECT_FALSE(browser.HasMethod(object, "count"));
    EXPECT_FALSE(browser.HasProperty(object, "SEVEN"));
    EXPECT_FALSE(object->HasProperty(nullptr));
    EXPECT_FALSE(object->HasMethod(nullptr));
}

TEST_F(RegistryTest, AConstantIsReadAndNeverWritten) {
    object->t_RegisterConstant("SEVEN", 7);
    EXPECT_TRUE(browser.HasProperty(object, "SEVEN"));
    EXPECT_FALSE(browser.HasMethod(object, "SEVEN"));
    EXPECT_EQ(browser.Get(object, "SEVEN").value, Value(7));
    EXPECT_FALSE(browser.Set(object, "SEVEN", 8).accepted);
    ExpectLogged(2, "SetProperty() failed");
    EXPECT_EQ(browser.Get(object, "SEVEN").value, Value(7));
}

TEST_F(RegistryTest, ACustomStringIsCopiedForEachRead) {
    object->AddCustomProperty("text", NewString(std::string("a\0b", 3)));
    NPVariant first{}, second{};
    EXPECT_TRUE(GetRaw("text", first));
    EXPECT_TRUE(GetRaw("text", second));
    EXPECT_EQ(Value(first), Value(std::string("a\0b", 3)));
    EXPECT_EQ(Value(second), Value(std::string("a\0b", 3)));
    EXPECT_NE(first.value.stringValue.UTF8Characters, second.value.stringValue.UTF8Characters);
    EXPECT_EQ(first.value.stringValue.UTF8Characters[3], '\0');
    npn.releasevariantvalue(&first);
    npn.releasevariantvalue(&second);
}

TEST_F(RegistryTest, AnEmptyCustomStringStaysAString) {
    object->AddCustomProperty("text", NewString(""));
    object->AddCustomProperty("none", NewVariant(OipfJavaScript::StringVariant(nullptr, 0)));
    EXPECT_EQ(browser.Get(object, "text").value, Value(""));
    EXPECT_EQ(browser.Get(object, "none").value, Value(""));
}

TEST_F(RegistryTest, ACustomStringThatCannotBeCopiedIsReadAsNothing) {
    object->AddCustomProperty("text", NewString("text"));
    browser.FailNth("memalloc", 1);
    NPVariant result = OipfJavaScript::Int32Variant(5);
    EXPECT_TRUE(GetRaw("text", result));
    EXPECT_EQ(Value(result), Value(5)) << "the result is untouched";
}

TEST_F(RegistryTest, ACustomStringOfTheGreatestLengthIsNotCopied) {
    auto* text = NewString("x");
    text->value.stringValue.UTF8Length = 0xFFFFFFFF;
    object->AddCustomProperty("text", text);
    NPVariant result{};
    EXPECT_TRUE(GetRaw("text", result));
    EXPECT_EQ(result.type, NPVariantType_Void);
}

TEST_F(RegistryTest, ACustomObjectIsRetainedForEachRead) {
    support::FakeObject& channel = browser.MakeObject("channel");
    npn.retainobject(channel.Pointer());
    object->AddCustomProperty("channel", NewVariant(OipfJavaScript::ObjectVariant(channel.Pointer())));
    EXPECT_EQ(browser.Get(object, "channel").value, Value(channel));
    EXPECT_EQ(channel.HeldByPlugin(), 1u);
    Release();
    EXPECT_EQ(channel.HeldByPlugin(), 0u);
}

TEST_F(RegistryTest, ACustomObjectThatIsNoneIsNeitherRetainedNorLookedInto) {
    object->AddCustomProperty("none", NewVariant(OipfJavaScript::ObjectVariant(nullptr)));
    const unsigned retained = browser.Uses("retainobject");
    NPVariant result{};
    EXPECT_TRUE(object->GetProperty(IdentifierOf("none"), &result));
    EXPECT_EQ(browser.Uses("retainobject"), retained);
}

TEST_F(RegistryTest, OtherCustomValuesAreCopied) {
    object->AddCustomProperty("nothing", NewVariant(OipfJavaScript::VoidVariant()));
    object->AddCustomProperty("null", NewVariant(OipfJavaScript::NullVariant()));
    object->AddCustomProperty("yes", NewVariant(OipfJavaScript::BoolVariant(true)));
    NPVariant half{};
    half.type = NPVariantType_Double;
    half.value.doubleValue = 0.5;
    object->AddCustomProperty("half", NewVariant(half));
    const Outcome nothing = browser.Get(object, "nothing");
    EXPECT_TRUE(nothing.accepted);
    EXPECT_EQ(nothing.value, Value());
    EXPECT_EQ(browser.Get(object, "null").value, Value(nullptr));
    EXPECT_EQ(browser.Get(object, "yes").value, Value(true));
    EXPECT_EQ(browser.Get(object, "half").value, Value(0.5));
}

TEST_F(RegistryTest, ACustomValueHidesAPropertyOfItsNameForReadingOnly) {
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber, &ScriptObject::SetNumber));
    object->AddCustomProperty("number", NewVariant(OipfJavaScript::Int32Variant(1)));
    EXPECT_EQ(browser.Get(object, "number").value, Value(1));
    EXPECT_TRUE(browser.Set(object, "number", 9).accepted);
    EXPECT_EQ(object->m_number, 9);
    EXPECT_EQ(browser.Get(object, "number").value, Value(1));
}

TEST_F(RegistryTest, ALaterCustomValueReplacesAnEarlierOneWithoutReleasingIt) {
    NPVariant* first = NewString("first");
    object->AddCustomProperty("text", first);
    object->AddCustomProperty("text", NewString("second"));
    EXPECT_EQ(browser.Get(object, "text").value, Value("second"));
    Release();
    npn.releasevariantvalue(first);  // it is still ours to give back
    delete first;
}

TEST_F(RegistryTest, CustomValuesAreReleasedWithTheObject) {
    support::FakeObject& channel = browser.MakeObject("channel");
    npn.retainobject(channel.Pointer());
    object->AddCustomProperty("text", NewString("text"));
    object->AddCustomProperty("channel", NewVariant(OipfJavaScript::ObjectVariant(channel.Pointer())));
    object->t_RegisterConstant("SEVEN", 7);
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 1u);
    Release();
    EXPECT_EQ(channel.HeldByPlugin(), 0u);
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

// Functors that say when they are deleted.
struct MortalProperty : OipfJavaScript::IPropertyFunctor {
    ~MortalProperty() override { support::CallList::Instance().Add("property functor deleted"); }
    bool GetProp(NPVariant*) override { return false; }
    bool SetProp(const NPVariant*) override { return false; }
};
struct MortalMethod : OipfJavaScript::IMethodFunctor {
    ~MortalMethod() override { support::CallList::Instance().Add("method functor deleted"); }
    bool operator()(const NPVariant*, std::uint32_t, NPVariant*) override { return false; }
};

TEST_F(RegistryTest, AtItsEndAnObjectGivesUpItsCustomValuesThenItsPropertiesThenItsMethods) {
    static decltype(NPNetscapeFuncs::releasevariantvalue) release;
    release = std::exchange(npn.releasevariantvalue, [](NPVariant* variant) {
        support::CallList::Instance().Add("custom value released");
        release(variant);
    });
    object->t_RegisterMethod("method", new MortalMethod);
    object->t_RegisterProperty("property", new MortalProperty);
    object->AddCustomProperty("text", NewString("text"));
    object->t_RegisterConstant("SEVEN", 7);
    Release();
    EXPECT_EQ(Calls(), (std::vector<std::string>{"custom value released", "custom value released",
                                                 "property functor deleted", "method functor deleted"}));
}

TEST_F(RegistryTest, AtItsEndAnObjectHasNoInstanceAnyMore) {
    static OipfJavaScript::JSNPObject* dying;
    static decltype(NPNetscapeFuncs::releasevariantvalue) release;
    dying = object;
    release = std::exchange(npn.releasevariantvalue, [](NPVariant* variant) {
        std::string location;
        EXPECT_FALSE((dying->*&ScriptObject::t_GetDocumentLocation)(location));
        release(variant);
    });
    object->AddCustomProperty("text", NewString("text"));
    Release();
    ExpectLogged(2, "t_GetDocumentLocation, Object has been invalidated! (m_npp is NULL)");
}

TEST_F(RegistryTest, AnInvalidatedObjectStillAnswers) {
    object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber, &ScriptObject::SetNumber));
    object->t_RegisterMethod("count", make_method(object, &ScriptObject::Count));
    object->t_RegisterConstant("SEVEN", 7);
    object->Invalidate();
    EXPECT_EQ(object->m_npp, nullptr);
    EXPECT_EQ(browser.Get(object, "number").value, Value(7));
    EXPECT_TRUE(browser.Set(object, "number", 8).accepted);
    EXPECT_EQ(browser.Call(object, "count", {1}).value, Value(1));
    EXPECT_EQ(browser.Get(object, "SEVEN").value, Value(7));
}

TEST_F(RegistryTest, ReplacingAnObjectsPropertiesFromInsideACallIsLegal) {
    object->t_RegisterMethod("act", make_method(object, &ScriptObject::Act));
    object->m_action = [this] {
        object->t_RegisterProperty("number", make_property(object, &ScriptObject::GetNumber));
        EXPECT_EQ(browser.Get(object, "number").value, Value(7));
    };
    EXPECT_TRUE(browser.Call(object, "act").accepted);
}

}  // namespace
