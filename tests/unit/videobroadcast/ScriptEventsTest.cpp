// The delivery of script events: the handler property first, then the listeners with an Event object.
#include <algorithm>

#include "tests/unit/videobroadcast/ObjectTest.h"

#include "javascript/Variants.h"

namespace videobroadcast {
namespace {

class ScriptEvents : public ObjectTest {
protected:
    void TearDown() override {
        Drop();
        object.Destroy();
        ObjectTest::TearDown();
    }

    // Raises an event with these arguments; an object among them gets a reference, a string a block, as owners do it.
    void Raise(unsigned id, const Values& values = {}) {
        Fill(values);
        object->m_OnEvent(id, arguments);
    }
    void Fill(const Values& values) {
        Drop();
        for (const Value& value : values) arguments.push_back(new NPVariant(Owned(value)));
    }
    NPVariant Owned(const Value& value) {
        const std::string text = value.Text();
        switch (value.Type()) {
            case NPVariantType_Int32: return OipfJavaScript::Int32Variant(value.Int());
            case NPVariantType_Null: return OipfJavaScript::NullVariant();
            case NPVariantType_Object:
                return OipfJavaScript::ObjectVariant(browser.Functions()->retainobject(value.Object()));
            case NPVariantType_String: {
                const auto size = static_cast<std::uint32_t>(text.size());
                auto* copy = static_cast<char*>(browser.Functions()->memalloc(size));
                text.copy(copy, size);
                return OipfJavaScript::StringVariant(copy, size);
            }
            default: return OipfJavaScript::VoidVariant();
        }
    }
    // The holders that no Event took are the caller's to delete.
    void Drop() {
        for (NPVariant* argument : arguments) delete argument;
        arguments.clear();
    }

