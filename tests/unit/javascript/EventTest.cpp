// The DOM Event object.
#include "tests/unit/javascript/ScriptObject.h"

namespace {

using OipfJavaScript::CJSEvent;
using support::Value;
using EventClass = OipfJavaScript::JSNpapiObject<CJSEvent>;

class EventTest : public ScriptObjectTest {
protected:
    CJSEvent* MakeEvent(const std::string& type = "Focus", NPObject* target = nullptr) {
        return event = object->t_CreateEventObject(type, target);
    }
    Value Get(const std::string& name) {
        const support::Outcome outcome = browser.Get(event, name);
        EXPECT_TRUE(outcome.accepted) << name;
        return outcome.value;
    }
    void TearDown() override {
        if (event != nullptr) {
            npn.releaseobject(event);
        }
        ScriptObjectTest::TearDown();
    }
    CJSEvent* event = nullptr;
};

TEST_F(EventTest, ANewEventCarriesOneReferenceForItsCaller) {
    ASSERT_NE(MakeEvent(), nullptr);
    ExpectLogged("CreateEventObject \"Focus\"");
    EXPECT_EQ(event->referenceCount, 1u);
    EXPECT_EQ(event->_class, &EventClass::s_npclass);
}

TEST_F(EventTest, ItsPropertiesReadAsAnEventAtItsTarget) {
    MakeEvent("Focus", object);
    EXPECT_EQ(Get("type"), Value("Focus"));
    EXPECT_EQ(Get("target"), Value(object));
    EXPECT_EQ(Get("currentTarget"), Value(object));
    EXPECT_EQ(Get("eventPhase"), Value(2));
    EXPECT_EQ(Get("bubbles"), Value(false));
    EXPECT_EQ(Get("cancelable"), Value(false));
    EXPECT_EQ(Get("namespaceURI"), Value(nullptr));
}

TEST_F(EventTest, ItIsNamedEvent) {
    MakeEvent();
    EXPECT_EQ(browser.Call(event, "toString").value, Value("[object Event]"));
}

TEST_F(EventTest, AnEventWithoutTypeAndTargetReadsNull) {
    MakeEvent("");
    EXPECT_EQ(Get("type"), Value(nullptr));
    EXPECT_EQ(Get("target"), Value(nullptr));
    EXPECT_EQ(Get("currentTarget"), Value(nullptr));
}

TEST_F(EventTest, ItsTypeIsACopyForEachRead) {
    MakeEvent();
    const std::size_t blocks = browser.GetLedger().BlocksInUse();
    EXPECT_EQ(Get("type"), Value("Focus"));
    EXPECT_EQ(Get("type"), Value("Focus"));
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), blocks);
    browser.FailNth("memalloc", 1);
    EXPECT_FALSE(browser.Get(event, "type").accepted);
}

TEST_F(EventTest, AllItsPropertiesAreReadOnly) {
    MakeEvent("Focus", object);
    for (const char* name :
         {"type", "target", "currentTarget", "eventPhase", "bubbles", "cancelable", "namespaceURI"}) {
        EXPECT_TRUE(browser.HasProperty(event, name)) << name;
        EXPECT_FALSE(browser.Set(event, name, "other").accepted) << name;
    }
    EXPECT_EQ(Get("type"), Value("Focus"));
}

TEST_F(EventTest, ItHasNoOtherProperties) {
    MakeEvent();
    EXPECT_FALSE(browser.HasProperty(event, "timeStamp"));
    EXPECT_FALSE(browser.Get(event, "timeStamp").accepted);
}

TEST_F(EventTest, ItsNamesAreRegisteredInOrder) {
    static std::vector<std::string> names;
    static decltype(NPNetscapeFuncs::getstringidentifier) identify;
    names.clear();
    identify = std::exchange(npn.getstringidentifier, [](const NPUTF8* name) {
        names.emplace_back(name);
        return identify(name);
    });
    MakeEvent();
    EXPECT_EQ(names,
              (std::vector<std::string>{"addEventListener", "removeEventListener", "toString", "type", "target",
                                        "currentTarget", "eventPhase", "bubbles", "cancelable", "namespaceURI"}));
}

TEST_F(EventTest, AnInvalidatedEventStillReads) {
    MakeEvent("Focus", object);
    event->_class->invalidate(event);
    EXPECT_EQ(Get("type"), Value("Focus"));
    EXPECT_EQ(Get("target"), Value(object));
    EXPECT_EQ(Get("eventPhase"), Value(2));
    EXPECT_EQ(browser.Call(event, "toString").value, Value("[object Event]"));
}

