// addStreamEventListener and removeStreamEventListener, and the references that they take.
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class StreamEventListeners : public ObjectTest {
protected:
    void SetUp() override {
        Page();
        Forget();
    }
    Outcome Add(const std::string& url, const FakeObject& listener) {
        return Page().Call("addStreamEventListener", {url, "name", listener});
    }
    Outcome Remove(const std::string& url, const FakeObject& listener) {
        return Page().Call("removeStreamEventListener", {url, "name", listener});
    }
    void Deliver(unsigned long jobId) {
        platform.DeliverStreamEvent(jobId, "name");
        Pump();
    }

    FakeObject& listener = browser.MakeFunction("listener");
};

class EachStreamEventMethod : public StreamEventListeners, public ::testing::WithParamInterface<const char*> {
protected:
    // "addStreamEventListener" as "m_AddStreamEventListener"
    static std::string Member() {
        std::string name = GetParam();
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
        return "m_" + name;
    }
    void ExpectRefused(const Values& arguments, const std::string& text) {
        Forget();
        const Outcome outcome = Page().Call(GetParam(), arguments);
        EXPECT_TRUE(outcome.accepted) << support::Show(arguments);
        EXPECT_EQ(outcome.exception, Member() + text) << support::Show(arguments);
        EXPECT_EQ(Calls(), Lines{"exception " + Member() + text}) << support::Show(arguments);
        EXPECT_EQ(listener.HeldByPlugin(), 0u) << support::Show(arguments);
    }
};

INSTANTIATE_TEST_SUITE_P(Methods, EachStreamEventMethod,
                         ::testing::Values("addStreamEventListener", "removeStreamEventListener"),
                         [](const auto& info) { return std::string(info.param); });

TEST_P(EachStreamEventMethod, LogsItsName) {
    Page().Call(GetParam());
    ExpectLogged(3, Member() + "()");
}

TEST_P(EachStreamEventMethod, TakesExactlyThreeArguments) {
    const std::string text = " invalid number of arguments";
    ExpectRefused({}, text);
    ExpectRefused({"dvb:/x", "name"}, text);
    ExpectRefused({"dvb:/x", "name", listener, Value()}, text);
}

TEST_P(EachStreamEventMethod, CountsItsArgumentsBeforeItLooksAtThem) {
    ExpectRefused({1}, " invalid number of arguments");
}

TEST_P(EachStreamEventMethod, TakesTwoStringsAndAnObjectWithoutConversion) {
    const std::string text = " invalid arguments";
    for (const Value& wrong : {Value(7), Value(7.0), Value(true), Value(nullptr), Value(), Value(listener)}) {
        ExpectRefused({wrong, "name", listener}, text);
        ExpectRefused({"dvb:/x", wrong, listener}, text);
    }
    for (const Value& wrong : {Value(7), Value(7.0), Value(true), Value(nullptr), Value(), Value("function")}) {
        ExpectRefused({"dvb:/x", "name", wrong}, text);
    }
    ExpectRefused({"dvb:/x", "name", Value(static_cast<NPObject*>(nullptr))}, text);
}

TEST_P(EachStreamEventMethod, FailsWhenTheAddressCannotBeMadeAbsolute) {
    browser.AnswerEvaluate("document.location.href", [](const std::string&) { return std::nullopt; });
    const Outcome outcome = Page().Call(GetParam(), {"relative", "name", listener});
    EXPECT_FALSE(outcome.accepted);
    EXPECT_EQ(outcome.exception, "");
    EXPECT_TRUE(Calls({"dsmcc."}).empty());
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    EXPECT_EQ(LinesWith("[CStreamEventHandler::"), 0u);
}

TEST_P(EachStreamEventMethod, NeedsNoBroadcastRelatedPage) {
    platform.answers.broadcastRelated = false;
    const Outcome outcome = Page().Call(GetParam(), {"dvb:/x", "name", listener});
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.exception, "");
}

TEST_P(EachStreamEventMethod, WritesNoResult) {
    EXPECT_EQ(Page().Call(GetParam(), {"dvb:/x", "name", listener}).value, Value());
}

TEST_F(StreamEventListeners, AbsoluteAddressesAreSubscribedAsTheyAre) {
    for (const char* url : {"dvb:/x", "http://host/x", "https://host/x"}) {
        Forget();
        Add(url, listener);
        EXPECT_EQ(Calls(), Lines{std::string("dsmcc.SubscribeStreamEvent(") + url + ", name, 0)"});
    }
}