    Probed object{browser};
    std::vector<NPVariant*> arguments;
};

TEST_F(ScriptEvents, TheHandlerComesFirstAlsoWhenTheListenerWasThereBefore) {
    Listen(object.Get(), "PlayStateChange");
    Listen(object.Get(), "PlayStateChange");
    SetHandler(object.Get(), "onPlayStateChange");
    Forget();
    Raise(5, {1, 3});
    EXPECT_EQ(Calls({"script."}),
              (Lines{"script.onPlayStateChange(1, 3)", "script.PlayStateChange listener(plug-in object#2)",
                     "script.PlayStateChange listener#2(plug-in object#2)"}));
}

TEST_F(ScriptEvents, LogsEachStep) {
    SetHandler(object.Get(), "onFocus");
    Forget();
    Raise(7);
    EXPECT_EQ(support::Log::Instance().Texts(),
              (Lines{"COipfVideoBroadcast::m_OnEvent(7)", "Invoke handler()", "Create DOM Event for Focus",
                     "CreateEventObject \"Focus\"", "Call Event listenters", "CallEventListeners \"Focus\"",
                     "There are 0 callbacks for this event"}));
    ExpectLogged(3, "COipfVideoBroadcast::m_OnEvent(7)");
    ExpectLogged(3, "Invoke handler()");
    ExpectLogged(3, "Call Event listenters");
}

TEST_F(ScriptEvents, WithoutAHandlerTheListenersAreCalled) {
    Listen(object.Get(), "Focus");
    Forget();
    Raise(7);
    EXPECT_EQ(Told(), Lines{"event Focus{}"});
    ExpectNotLogged("Invoke handler()");
}

TEST_F(ScriptEvents, TheEventIsMadeEvenWhenNobodyListens) {
    const unsigned before = browser.Uses("createobject");
    Raise(7);
    EXPECT_EQ(browser.Uses("createobject"), before + 1);
}

TEST_F(ScriptEvents, TheEventDiesWithItsDelivery) {
    NPObject* event = nullptr;
    FakeObject& listener = browser.MakeFunction("listener", [&](const Values& values) {
        event = values.at(0).Object();
        EXPECT_EQ(browser.GetLedger().HeldByPlugin(event), 1u);  // the creation reference
    });
    browser.Call(object.Get(), "addEventListener", {"Focus", listener, false});
    browser.MayKeep(listener);
    Raise(7);
    EXPECT_FALSE(browser.GetLedger().IsAlive(event));
}

TEST_F(ScriptEvents, TheTargetOfTheEventIsTheObject) {
    Values targets;
    FakeObject& listener = browser.MakeFunction("listener", [&](const Values& values) {
        targets = {browser.Get(values.at(0).Object(), "target").value,
                   browser.Get(values.at(0).Object(), "currentTarget").value};
    });
    browser.Call(object.Get(), "addEventListener", {"Focus", listener, false});
    browser.MayKeep(listener);
    Raise(7);
    const NPObject* self = object.Get();
    EXPECT_EQ(targets, (Values{Value(const_cast<NPObject*>(self)), Value(const_cast<NPObject*>(self))}));
}

struct ArgumentsOfEvent {
    unsigned id;
    const char* type;
    std::size_t count;
    const char* properties;
};

const ArgumentsOfEvent kEvents[] = {
    {3, "ChannelChangeError", 2, "channel: 1, errorState: 2"},
    {4, "ChannelChangeSucceeded", 1, "channel: 1"},
    {5, "PlayStateChange", 2, "state: 1, error: 2"},
    {6, "FullScreenChange", 0, ""},
    {7, "Focus", 0, ""},
    {8, "Blur", 0, ""},
    {9, "ProgrammesChanged", 0, ""},
    {10, "ParentalRatingChange", 3, "contentID: 1, rating: 2, DRMSystemID: 3"},
    {11, "ParentalRatingError", 3, "contentID: 1, rating: 2, DRMSystemID: 3"},
    {12, "StreamEvent", 4, "name: 1, data: 2, text: 3, status: 4"},
    {13, "DrmRightsError", 4, "errorState: 1, contentID: 2, DRMSystemID: 3, rightsIssuerURL: 4"},
};

// With the right count they stand there all, with every other count none.
TEST_F(ScriptEvents, ArgumentsStandOnTheEventUnderTheirNames) {
    for (const ArgumentsOfEvent& row : kEvents) {
        Listen(object.Get(), row.type);
        for (std::size_t count = 0; count <= 5; ++count) {
            Forget();
            Values values;
            for (std::size_t i = 1; i <= count; ++i) values.emplace_back(i);
            Raise(row.id, values);
            const std::string properties = count == row.count ? row.properties : "";
            EXPECT_EQ(Told(), Lines{std::string("event ") + row.type + "{" + properties + "}"}) << count;
        }
    }
}

TEST_F(ScriptEvents, HandlersGetEveryArgumentWhateverTheCount) {
    SetHandler(object.Get(), "onBlur");
    Raise(8, {1, nullptr, Value(), "text"});
    EXPECT_EQ(Told(), Lines{"script.onBlur(1, null, undefined, \"text\")"});
}

TEST_F(ScriptEvents, WrongCountsAreLoggedForChannelChangesOnly) {
    Raise(3, {1});
    ExpectLogged(2, "Wrong parameters for ChannelChangeError");
    Raise(4, {1, 2});
    ExpectLogged(2, "Wrong parameters for ChannelChangeSuccess");
    for (const unsigned id : {5u, 6u, 10u, 11u, 12u, 13u}) Raise(id, {1, 2, 3, 4, 5});
    EXPECT_EQ(LinesWith("Wrong parameters"), 2u);
}

TEST_F(ScriptEvents, HoldersThatNoEventTookStayTheCallers) {
    Raise(3, {1, 2});
    EXPECT_TRUE(arguments.empty());
    for (const unsigned id : {3u, 5u, 8u, 1000u}) {
        Raise(id, {1, 2, 3});
        EXPECT_EQ(arguments.size(), 3u) << id;
    }
    browser.FailNth("createobject", 1);
    Raise(3, {1, 2});
    EXPECT_EQ(arguments.size(), 2u);
}

TEST_F(ScriptEvents, RightCountsAreNotLogged) {
    Raise(3, {1, 2});
    Raise(4, {1});
    EXPECT_EQ(LinesWith("Wrong parameters"), 0u);
}

TEST_F(ScriptEvents, InternalNumbersNeverReachScript) {
    FakeObject& argument = browser.MakeObject("argument");
    const unsigned before = browser.Uses("createobject");
    for (const unsigned id : {1000u, 1001u, 1013u, 4294967295u}) Raise(id, {argument, "text"});
    EXPECT_EQ(browser.Uses("createobject"), before);
    EXPECT_EQ(argument.HeldByPlugin(), 0u);  // the values are released all the same
    ExpectLogged(3, "COipfVideoBroadcast::m_OnEvent(1000)");
    EXPECT_EQ(LinesWith("Create DOM Event"), 0u);
}

TEST_F(ScriptEvents, ANumberWithoutANameIsAnEventOfTheEmptyType) {
    Listen(object.Get(), "");
    Forget();
    Raise(999);
    EXPECT_EQ(Told(), Lines{"event {}"});
    ExpectLogged(3, "Create DOM Event for ");
    ExpectLogged(3, "CreateEventObject \"\"");
}

TEST_F(ScriptEvents, ANumberWithoutANameStaysWithoutHandler) {
    Raise(2);
    Raise(2);
    ExpectNotLogged("Invoke handler()");
    ExpectLogged(3, "Create DOM Event for ", 2);
}

TEST_F(ScriptEvents, WithoutTheEventObjectNoListenerIsCalledAndTheValuesAreReleased) {
    FakeObject& argument = browser.MakeObject("argument");
    SetHandler(object.Get(), "onChannelChangeSucceeded");
    Listen(object.Get(), "ChannelChangeSucceeded");
    Forget();
    browser.FailNth("createobject", 1);
    Raise(4, {argument});
    EXPECT_EQ(Told(), Lines{"script.onChannelChangeSucceeded(argument)"});
    ExpectNotLogged("Call Event listenters");
    EXPECT_EQ(argument.HeldByPlugin(), 0u);
}

TEST_F(ScriptEvents, ValuesAreReleasedInOrderAfterTheListeners) {
    FakeObject& first = browser.MakeResult("first");
    FakeObject& second = browser.MakeResult("second");
    static std::vector<Value>* released;
    std::vector<Value> values;
    released = &values;
    static decltype(NPNetscapeFuncs::releasevariantvalue) release;
    release = browser.Functions()->releasevariantvalue;
    browser.Functions()->releasevariantvalue = [](NPVariant* variant) {
        if (variant->type == NPVariantType_Object) {
            released->emplace_back(*variant);
            support::CallList::Instance().Add("event value released");
        }
        release(variant);
    };
    Listen(object.Get(), "ChannelChangeError");
    Forget();
    Raise(3, {first, second});
    EXPECT_EQ(values, (std::vector<Value>{first, second}));
    EXPECT_EQ(Told(), (Lines{"event ChannelChangeError{channel: first, errorState: second}", "event value released",
                             "event value released"}));
}

TEST_F(ScriptEvents, AnEventThatThePageKeepsReadsUndefinedAfterwards) {
    for (const bool releaseMakesVoid : {false, true}) {
        browser.releaseMakesVoid = releaseMakesVoid;
        FakeObject& channel = browser.MakeObject("channel");
        NPObject* kept = nullptr;
        FakeObject& listener = browser.MakeFunction("listener", [&](const Values& values) {
            kept = values.at(0).Object();
            browser.Hold(values.at(0));
            EXPECT_EQ(browser.Get(kept, "channel").value, Value(channel));
        });
        browser.Call(object.Get(), "addEventListener", {"ChannelChangeError", listener, false});
        Raise(3, {channel, 12});
        ASSERT_TRUE(browser.GetLedger().IsAlive(kept));
        EXPECT_EQ(Describe(kept), "ChannelChangeError{channel: undefined, errorState: undefined}");
        EXPECT_EQ(browser.GetLedger().HeldByPlugin(kept), 0u);
        EXPECT_EQ(browser.Get(kept, "target").value, Value(static_cast<NPObject*>(object.Get())));
        browser.Call(object.Get(), "removeEventListener", {"ChannelChangeError", listener, false});
        browser.CollectGarbage();
        EXPECT_EQ(channel.HeldByPlugin(), 0u);
    }
}

TEST_F(ScriptEvents, AnEventThatOutlivesTheObjectHasNoTarget) {
    NPObject* kept = nullptr;
    FakeObject& listener = browser.MakeFunction("listener", [&](const Values& values) {
        kept = values.at(0).Object();
        browser.Hold(values.at(0));
    });
    browser.Call(object.Get(), "addEventListener", {"Focus", listener, false});
    browser.MayKeep(listener);
    Raise(7);
    object.Destroy();
    EXPECT_EQ(browser.Get(kept, "target").value, Value(nullptr));
}

TEST_F(ScriptEvents, HandlersGetCopiesOfStringsThatAreGivenBackAfterTheDelivery) {
    std::size_t during = 0;
    SetHandler(object.Get(), "onBlur", [&] { during = browser.GetLedger().BlocksInUse(); });
    Raise(8, {"text"});
    EXPECT_EQ(during, 2u);
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(ScriptEvents, CopiesOfANestedDeliveryAreGivenBackWithTheOutermost) {
    std::size_t afterNested = 0;
    SetHandler(object.Get(), "onBlur", [&] {
        std::vector<NPVariant*> nested = {new NPVariant(Owned("nested"))};
        object->m_OnEvent(7, nested);
        for (NPVariant* argument : nested) delete argument;
        afterNested = browser.GetLedger().BlocksInUse();
    });
    SetHandler(object.Get(), "onFocus");
    Raise(8, {"text"});
    EXPECT_EQ(afterNested, 3u);  // the outer text, its copy, and the copy for the nested handler
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(ScriptEvents, ACopyThatCannotBeMadeIsUndefined) {
    SetHandler(object.Get(), "onBlur");
    Fill({"text", 7});
    browser.FailNth("memalloc", 1);
    object->m_OnEvent(8, arguments);
    EXPECT_EQ(Told(), Lines{"script.onBlur(undefined, 7)"});
}

TEST_F(ScriptEvents, NothingGrowsFromEventToEvent) {
    FakeObject& channel = browser.MakeObject("channel");
    SetHandler(object.Get(), "onChannelChangeSucceeded");
    Listen(object.Get(), "ChannelChangeSucceeded");
    for (int i = 0; i < 100; ++i) Raise(4, {channel});
    EXPECT_EQ(channel.HeldByPlugin(), 0u);
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(ScriptEvents, AHandlerThatFailsKeepsNoListenerFromBeingCalled) {
    FakeObject& handler = browser.MakeObject("onFocus");  // cannot be called
    browser.MayKeep(handler);
    browser.Set(object.Get(), "onFocus", handler);
    Listen(object.Get(), "Focus");
    Forget();
    Raise(7);
    EXPECT_EQ(Told(), (Lines{"script.onFocus()", "event Focus{}"}));
}

TEST_F(ScriptEvents, AHandlersResultIsGivenBack) {
    FakeObject& result = browser.MakeResult("result");
    FakeObject& handler = browser.MakeFunction("handler", [&] { return Value(result); });
    browser.Set(object.Get(), "onFocus", handler);
    browser.MayKeep(handler);
    Raise(7);
    EXPECT_FALSE(result.IsAlive());
}

TEST_F(ScriptEvents, AfterInvalidationNothingIsDeliveredAndNothingReleased) {
    FakeObject& argument = browser.MakeObject("argument");
    SetHandler(object.Get(), "onFocus");
    Listen(object.Get(), "Focus");
    object.Invalidate();
    Forget();
    Raise(7, {argument, "text"});
    EXPECT_TRUE(Told().empty());
    EXPECT_EQ(support::Log::Instance().Texts(), Lines{"m_OnEvent m_npp is NULL!"});
    EXPECT_EQ(argument.HeldByPlugin(), 1u);
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 1u);
    for (NPVariant* value : arguments) browser.Functions()->releasevariantvalue(value);
}

TEST_F(ScriptEvents, ListenersOfOtherTypesAreNotCalled) {
    Listen(object.Get(), "focus");
    Listen(object.Get(), "Blur");
    Forget();
    Raise(7);
    EXPECT_TRUE(Told().empty());
}

TEST_F(ScriptEvents, AListenerAddedByTheHandlerHearsTheSameEvent) {
    SetHandler(object.Get(), "onFocus", [&] { Listen(object.Get(), "Focus"); });
    Raise(7);
    EXPECT_EQ(Told(), (Lines{"script.onFocus()", "event Focus{}"}));
}

TEST_F(ScriptEvents, AListenerAddedByAListenerHearsOnlyTheNext) {
    bool added = false;
    Listen(object.Get(), "Focus", [&] {
        if (!added) {
            added = true;
            Listen(object.Get(), "Focus");
        }
    });
    Forget();
    Raise(7);
    EXPECT_EQ(Told().size(), 1u);
    Raise(7);
    EXPECT_EQ(Told().size(), 3u);
}

}  // namespace
}  // namespace videobroadcast
