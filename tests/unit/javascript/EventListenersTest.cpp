// addEventListener and removeEventListener, and the dispatch to listeners.
#include "tests/unit/javascript/ScriptObject.h"

namespace {

using support::FakeObject;
using support::Outcome;
using support::Value;
using support::Values;

class EventListenersTest : public ScriptObjectTest {
protected:
    using Texts = std::vector<std::string>;

    void TearDown() override {
        // Listeners that are never removed keep their reference beyond the object: the page's end ends them.
        for (FakeObject* listener : {&first, &second}) {
            if (listener->IsAlive()) browser.MayKeep(*listener, listener->HeldByPlugin());
        }
        ScriptObjectTest::TearDown();
    }

    Outcome Add(const std::string& type, const FakeObject& listener, bool useCapture = false) {
        return browser.Call(object, "addEventListener", {type, listener, useCapture});
    }
    Outcome Remove(const std::string& type, const FakeObject& listener, bool useCapture = false) {
        return browser.Call(object, "removeEventListener", {type, listener, useCapture});
    }
    void Dispatch(const std::string& type) { object->t_CallEventListeners(type, nullptr); }

    static std::string TypeLine(const std::string& type, const FakeObject& listener, const char* useCapture) {
        char line[128];
        std::snprintf(line, sizeof line, "type %s, object %p, useCapture %s", type.c_str(),
                      static_cast<void*>(listener.Pointer()), useCapture);
        return line;
    }

    FakeObject& first = browser.MakeFunction("first");
    FakeObject& second = browser.MakeFunction("second");
};

TEST_F(EventListenersTest, AnAddedListenerIsHeldOnceAndCalled) {
    const Outcome outcome = Add("Focus", first);
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.value, Value()) << "the result is never written";
    EXPECT_EQ(first.HeldByPlugin(), 1u);
    ExpectLogged(3, "addEventListener correct args");
    ExpectLogged(4, TypeLine("Focus", first, "false"));
    ExpectLogged(3, "EventListener added");
    Dispatch("Focus");
    EXPECT_EQ(Calls({"script."}), Texts{"script.first(null)"});
}

TEST_F(EventListenersTest, UseCaptureIsLoggedAndHasNoOtherEffect) {
    EXPECT_TRUE(Add("Focus", first, true).accepted);
    ExpectLogged(TypeLine("Focus", first, "true"));
    EXPECT_TRUE(Add("Focus", first, false).accepted);
    ExpectLogged("EventListener already added");
    EXPECT_TRUE(Remove("Focus", first, false).accepted);
    EXPECT_EQ(first.HeldByPlugin(), 0u);
}

TEST_F(EventListenersTest, TheSameFunctionIsAddedOnceForAType) {
    EXPECT_TRUE(Add("Focus", first).accepted);
    EXPECT_TRUE(Add("Focus", first).accepted);
    ExpectLogged(3, "EventListener already added");
    ExpectLogged("EventListener added");
    EXPECT_EQ(first.HeldByPlugin(), 1u);
    Dispatch("Focus");
    EXPECT_EQ(first.Calls().size(), 1u);
}

TEST_F(EventListenersTest, TheSameFunctionIsAddedOncePerType) {
    Add("Focus", first);
    Add("Blur", first);
    EXPECT_EQ(first.HeldByPlugin(), 2u);
    Dispatch("Blur");
    EXPECT_EQ(first.Calls().size(), 1u);
    Remove("Focus", first);
    Dispatch("Blur");
    EXPECT_EQ(first.Calls().size(), 2u);
}

TEST_F(EventListenersTest, TypesAreComparedByteByByte) {
    Add("Focus", first);
    Dispatch("focus");
    Dispatch("Focus ");
    EXPECT_TRUE(first.Calls().empty());
}

TEST_F(EventListenersTest, AnEmptyTypeIsATypeToo) {
    Add("", first);
    Dispatch("");
    EXPECT_EQ(first.Calls().size(), 1u);
}

TEST_F(EventListenersTest, TheTypeIsReadAsLatin1) {
    Add("caf\xC3\xA9", first);
    Dispatch("caf\xE9");
    EXPECT_EQ(first.Calls().size(), 1u);
}

TEST_F(EventListenersTest, ATypeThatIsNotLatin1StandsForItsBeginning) {
    EXPECT_TRUE(Add("Foc\xE2\x82\xAC", first).accepted);
    Dispatch("Foc");
    EXPECT_EQ(first.Calls().size(), 1u);
}

