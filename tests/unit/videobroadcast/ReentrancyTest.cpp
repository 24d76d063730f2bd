// What script does to the object from inside the calls that the object makes into script.
#include <utility>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

// Each test with a page that holds the object while it is used, and with one that leaves that to the plug-in.
class Reentrancy : public ObjectTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override { browser.pageHoldsDuringCalls = GetParam(); }

    // The page removes the element while the object raises this event, and after that nothing more is told.
    void ExpectSilenceAfterRemovalIn(const std::string& handler, const std::function<void()>& cause) {
        for (const char* name : {"onPlayStateChange", "onChannelChangeSucceeded", "onChannelChangeError",
                                 "onDRMRightsError", "onParentalRatingChange", "onProgrammesChanged"}) {
            if (name != handler) SetHandler(name);
        }
        SetHandler(handler, [&] { EndPage(); });
        Listen(handler.substr(2));
        Forget();
        cause();
        ASSERT_FALSE(Told().empty());
        EXPECT_TRUE(Told().back().starts_with("script." + handler + "(")) << Told().back();
        EXPECT_EQ(platform.HandedOut(), 0u);
        EXPECT_EQ(platform.Registrations(), 0u);
    }
    std::function<void()> Notified(std::function<void(Object&)> notify) {
        return [this, notify] {
            notify(Native());
            Pump();
        };
    }
};

INSTANTIATE_TEST_SUITE_P(Pages, Reentrancy, ::testing::Values(true, false), [](const auto& info) {
    return std::string(info.param ? "WhoseScriptHoldsTheObject" : "WhereOnlyThePluginHoldsTheObject");
});

TEST_P(Reentrancy, TheElementIsRemovedWhenTheStateIsTold) {
    ExpectSilenceAfterRemovalIn("onPlayStateChange", [&] { Page().Call("bindToCurrentChannel"); });
}

TEST_P(Reentrancy, TheElementIsRemovedWhenTheStateOfANotificationIsTold) {
    Connect();
    ExpectSilenceAfterRemovalIn("onPlayStateChange", Notified([](Object& object) { object.TuneSuccess(7); }));
    EXPECT_EQ(Calls({"cache."}), Lines{"cache.ReleaseChannel(7)"});  // no page object keeps the hold any more
}

TEST_P(Reentrancy, TheElementIsRemovedWhenASuccessIsTold) {
    Connect();
    ExpectSilenceAfterRemovalIn("onChannelChangeSucceeded", Notified([](Object& object) { object.TuneSuccess(7); }));
}

TEST_P(Reentrancy, TheElementIsRemovedWhenAnErrorIsTold) {
    Connect();
    ExpectSilenceAfterRemovalIn("onChannelChangeError", Notified([](Object& object) { object.TuneFail(7); }));
}

TEST_P(Reentrancy, TheElementIsRemovedWhenRightsAreTold) {
    Present();
    ExpectSilenceAfterRemovalIn("onDRMRightsError", Notified([](Object& object) { object.Scrambled(1); }));
}

TEST_P(Reentrancy, TheElementIsRemovedWhenClearRightsAreTold) {
    Connect();
    ExpectSilenceAfterRemovalIn("onDRMRightsError", Notified([](Object& object) { object.Unscrambled(1); }));
}

TEST_P(Reentrancy, TheElementIsRemovedWhenRightsOfAMessageAreTold) {
    Present();
    ExpectSilenceAfterRemovalIn("onDRMRightsError", Notified([](Object& object) {
        object.OnSASMessageReceived(new SASMessage{4, 1, 0, {{7, {1}}}});
    }));
}

TEST_P(Reentrancy, TheElementIsRemovedWhenARatingIsTold) {
    ExpectSilenceAfterRemovalIn("onParentalRatingChange",
                                Notified([](Object& object) { object.ParentalRatingChanged(9); }));
}

TEST_P(Reentrancy, TheElementIsRemovedWhenProgrammesAreTold) {
    ExpectSilenceAfterRemovalIn("onProgrammesChanged", Notified([](Object& object) { object.ProgrammeChanged(); }));
}

TEST_P(Reentrancy, TheElementIsRemovedByTheFirstOfTwoListeners) {
    Listen("ProgrammesChanged", [&] { EndPage(); });
    Listen("ProgrammesChanged");
    Forget();
    Native().ProgrammeChanged();
    Pump();
    EXPECT_EQ(Told(), Lines{"event ProgrammesChanged{}"});
    ExpectLogged(2, "JSNPObject deleted?");
}

TEST_P(Reentrancy, TheElementIsRemovedWhenStreamEventsAreTold) {
    FakeObject& handler = browser.MakeFunction("handler", [&] { EndPage(); });
    browser.MayKeep(handler);
    Page().Set("onStreamEvent", handler);
    platform.DeliverStreamEvent(1, "name", "data");
    Pump();
    EXPECT_EQ(handler.Calls().size(), 1u);
    EXPECT_EQ(platform.Registrations(), 0u);
}

