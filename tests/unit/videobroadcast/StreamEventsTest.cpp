// Stream events from the platform's callback to the page's functions.
#include <algorithm>
#include <utility>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

const char* const kCallbackLine =
    "[CplVideoBroadcast::DsmEventCallback] sending copy of stream related event to browser";
const char* const kNoCallback = "[m_HandleStreamEventCallback] there is no callback";

class StreamEvents : public ObjectTest {
protected:
    // A function of the page that writes what it hears: "event listener: StreamEvent{...}".
    FakeObject& Hear(const std::string& name, std::function<void()> action = [] {}) {
        return browser.MakeFunction(name, [this, name, action](const Values& arguments) {
            EXPECT_EQ(arguments.size(), 1u);
            support::CallList::Instance().Add("event " + name + ": " + Describe(arguments.at(0).Object()));
            action();
        });
    }
    FakeObject& Subscribe(const std::string& name, std::function<void()> action = [] {}) {
        FakeObject& listener = Hear(name, std::move(action));
        EXPECT_TRUE(Page().Call("addStreamEventListener", {"dvb:/x", name, listener}).accepted);
        return listener;
    }
    FakeObject& HandleWith(const std::string& name, std::function<void()> action = [] {}) {
        FakeObject& handler = Hear(name, std::move(action));
        Page().Set("onStreamEvent", handler);
        browser.MayKeep(handler);
        return handler;
    }
    void Deliver(unsigned long jobId, const std::string& name, const std::string& data = {}, int status = 0,
                 std::uint16_t eventId = 0) {
        Forget();
        ASSERT_TRUE(platform.DeliverStreamEvent(jobId, name, data, status, eventId));
        Pump();
    }
    static Lines Heard() { return Calls({"event "}); }
};

TEST_F(StreamEvents, ANullRecordIsIgnored) {
    Page();
    Forget();
    Object::DsmEventCallback(nullptr);
    EXPECT_TRUE(support::Log::Instance().Texts().empty());
    EXPECT_EQ(browser.Async().Pending(), 0u);
}