TEST_F(EventListenersTest, ListenersRunInTheOrderTheyWereAdded) {
    Add("Focus", second);
    Add("Blur", first);
    Add("Focus", first);
    Dispatch("Focus");
    EXPECT_EQ(Calls({"script."}), (Texts{"script.second(null)", "script.first(null)"}));
}

TEST_F(EventListenersTest, ARemovedListenerIsGivenBackAndNotCalled) {
    Add("Focus", first);
    Add("Focus", second);
    const Outcome outcome = Remove("Focus", first);
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.value, Value());
    EXPECT_EQ(first.HeldByPlugin(), 0u);
    ExpectLogged(0, "JSNPObject::m_RemoveEventListener");
    ExpectLogged(3, "removeEventListener correct args");
    ExpectLogged(3, "Remove Focus EventListener()");
    Dispatch("Focus");
    EXPECT_EQ(Calls({"script."}), Texts{"script.second(null)"});
}

TEST_F(EventListenersTest, AListenerAddedAgainGoesToTheEnd) {
    Add("Focus", first);
    Add("Focus", second);
    Remove("Focus", first);
    Add("Focus", first);
    Dispatch("Focus");
    EXPECT_EQ(Calls({"script."}), (Texts{"script.second(null)", "script.first(null)"}));
}

TEST_F(EventListenersTest, RemovingWhatWasNeverAddedFails) {
    EXPECT_FALSE(Remove("Focus", first).accepted);
    Add("Focus", first);
    EXPECT_FALSE(Remove("Focus", second).accepted);
    EXPECT_FALSE(Remove("Blur", first).accepted);
    EXPECT_EQ(first.HeldByPlugin(), 1u);
    ExpectLogged(0, "JSNPObject::m_RemoveEventListener", 3);
    ExpectNotLogged("Remove Focus EventListener()");
    EXPECT_TRUE(browser.Exceptions().empty());
}

TEST_F(EventListenersTest, WhatRunsWhenARemovedListenerDiesNoLongerFindsIt) {
    static std::function<void()> atItsEnd;
    static NPClass mortal{};
    mortal.structVersion = NP_CLASS_STRUCT_VERSION_CTOR;
    mortal.deallocate = [](NPObject* listener) {
        atItsEnd();
        std::free(listener);
    };
    NPObject* listener = npn.createobject(npp, &mortal);
    atItsEnd = [this] {
        Dispatch("Focus");
        Add("Focus", second);
    };
    {
        const support::PassedValues arguments(browser, {"Focus", listener, false});
        NPVariant result{};
        EXPECT_TRUE(object->Invoke(support::IdentifierOf("addEventListener"), arguments.Data(), 3, &result));
    }
    npn.releaseobject(listener);
    NPVariant arguments[3] = {Passed("Focus"), OipfJavaScript::ObjectVariant(listener), Passed(false)};
    NPVariant result{};
    EXPECT_TRUE(object->Invoke(support::IdentifierOf("removeEventListener"), arguments, 3, &result));
    ExpectLogged("There are 0 callbacks for this event");
    EXPECT_EQ(second.HeldByPlugin(), 1u);
    atItsEnd = nullptr;
}

TEST_F(EventListenersTest, AWrongNumberOfArgumentsIsRefused) {
    for (const Values& arguments :
         {Values{}, Values{"Focus"}, Values{"Focus", first}, Values{"Focus", first, true, 1}}) {
        EXPECT_FALSE(browser.Call(object, "addEventListener", arguments).accepted);
        EXPECT_FALSE(browser.Call(object, "removeEventListener", arguments).accepted);
    }
    ExpectLogged(2, "addEventListener() wrong number of args", 4);
    ExpectLogged(2, "removeEventListener() wrong number of args", 4);
    EXPECT_EQ(first.HeldByPlugin(), 0u);
    EXPECT_TRUE(browser.Exceptions().empty());
}