TEST_F(StreamEventListeners, RelativeAddressesAreJoinedToThePagesDirectory) {
    Add("events/x", listener);
    Add("/x", listener);
    EXPECT_EQ(Calls({"dsmcc.Subscribe"}),
              (Lines{"dsmcc.SubscribeStreamEvent(http://tv.example/app/events/x, name, 0)",
                     "dsmcc.SubscribeStreamEvent(http://tv.example/app/x, name, 0)"}));
}

TEST_F(StreamEventListeners, ThePageIsAskedBeforeTheSubscription) {
    Add("x", listener);
    EXPECT_EQ(Calls(), (Lines{"evaluate document.location.href",
                              "dsmcc.SubscribeStreamEvent(http://tv.example/app/x, name, 0)"}));
}

TEST_F(StreamEventListeners, RemovalJoinsAddressesToo) {
    Add("x", listener);
    Forget();
    Remove("http://tv.example/app/x", listener);
    EXPECT_EQ(Calls({"dsmcc."}), Lines{"dsmcc.UnsubscribeStreamEvent(1)"});
}

TEST_F(StreamEventListeners, TextsGoToTheServiceByteForByte) {
    Page().Call("addStreamEventListener", {"dvb:/\xC3\xA9", "n\xE2\x82\xAC", listener});
    EXPECT_EQ(Calls({"dsmcc.Subscribe"}), Lines{"dsmcc.SubscribeStreamEvent(dvb:/\xC3\xA9, n\xE2\x82\xAC, 0)"});
}

TEST_F(StreamEventListeners, BytesThatAreNoCharactersGoToTheServiceToo) {
    Page().Call("addStreamEventListener", {"dvb:/\xFF\xC3", "\x80n\xE2", listener});
    EXPECT_EQ(Calls({"dsmcc.Subscribe"}), Lines{"dsmcc.SubscribeStreamEvent(dvb:/\xFF\xC3, \x80n\xE2, 0)"});
}

TEST_F(StreamEventListeners, TheServiceGetsWhatComesBeforeAZeroByte) {
    using namespace std::string_literals;
    Page().Call("addStreamEventListener", {"dvb:/x\0y"s, "name\0s"s, listener});
    EXPECT_EQ(Calls({"dsmcc.Subscribe"}), Lines{"dsmcc.SubscribeStreamEvent(dvb:/x, name, 0)"});
    Forget();
    Remove("dvb:/x", listener);
    EXPECT_EQ(Calls({"dsmcc.Unsubscribe"}), Lines{"dsmcc.UnsubscribeStreamEvent(1)"});
}

TEST_F(StreamEventListeners, EmptyTextsAreAccepted) {
    for (const bool null : {true, false}) {
        browser.emptyStringsAreNull = null;
        Forget();
        EXPECT_TRUE(Page().Call("addStreamEventListener", {"", "", listener}).accepted);
        EXPECT_EQ(Calls({"dsmcc.Subscribe"}), Lines{"dsmcc.SubscribeStreamEvent(http://tv.example/app/, , 0)"});
    }
}

TEST_F(StreamEventListeners, ASubscriptionHoldsItsListener) {
    Add("dvb:/x", listener);
    EXPECT_EQ(listener.HeldByPlugin(), 1u);
}

TEST_F(StreamEventListeners, TheListenerIsHeldBeforeTheServiceIsAsked) {
    unsigned held = 0;
    When("dsmcc.SubscribeStreamEvent", [&] { held = listener.HeldByPlugin(); });
    Add("dvb:/x", listener);
    EXPECT_EQ(held, 1u);
    When("dsmcc.UnsubscribeStreamEvent", [&] { held = listener.HeldByPlugin(); });
    Remove("dvb:/x", listener);
    EXPECT_EQ(held, 2u);  // the removal holds it once more
}

TEST_F(StreamEventListeners, ARefusedSubscriptionGivesItsReferenceBack) {
    platform.answers.jobIds = {0};
    EXPECT_TRUE(Add("dvb:/x", listener).accepted);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
}

TEST_F(StreamEventListeners, ARemovalThatFindsNothingGivesItsReferenceBack) {
    EXPECT_TRUE(Remove("dvb:/x", listener).accepted);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
}