TEST_F(EventTest, ItTakesListenersAsEveryObjectDoes) {
    MakeEvent();
    EXPECT_TRUE(browser.HasMethod(event, "addEventListener"));
    EXPECT_TRUE(browser.HasMethod(event, "removeEventListener"));
    support::FakeObject& listener = browser.MakeFunction("listener");
    EXPECT_TRUE(browser.Call(event, "addEventListener", {"Focus", listener, false}).accepted);
    EXPECT_EQ(listener.HeldByPlugin(), 1u);
    EXPECT_TRUE(browser.Call(event, "removeEventListener", {"Focus", listener, false}).accepted);
}

TEST_F(EventTest, SettingItAgainReplacesTypeAndTarget) {
    MakeEvent("Focus", object);
    event->Set("Blur", nullptr);
    EXPECT_EQ(Get("type"), Value("Blur"));
    EXPECT_EQ(Get("target"), Value(nullptr));
}

TEST_F(EventTest, ItsTargetIsNotRetained) {
    MakeEvent("Focus", object);
    EXPECT_EQ(object->referenceCount, 1u);
    Get("target");
    browser.CollectGarbage();
    EXPECT_EQ(object->referenceCount, 1u);
}

TEST_F(EventTest, WhenItsTargetDiesTheTargetReadsNull) {
    MakeEvent("Focus", object);
    Release();
    EXPECT_EQ(ScriptObject::s_living, 0);
    EXPECT_EQ(Get("target"), Value(nullptr));
    EXPECT_EQ(Get("currentTarget"), Value(nullptr));
    EXPECT_EQ(Get("type"), Value("Focus"));
}

TEST_F(EventTest, AnEventThatWasGivenAnotherTargetKeepsItWhenTheFirstDies) {
    support::FakeObject& element = browser.MakeObject("element");
    MakeEvent("Focus", object);
    event->Set("Focus", element.Pointer());
    Release();
    EXPECT_EQ(Get("target"), Value(element));
}

TEST_F(EventTest, ManyEventsOfOneTargetMayDieInAnyOrder) {
    CJSEvent* first = object->t_CreateEventObject("Focus", object);
    CJSEvent* second = object->t_CreateEventObject("Blur", object);
    MakeEvent("Focus", object);
    npn.releaseobject(second);
    Release();
    npn.releaseobject(first);
    EXPECT_EQ(Get("target"), Value(nullptr));
}

TEST_F(EventTest, AForeignTargetIsReadAsItIs) {
    support::FakeObject& element = browser.MakeObject("element");
    MakeEvent("Focus", element.Pointer());
    EXPECT_EQ(Get("target"), Value(element));
    EXPECT_EQ(element.HeldByPlugin(), 0u);
}

TEST_F(EventTest, AnInvalidatedObjectMakesNone) {
    object->Invalidate();
    ClearLog();
    EXPECT_EQ(MakeEvent("Focus", object), nullptr);
    EXPECT_EQ(support::Log::Instance().Texts(),
              (std::vector<std::string>{"CreateEventObject \"Focus\"",
                                        "t_CreateEventObject, Object has been invalidated! (m_npp is NULL)"}));
    ExpectLogged(2, "t_CreateEventObject, Object has been invalidated! (m_npp is NULL)");
}

TEST_F(EventTest, ABrowserThatMakesNoneIsLogged) {
    browser.FailNth("createobject", 1);
    EXPECT_EQ(MakeEvent(), nullptr);
    ExpectLogged(2, "CreateEventObject failed");
}

TEST_F(EventTest, TheFirstObjectThatMakesAnEventGivesTheTable) {
    EventClass::s_pNPNFuncs = nullptr;
    MakeEvent();
    EXPECT_EQ(EventClass::s_pNPNFuncs, object->m_pNPNFuncs);
}

TEST_F(EventTest, ATableThatIsThereStays) {
    NPNetscapeFuncs other = *browser.Table(sizeof(NPNetscapeFuncs));
    EventClass::s_pNPNFuncs = &other;
    MakeEvent();
    EXPECT_EQ(EventClass::s_pNPNFuncs, &other);
    npn.releaseobject(std::exchange(event, nullptr));
    EventClass::s_pNPNFuncs = browser.Functions();
}

}  // namespace