TEST_F(EventListenersTest, ArgumentsOfAnotherTypeAreRefused) {
    const std::vector<Values> wrong = {{1, first, false},        {nullptr, first, false},   {Value(), first, false},
                                       {"Focus", "f", false},    {"Focus", nullptr, false}, {"Focus", Value(), false},
                                       {"Focus", first, 0},      {"Focus", first, nullptr}, {"Focus", first, Value()},
                                       {"Focus", first, "true"}, {first, first, false}};
    for (const Values& arguments : wrong) {
        EXPECT_FALSE(browser.Call(object, "addEventListener", arguments).accepted) << support::Show(arguments);
        EXPECT_FALSE(browser.Call(object, "removeEventListener", arguments).accepted) << support::Show(arguments);
    }
    ExpectLogged(2, "addEventListener() wrong type of args", wrong.size());
    ExpectLogged(2, "removeEventListener() wrong type of args", wrong.size());
    EXPECT_EQ(first.HeldByPlugin(), 0u);
}

TEST_F(EventListenersTest, AnObjectThatIsNoneIsNoListener) {
    NPVariant arguments[3] = {Passed("Focus"), OipfJavaScript::ObjectVariant(nullptr), Passed(false)};
    NPVariant result{};
    EXPECT_FALSE(object->Invoke(support::IdentifierOf("addEventListener"), arguments, 3, &result));
    Dispatch("Focus");
    ExpectLogged("There are 0 callbacks for this event");
}

TEST_F(EventListenersTest, AnObjectMayRefuseListenersSilentlyAndBeforeLookingAtArguments) {
    object->m_allowsListeners = false;
    EXPECT_TRUE(Add("Focus", first).accepted);
    EXPECT_TRUE(browser.Call(object, "addEventListener", {1}).accepted);
    EXPECT_EQ(first.HeldByPlugin(), 0u);
    EXPECT_TRUE(browser.Exceptions().empty());
    EXPECT_TRUE(support::Log::Instance().Lines().empty());
}

TEST_F(EventListenersTest, AnObjectThatRefusesListenersKeepsTheOnesItHas) {
    Add("Focus", first);
    object->m_allowsListeners = false;
    ClearLog();
    EXPECT_TRUE(Remove("Focus", first).accepted);
    EXPECT_TRUE(browser.Call(object, "removeEventListener", {1}).accepted);
    EXPECT_EQ(first.HeldByPlugin(), 1u);
    EXPECT_EQ(support::Log::Instance().Texts(), Texts(2, "JSNPObject::m_RemoveEventListener"));
}

TEST_F(EventListenersTest, AnInvalidatedObjectStillTakesListeners) {
    object->Invalidate();
    EXPECT_TRUE(Add("Focus", first).accepted);
    EXPECT_EQ(first.HeldByPlugin(), 1u);
    EXPECT_TRUE(Remove("Focus", first).accepted);
}

TEST_F(EventListenersTest, ADestroyedObjectDoesNotReleaseItsListeners) {
    Add("Focus", first);
    Release();
    EXPECT_EQ(first.HeldByPlugin(), 1u);
}

TEST_F(EventListenersTest, DispatchLogsWhatItDoes) {
    Add("Focus", first);
    Add("Focus", second);
    ClearLog();
    Dispatch("Focus");
    EXPECT_EQ(support::Log::Instance().Lines(),
              (std::vector<support::LogLine>{{1, 3, "CallEventListeners \"Focus\""},
                                             {1, 4, "There are 2 callbacks for this event"},
                                             {1, 3, "Invoke Focus EventListener"},
                                             {1, 3, "Invoke Focus EventListener"}}));
}

TEST_F(EventListenersTest, DispatchWithoutListenersDoesNothing) {
    Add("Blur", first);
    ClearLog();
    Dispatch("Focus");
    EXPECT_EQ(support::Log::Instance().Texts(),
              (Texts{"CallEventListeners \"Focus\"", "There are 0 callbacks for this event"}));
    EXPECT_TRUE(first.Calls().empty());
}

TEST_F(EventListenersTest, DispatchOnAnInvalidatedObjectCallsNobody) {
    Add("Focus", first);
    object->Invalidate();
    ClearLog();
    Dispatch("Focus");
    EXPECT_EQ(
        support::Log::Instance().Texts(),
        (Texts{"CallEventListeners \"Focus\"", "t_CallEventListeners, Object has been invalidated! (m_npp is NULL)"}));
    EXPECT_TRUE(first.Calls().empty());
}

TEST_F(EventListenersTest, EveryListenerGetsTheEventAsItIs) {
    Add("Focus", first);
    Add("Focus", second);
    FakeObject& event = browser.MakeObject("event");
    object->t_CallEventListeners("Focus", event.Pointer());
    EXPECT_EQ(Calls({"script."}), (Texts{"script.first(event)", "script.second(event)"}));
    EXPECT_EQ(event.HeldByPlugin(), 0u);
}