TEST_F(StreamEvents, TheCallbackQueuesOneRecordForEachLivingObject) {
    Page();
    Probed second(browser);
    Probed ended(browser);
    ended.Invalidate();
    Forget();
    platform.DeliverStreamEvent(1, "name");
    EXPECT_EQ(support::Log::Instance().Texts(), (Lines{kCallbackLine, "COipfVideoBroadcast::OnEvent(12)",
                                                       kCallbackLine, "COipfVideoBroadcast::OnEvent(12)"}));
    ExpectLogged(3, kCallbackLine, 2);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(StreamEvents, EachObjectGetsACopyInTheOrderOfTheObjects) {
    SetHandler("onStreamEvent");
    Probed second(browser);
    SetHandler(second.Get(), "onStreamEvent");
    Deliver(1, "name", "data");
    EXPECT_EQ(Calls({"script.onStreamEvent"}),
              (Lines{"script.onStreamEvent(plug-in object#3)", "script.onStreamEvent#2(plug-in object#4)"}));
}

TEST_F(StreamEvents, EachObjectLooksForListenersAmongItsOwn) {
    Subscribe("one");
    Probed second(browser);
    FakeObject& other = Hear("two");
    browser.Call(second.Get(), "addStreamEventListener", {"dvb:/x", "two", other});
    Deliver(2, "name");
    EXPECT_EQ(Heard(), Lines{"event two: StreamEvent{name: \"name\", data: \"\", text: \"\", status: \"trigger\"}"});
    ExpectLogged(2, "[CStreamEventHandler::GetStreamEventDataListeners] no listeners found for stream event id=0, "
                    "name=name, dsmJobId=2");
}

TEST_F(StreamEvents, WithoutObjectsTheRecordIsDeletedAllTheSame) {
    Object::DsmEventCallback(new CDSMCCStreamEventData{CDSMCCStreamEventData::E_STATUS_TRIGGER, 1, "name", {1}, 1, 0});
    EXPECT_TRUE(support::Log::Instance().Texts().empty());
}

TEST_F(StreamEvents, TheEventHasNameDataTextAndStatus) {
    HandleWith("handler");
    Deliver(1, "name", "\x0A\xFFz", 0);
    EXPECT_EQ(Heard(), Lines{"event handler: StreamEvent{name: \"name\", data: \"0AFF7A\", text: \"\x0A\xFFz\", "
                             "status: \"trigger\"}"});
    Deliver(1, "other", "A", 1);
    EXPECT_EQ(Heard(),
              Lines{"event handler: StreamEvent{name: \"other\", data: \"41\", text: \"A\", status: \"error\"}"});
    Deliver(1, "other", "A", 7);
    EXPECT_EQ(Heard(),
              Lines{"event handler: StreamEvent{name: \"other\", data: \"41\", text: \"A\", status: \"unknown\"}"});
}

TEST_F(StreamEvents, WithoutDataDataAndTextAreEmptyStrings) {
    HandleWith("handler");
    Deliver(1, "");
    EXPECT_EQ(Heard(), Lines{"event handler: StreamEvent{name: \"\", data: \"\", text: \"\", status: \"trigger\"}"});
}

TEST_F(StreamEvents, ZeroBytesAreKept) {
    HandleWith("handler");
    Deliver(1, std::string("n\0m", 3), std::string("\0x\0", 3));
    using namespace std::string_literals;
    EXPECT_EQ(Heard(), Lines{"event handler: StreamEvent{name: \"n\0m\", data: \"007800\", text: \"\0x\0\", "
                             "status: \"trigger\"}"s});
}

TEST_F(StreamEvents, TheListenerOfTheJobComesFirstThenTheHandler) {
    HandleWith("handler");
    Subscribe("one");
    Subscribe("two");
    Deliver(2, "anything");
    const std::string event = "StreamEvent{name: \"anything\", data: \"\", text: \"\", status: \"trigger\"}";
    EXPECT_EQ(Heard(), (Lines{"event two: " + event, "event handler: " + event}));
}

TEST_F(StreamEvents, EachFunctionGetsAnEventOfItsOwn) {
    HandleWith("handler");
    Subscribe("one");
    Deliver(1, "name");
    const Lines calls = Calls({"script."});
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls, (Lines{"script.one(plug-in object#2)", "script.handler(plug-in object#3)"}));
    EXPECT_EQ(LinesWith("CreateEventObject \"StreamEvent\""), 2u);
}

TEST_F(StreamEvents, AnEventThatNobodySubscribedToStillReachesTheHandler) {
    HandleWith("handler");
    Subscribe("one");
    Deliver(99, "name");
    EXPECT_EQ(Heard().size(), 1u);
    EXPECT_TRUE(Heard()[0].starts_with("event handler: "));
}

TEST_F(StreamEvents, WithoutAHandlerOnlyTheListenerHears) {
    Subscribe("one");
    Deliver(1, "name");
    EXPECT_EQ(Heard().size(), 1u);
    ExpectLogged(3, kNoCallback);
}

TEST_F(StreamEvents, WithoutAnyFunctionNothingIsMade) {
    Page();
    Deliver(1, "name");
    EXPECT_TRUE(Heard().empty());
    EXPECT_EQ(LinesWith("CreateEventObject"), 0u);
    ExpectLogged(3, "[COipfVideoBroadcast::m_OnDsmEvent] ");
    ExpectLogged(3, "[m_HandleStreamEventCallback] ");
    ExpectLogged(3, kNoCallback);
}