TEST_F(StreamEventListeners, ARemovedListenerIsHeldUntilItsEntryIsErased) {
    Add("dvb:/x", listener);
    Remove("dvb:/x", listener);
    EXPECT_GE(listener.HeldByPlugin(), 1u);
    Deliver(1);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    EXPECT_TRUE(listener.Calls().empty());
}

TEST_F(StreamEventListeners, AListenerOfAnotherEntryStaysHeld) {
    Add("dvb:/x", listener);
    Add("dvb:/y", listener);
    Remove("dvb:/x", listener);
    Deliver(1);
    EXPECT_GE(listener.HeldByPlugin(), 1u);
    Deliver(2);
    EXPECT_EQ(listener.Calls().size(), 1u);
}

TEST_F(StreamEventListeners, AFailedSecondSubscriptionLeavesTheFirstItsListener) {
    platform.answers.jobIds = {1, 0};
    Add("dvb:/x", listener);
    Add("dvb:/y", listener);
    browser.Forget(listener);
    EXPECT_TRUE(listener.IsAlive());
    Deliver(1);
    EXPECT_EQ(listener.Calls().size(), 1u);
}

TEST_F(StreamEventListeners, ErasingTheEntryOfOneLeavesTheOthersTheirs) {
    FakeObject& other = browser.MakeFunction("other");
    Add("dvb:/x", listener);
    Add("dvb:/y", other);
    Remove("dvb:/x", listener);
    Deliver(1);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    EXPECT_EQ(other.HeldByPlugin(), 1u);
}

TEST_F(StreamEventListeners, AllAreGivenBackAtTheObjectsEnd) {
    FakeObject& overwritten = browser.MakeFunction("overwritten");
    FakeObject& removed = browser.MakeFunction("removed");
    platform.answers.jobIds = {5, 5, 6, 7};
    Add("dvb:/x", overwritten);
    Add("dvb:/x", listener);
    Add("dvb:/y", listener);
    Add("dvb:/z", removed);
    Remove("dvb:/z", removed);
    Remove("dvb:/z", removed);
    EndPage();
    for (const FakeObject* function : {&overwritten, &listener, &removed}) EXPECT_EQ(function->HeldByPlugin(), 0u);
    EXPECT_TRUE(platform.Subscriptions().empty());
}

TEST_F(StreamEventListeners, ListenersThatNobodyElseHoldsLiveAsLongAsTheirEntries) {
    Add("dvb:/x", listener);
    browser.Forget(listener);
    Deliver(1);
    EXPECT_EQ(listener.Calls().size(), 1u);
    EndPage();
    EXPECT_FALSE(listener.IsAlive());
}

TEST_F(StreamEventListeners, AListenerMayRemoveItself) {
    listener.SetFunction([&] { Remove("dvb:/x", listener); });
    Add("dvb:/x", listener);
    Deliver(1);
    Deliver(1);
    EXPECT_EQ(listener.Calls().size(), 1u);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
}

TEST_F(StreamEventListeners, AListenerMaySubscribeAnother) {
    FakeObject& other = browser.MakeFunction("other");
    listener.SetFunction([&] { Add("dvb:/y", other); });
    Add("dvb:/x", listener);
    Deliver(1);
    EXPECT_TRUE(other.Calls().empty());
    Deliver(2);
    EXPECT_EQ(other.Calls().size(), 1u);
}

TEST_F(StreamEventListeners, WithoutTheServiceBothAnswerAsIfItRefused) {
    platform.answers.hasDsmcc = false;
    EXPECT_TRUE(Add("dvb:/x", listener).accepted);
    EXPECT_TRUE(Remove("dvb:/x", listener).accepted);
    EXPECT_TRUE(browser.Exceptions().empty());
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    EXPECT_EQ(LinesWith("[CStreamEventHandler::AddEventListener] couldn't subscribe"), 1u);
    platform.answers.hasDsmcc = true;
}

TEST_F(StreamEventListeners, AfterInvalidationAbsoluteAddressesStillWork) {
    Page().Invalidate();
    EXPECT_TRUE(Add("dvb:/x", listener).accepted);
    EXPECT_FALSE(Add("x", listener).accepted);
}

}  // namespace
}  // namespace videobroadcast