TEST_F(EventListenersTest, ResultsAreGivenBackAndIgnored) {
    first.SetFunction([] { return Value("a result"); });
    second.SetFunction([this] { return Value(browser.MakeResult("result")); });
    Add("Focus", first);
    Add("Focus", second);
    Dispatch("Focus");
    EXPECT_EQ(second.Calls().size(), 1u);
}

TEST_F(EventListenersTest, AFailingListenerDoesNotStopTheOthersAndItsResultIsNotReleased) {
    first.SetFunction([] { return std::optional<Value>(); });
    Add("Focus", first);
    Add("Focus", second);
    const unsigned released = browser.Uses("releasevariantvalue");
    Dispatch("Focus");
    EXPECT_EQ(second.Calls().size(), 1u);
    EXPECT_EQ(browser.Uses("releasevariantvalue"), released + 1);
}

TEST_F(EventListenersTest, AListenerRemovedByAnEarlierOneIsStillCalledThisTime) {
    first.SetFunction([this] {
        if (second.IsAlive()) Remove("Focus", second);
    });
    Add("Focus", first);
    Add("Focus", second);
    browser.Forget(second);
    Dispatch("Focus");
    EXPECT_EQ(second.Calls().size(), 1u);
    EXPECT_FALSE(second.IsAlive());
    Dispatch("Focus");
    EXPECT_EQ(second.Calls().size(), 1u);
}

TEST_F(EventListenersTest, EachListenerIsHeldForTheDispatchUntilItsOwnCallIsOver) {
    std::vector<std::pair<unsigned, unsigned>> held;
    const auto note = [&] { held.emplace_back(first.HeldByPlugin(), second.HeldByPlugin()); };
    first.SetFunction(note);
    second.SetFunction(note);
    Add("Focus", first);
    Add("Focus", second);
    Dispatch("Focus");
    EXPECT_EQ(held, (std::vector<std::pair<unsigned, unsigned>>{{2, 2}, {1, 2}}));
}

TEST_F(EventListenersTest, AListenerThatRemovesItselfLivesThroughItsCall) {
    first.SetFunction([this] { Remove("Focus", first); });
    Add("Focus", first);
    browser.Forget(first);
    Dispatch("Focus");
    EXPECT_FALSE(first.IsAlive());
}

TEST_F(EventListenersTest, AListenerAddedByAnotherIsCalledNextTime) {
    first.SetFunction([this] { Add("Focus", second); });
    Add("Focus", first);
    Dispatch("Focus");
    EXPECT_TRUE(second.Calls().empty());
    Dispatch("Focus");
    EXPECT_EQ(second.Calls().size(), 1u);
}

TEST_F(EventListenersTest, AfterInvalidationDuringTheDispatchTheOthersAreSkippedAndGivenBack) {
    first.SetFunction([this] { object->Invalidate(); });
    Add("Focus", first);
    Add("Focus", second);
    Dispatch("Focus");
    EXPECT_TRUE(second.Calls().empty());
    EXPECT_EQ(first.HeldByPlugin(), 1u);
    EXPECT_EQ(second.HeldByPlugin(), 1u);
    ExpectLogged("Invoke Focus EventListener", 2);
    ExpectLogged(2, "JSNPObject deleted?");
}

TEST_F(EventListenersTest, AnObjectDestroyedDuringTheDispatchLivesUntilTheCallEnds) {
    object->t_RegisterMethod("act", OipfJavaScript::make_method(object, &ScriptObject::Act));
    object->m_action = [this] { object->t_CallEventListeners("Focus", nullptr); };
    first.SetFunction([this] {
        object->Invalidate();
        Release();
    });
    Add("Focus", first);
    Add("Focus", second);
    browser.pageHoldsDuringCalls = false;
    browser.Call(object, "act");
    EXPECT_EQ(ScriptObject::s_living, 0);
    EXPECT_TRUE(second.Calls().empty());
}

TEST_F(EventListenersTest, DispatchMayBeNested) {
    int depth = 0;
    first.SetFunction([&] {
        if (++depth < 3) {
            Dispatch("Focus");
        }
    });
    Add("Focus", first);
    Add("Focus", second);
    Dispatch("Focus");
    EXPECT_EQ(first.Calls().size(), 3u);
    EXPECT_EQ(second.Calls().size(), 3u);
}

}  // namespace