TEST_P(Reentrancy, TheElementIsRemovedByTheStreamEventListener) {
    FakeObject& listener = browser.MakeFunction("listener", [&] { EndPage(); });
    Page().Call("addStreamEventListener", {"dvb:/x", "name", listener});
    FakeObject& handler = SetHandler("onStreamEvent");
    platform.DeliverStreamEvent(1, "name", "data");
    Pump();
    EXPECT_EQ(listener.Calls().size(), 1u);
    EXPECT_TRUE(handler.Calls().empty());
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
}

TEST_P(Reentrancy, TheElementIsRemovedWhileAChannelIsMade) {
    Connect();
    SetHandler("onChannelChangeSucceeded");
    browser.AnswerEvaluateOf("new Channel", [&](const std::string&) {
        EndPage();
        return Value(browser.MakeResult("channel"));
    });
    Native().TuneSuccess(7);
    Pump();
    EXPECT_TRUE(Calls({"script.on"}).empty());
    EXPECT_EQ(platform.Registrations(), 0u);
}

TEST_P(Reentrancy, TheElementIsRemovedWhileARatingIsMade) {
    SetHandler("onParentalRatingChange");
    browser.AnswerEvaluateOf("new ParentalRatingCollection", [&](const std::string&) {
        EndPage();
        return Value(browser.MakeResult("collection"));
    });
    Native().ParentalRatingChanged(9);
    Pump();
    EXPECT_TRUE(Calls({"script.on"}).empty());
    EXPECT_EQ(platform.Registrations(), 0u);
}

TEST_P(Reentrancy, TheElementIsRemovedWhileAStreamEventListenerIsAdded) {
    FakeObject& listener = browser.MakeFunction("listener");
    browser.AnswerEvaluate("document.location.href", [&](const std::string&) {
        EndPage();
        return Value("http://host/page");
    });
    Page().Call("addStreamEventListener", {"x", "name", listener});
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    EXPECT_EQ(platform.Registrations(), 0u);
}

TEST_P(Reentrancy, AnInstanceDestroyedWithoutInvalidationEndsWithTheCall) {
    Present();
    SetHandler("onPlayStateChange", [&] { Page().Destroy(); });
    Page().Call("stop");
    EXPECT_EQ(platform.HandedOut(), 0u);
    EXPECT_EQ(platform.Registrations(), 0u);
}

TEST_P(Reentrancy, AHandlerMayClearItsOwnProperty) {
    FakeObject& handler = browser.MakeFunction("handler", [&] { Page().Set("onPlayStateChange", nullptr); });
    Page().Set("onPlayStateChange", handler);
    browser.Forget(handler);  // only the property holds it
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(handler.Calls().size(), 1u);
    EXPECT_FALSE(handler.IsAlive());
}

TEST_P(Reentrancy, AHandlerMayReplaceItself) {
    FakeObject& handler = browser.MakeFunction("handler", [&] { SetHandler("onPlayStateChange"); });
    Page().Set("onPlayStateChange", handler);
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(handler.Calls().size(), 1u);
    EXPECT_EQ(Calls({"script.onPlayState"}), Lines{"script.onPlayStateChange(2, undefined)"});
    EXPECT_EQ(handler.HeldByPlugin(), 0u);
}

TEST_P(Reentrancy, AnotherChannelMaySetFromInsideAnError) {
    Connect();
    FakeObject& channel = browser.MakeObject("channel").Set("mid", 5);
    SetHandler("onChannelChangeError", [&] { Page().Call("setChannel", {channel}); });
    SetHandler("onPlayStateChange");
    Native().TuneFail(7);
    Pump();
    EXPECT_EQ(Calls({"script.on", "player.SetChannel"}),
              (Lines{"script.onPlayStateChange(1, 1)", "script.onChannelChangeError(Channel(7), 1)",
                     "player.SetChannel(5, false)", "script.onPlayStateChange(1, undefined)"}));
}

TEST_P(Reentrancy, QueuedNotificationsMayBeHandledInsideAHandler) {
    Connect();
    SetHandler("onPlayStateChange", [&] { Pump(); });  // as alert() does
    SetHandler("onChannelChangeSucceeded");
    SetHandler("onProgrammesChanged");
    Native().TuneSuccess(7);
    Native().ProgrammeChanged();
    Pump();
    EXPECT_EQ(Calls({"script.on"}), (Lines{"script.onPlayStateChange(2, undefined)", "script.onProgrammesChanged()",
                                           "script.onChannelChangeSucceeded(Channel(7))"}));
}

TEST_P(Reentrancy, AnElementRemovedInsideANestedHandlerEndsBoth) {
    Connect();
    SetHandler("onPlayStateChange", [&] { Pump(); });
    SetHandler("onProgrammesChanged", [&] { EndPage(); });
    SetHandler("onChannelChangeSucceeded");
    Native().TuneSuccess(7);
    Native().ProgrammeChanged();
    Pump();
    EXPECT_EQ(Calls({"script.on"}), (Lines{"script.onPlayStateChange(2, undefined)", "script.onProgrammesChanged()"}));
    EXPECT_EQ(platform.Registrations(), 0u);
}

}  // namespace
}  // namespace videobroadcast