TEST_F(StreamEvents, DeliveryIsLoggedWithEveryValue) {
    HandleWith("handler");
    Deliver(1, "name", "AB", 1, 65535);
    const Lines lines = support::Log::Instance().Texts();
    const auto from = std::ranges::find(lines, "[COipfVideoBroadcast::m_OnDsmEvent] ");
    ASSERT_NE(from, lines.end());
    EXPECT_EQ(Lines(from, from + 6),
              (Lines{"[COipfVideoBroadcast::m_OnDsmEvent] ", "GetStreamEventDataListeners",
                     "[CStreamEventHandler::GetStreamEventDataListeners] no listeners found for stream event id=65535, "
                     "name=name, dsmJobId=1",
                     "[m_HandleStreamEventCallback] ",
                     "[COipfVideoBroadcast::m_HandleStreamEventCallback] creating event id=65535, name=name, "
                     "data=4142, text=AB, status=error",
                     "CreateEventObject \"StreamEvent\""}));
    ExpectLogged(3, lines[static_cast<std::size_t>(from - lines.begin()) + 4]);
}

TEST_F(StreamEvents, ListenersOfTheEventTypeHearNothing) {
    Listen("StreamEvent");
    HandleWith("handler");
    Deliver(1, "name");
    EXPECT_EQ(Heard().size(), 1u);
    EXPECT_TRUE(Heard()[0].starts_with("event handler: "));
}

TEST_F(StreamEvents, AnEventThatThePageKeepsKeepsItsStrings) {
    NPObject* kept = nullptr;
    FakeObject& handler = browser.MakeFunction("handler", [&](const Values& values) {
        kept = values.at(0).Object();
        browser.Hold(values.at(0));
    });
    Page().Set("onStreamEvent", handler);
    browser.MayKeep(handler);
    Deliver(1, "name", "A");
    EXPECT_EQ(Describe(kept), "StreamEvent{name: \"name\", data: \"41\", text: \"A\", status: \"trigger\"}");
    EXPECT_EQ(browser.GetLedger().HeldByPlugin(kept), 0u);
}

TEST_F(StreamEvents, TheEventAndItsStringsGoWithTheDelivery) {
    NPObject* event = nullptr;
    FakeObject& handler = browser.MakeFunction("handler", [&](const Values& values) { event = values.at(0).Object(); });
    Page().Set("onStreamEvent", handler);
    browser.MayKeep(handler);
    Deliver(1, "name", "A");
    EXPECT_FALSE(browser.GetLedger().IsAlive(event));
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(StreamEvents, TheTargetIsTheObject) {
    Value target;
    FakeObject& handler = browser.MakeFunction("handler", [&](const Values& values) {
        target = browser.Get(values.at(0).Object(), "target").value;
    });
    Page().Set("onStreamEvent", handler);
    browser.MayKeep(handler);
    Deliver(1, "name");
    EXPECT_EQ(target, Value(Page().Object()));
}

TEST_F(StreamEvents, AFunctionsResultIsGivenBack) {
    FakeObject& result = browser.MakeResult("result");
    FakeObject& handler = browser.MakeFunction("handler", [&] { return Value(result); });
    Page().Set("onStreamEvent", handler);
    browser.MayKeep(handler);
    Deliver(1, "name");
    EXPECT_FALSE(result.IsAlive());
}

TEST_F(StreamEvents, AListenerThatCannotBeCalledDoesNotKeepTheHandlerFromHearing) {
    FakeObject& listener = browser.MakeObject("no function");
    Page().Call("addStreamEventListener", {"dvb:/x", "name", listener});
    HandleWith("handler");
    Deliver(1, "name");
    EXPECT_EQ(Heard().size(), 1u);
}

TEST_F(StreamEvents, AStringWithoutMemoryIsUndefinedAndTheEventComesAllTheSame) {
    HandleWith("handler");
    const Lines expected = {
        "event handler: StreamEvent{name: undefined, data: \"41\", text: \"A\", status: \"trigger\"}",
        "event handler: StreamEvent{name: \"name\", data: undefined, text: \"A\", status: \"trigger\"}",
        "event handler: StreamEvent{name: \"name\", data: \"41\", text: undefined, status: \"trigger\"}",
        "event handler: StreamEvent{name: \"name\", data: \"41\", text: \"A\", status: undefined}"};
    for (unsigned n = 1; n <= 4; ++n) {
        browser.FailNth("memalloc", n);
        Deliver(1, "name", "A");
        EXPECT_EQ(Heard(), Lines{expected[n - 1]});
    }
}

TEST_F(StreamEvents, WithoutTheEventTheStringsAreFreedAndTheHandlerIsStillTried) {
    Subscribe("one");
    HandleWith("handler");
    browser.FailNth("createobject", 1);
    Deliver(1, "name", "A");
    ExpectLogged(2, "Failed to create DOM stream event object");
    EXPECT_EQ(Heard().size(), 1u);
    EXPECT_TRUE(Heard()[0].starts_with("event handler: "));
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(StreamEvents, AnElementRemovedByAListenerReachesNobodyElse) {
    for (const bool held : {true, false}) {
        browser.pageHoldsDuringCalls = held;
        Probed object(browser);
        FakeObject& listener = browser.MakeFunction("listener", [&] { object.End(); });
        browser.Call(object.Get(), "addStreamEventListener", {"dvb:/x", "name", listener});
        FakeObject& handler = SetHandler(object.Get(), "onStreamEvent");
        const unsigned long job = platform.Subscriptions().rbegin()->first;
        Deliver(job, "name");
        EXPECT_EQ(object.Get(), nullptr);
        EXPECT_TRUE(handler.Calls().empty());
        ExpectLogged(2, "t_CreateEventObject, Object has been invalidated! (m_npp is NULL)");
        ExpectLogged(2, "Failed to create DOM stream event object");
    }
}

TEST_F(StreamEvents, AnObjectInvalidatedWhileTheEventIsMadeCallsNobody) {
    Probed object(browser);
    FakeObject& handler = SetHandler(object.Get(), "onStreamEvent");
    static Probed* invalidated;
    invalidated = &object;
    static decltype(NPNetscapeFuncs::createobject) create;
    create = browser.Functions()->createobject;
    browser.Functions()->createobject = [](NPP npp, NPClass* objectClass) {
        NPObject* made = create(npp, objectClass);
        invalidated->Invalidate();
        return made;
    };
    Deliver(1, "name", "A");
    browser.Functions()->createobject = create;
    EXPECT_TRUE(handler.Calls().empty());
    ExpectLogged(2, "m_HandleStreamEventCallback m_npp is NULL!");
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(StreamEvents, TheFourStringsAreCopiedBeforeTheEventIsMade) {
    Probed object(browser);
    SetHandler(object.Get(), "onStreamEvent");
    static unsigned copied;
    static decltype(NPNetscapeFuncs::createobject) create;
    create = browser.Functions()->createobject;
    browser.Functions()->createobject = [](NPP npp, NPClass* objectClass) {
        copied = support::FakeBrowser::Current()->Uses("memalloc");
        return create(npp, objectClass);
    };
    const unsigned before = browser.Uses("memalloc");
    Deliver(1, "name", "A");
    browser.Functions()->createobject = create;
    EXPECT_EQ(copied - before, 4u);
}

TEST_F(StreamEvents, AHandlerMayClearItsOwnProperty) {
    FakeObject& handler = browser.MakeFunction("handler", [&] { Page().Set("onStreamEvent", nullptr); });
    Page().Set("onStreamEvent", handler);
    browser.Forget(handler);  // only the property holds it
    Deliver(1, "name");
    EXPECT_FALSE(handler.IsAlive());
    EXPECT_EQ(handler.Calls().size(), 1u);
}

TEST_F(StreamEvents, AListenerMaySetTheHandlerThatHearsTheSameEvent) {
    Subscribe("one", [&] { HandleWith("handler"); });
    Deliver(1, "name");
    EXPECT_EQ(Heard().size(), 2u);
}

TEST_F(StreamEvents, StreamEventsReachAPageThatIsNotBroadcastRelated) {
    HandleWith("handler");
    platform.answers.broadcastRelated = false;
    Deliver(1, "name");
    EXPECT_EQ(Heard().size(), 1u);
}

}  // namespace
}  // namespace videobroadcast
