// setFullScreen.
#include "tests/unit/videobroadcast/VideoWindowFixture.h"

namespace videobroadcast_tests {
namespace {

class VideoWindowFullScreen : public VideoWindowFixture {
protected:
    void ExpectUnchanged() {
        EXPECT_EQ(browser.Async().Pending(), 0u);
        EXPECT_TRUE(Calls({"script."}).empty());
        EXPECT_EQ(Get("fullscreen").value, Value(false));
    }
};

TEST_F(VideoWindowFullScreen, TheModeFlipsThenTheEventIsRaisedThenTheLayoutIsAskedFor) {
    bool seen = false;
    Once("script.onFullScreenChange", [&] {
        seen = true;
        EXPECT_EQ(Get("fullscreen").value, Value(true));
        EXPECT_EQ(browser.Async().Pending(), 0u);
    });
    ExpectDone(Call("setFullScreen", {true}));
    EXPECT_TRUE(seen);
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "script.onFullScreenChange()"}));
    EXPECT_EQ(browser.Async().Pending(), 1u);
    ExpectLogInOrder({"m_SetFullScreen()", "COipfVideoBroadcast::m_OnEvent(6)", "COipfVideoBroadcast::OnEvent(1009)"});
}

TEST_F(VideoWindowFullScreen, ListenersHearOfItToo) {
    FakeObject& listener = browser.MakeFunction("listener");
    browser.MayKeep(listener);
    Call("addEventListener", {"FullScreenChange", listener, false});
    Call("setFullScreen", {true});
    Call("setFullScreen", {false});
    EXPECT_EQ(listener.Calls().size(), 2u);
}

TEST_F(VideoWindowFullScreen, ItIsSwitchedOffAgain) {
    Call("setFullScreen", {true});
    ExpectDone(Call("setFullScreen", {false}));
    EXPECT_EQ(Get("fullscreen").value, Value(false));
    EXPECT_EQ(Calls({"script."}), (List{"script.onFullScreenChange()", "script.onFullScreenChange()"}));
    EXPECT_EQ(browser.Async().Pending(), 2u);
}

TEST_F(VideoWindowFullScreen, ItStaysWhateverBecomesOfTheChannelThePlayerAndTheWindow) {
    Call("setFullScreen", {true});
    for (const char* method : {"bindToCurrentChannel", "nextChannel", "stop", "release"}) {
        Call(method);
        EXPECT_EQ(Get("fullscreen").value, Value(true)) << method;
    }
    Call("setChannel", {MakeChannel({{"mid", 7}})});
    Call("setChannel", {nullptr});
    SetWindow(10, 20, 640, 360);
    browser.RunAsyncCalls();
    object->Invalidate();
    EXPECT_EQ(Get("fullscreen").value, Value(true));
    EXPECT_EQ(Calls({"script.onFullScreenChange"}).size(), 1u);
}

TEST_F(VideoWindowFullScreen, TheSameValueDoesNothing) {
    ExpectDone(Call("setFullScreen", {false}));
    ExpectLogged(3, "setFullScreen() already set to the same value.");
    ExpectUnchanged();
    Call("setFullScreen", {true});
    Call("setFullScreen", {true});
    EXPECT_EQ(Calls({"script."}), List{"script.onFullScreenChange()"});
    EXPECT_EQ(browser.Async().Pending(), 1u);
}

TEST_F(VideoWindowFullScreen, AnyOtherNumberOfArgumentsThanOneIsRefused) {
    for (const Values& arguments : {Values{}, Values{true, true}, Values{true, 1, 2}}) {
        ForgetWhatHappened();
        ExpectException(Call("setFullScreen", arguments), "setFullScreen() - wrong number of arguments");
        ExpectLogged(2, "setFullScreen(), wrong number of arguments");
        EXPECT_EQ(Calls(), List{"exception setFullScreen() - wrong number of arguments"});
        ExpectUnchanged();
    }
}

TEST_F(VideoWindowFullScreen, WhatIsNoBooleanIsRefused) {
    for (const Value& wrong : {Value(1), Value(0), Value(1.0), Value("true"), Value(nullptr), Value(),
                               Value(MakeChannel({}))}) {
        ForgetWhatHappened();
        ExpectException(Call("setFullScreen", {wrong}), "setFullScreen() - argument is not a boolean");
        ExpectLogged(2, "setFullScreen(), argument is not a boolean");
        EXPECT_EQ(Calls(), List{"exception setFullScreen() - argument is not a boolean"});
        ExpectUnchanged();
    }
}

TEST_F(VideoWindowFullScreen, APageThatIsNotBroadcastRelatedChangesNothingAndGetsNoException) {
    platform.answers.broadcastRelated = false;
    ExpectDone(Call("setFullScreen", {true}));
    ExpectLogged(2, "m_SetFullScreen - not broadcast related ");
    EXPECT_EQ(Calls(), List{"browser.IsBroadcastRelated()"});
    ExpectUnchanged();
}

TEST_F(VideoWindowFullScreen, ThePageIsAskedAboutLast) {
    platform.answers.broadcastRelated = false;
    ExpectDone(Call("setFullScreen", {false}));
    ExpectLoggedOnce("setFullScreen() already set to the same value.");
    ExpectException(Call("setFullScreen"), "setFullScreen() - wrong number of arguments");
    ExpectException(Call("setFullScreen", {1}), "setFullScreen() - argument is not a boolean");
    EXPECT_TRUE(Calls({"browser."}).empty());
}

TEST_F(VideoWindowFullScreen, TheResultIsUndefinedOnEveryPath) {
    NPVariant preset{};
    preset.type = NPVariantType_Int32;
    preset.value.intValue = 99;
    for (const Values& arguments : {Values{true}, Values{true}, Values{}, Values{1}}) {
        EXPECT_TRUE(Value(CallWithPresetResult("setFullScreen", arguments, preset)).IsUndefined());
    }
    platform.answers.broadcastRelated = false;
    EXPECT_TRUE(Value(CallWithPresetResult("setFullScreen", {false}, preset)).IsUndefined());
}

TEST_F(VideoWindowFullScreen, NoPlayerIsNeededAndNoneIsTaken) {
    Call("setFullScreen", {true});
    browser.RunAsyncCalls();
    EXPECT_TRUE(Calls({"browser.GetBroadcastPlayer", "player."}).empty());
}

TEST_F(VideoWindowFullScreen, ThePlayerIsToldWhenTheLayoutIsApplied) {
    Bring(kPresenting);
    Call("setFullScreen", {true});
    EXPECT_TRUE(Calls({"player."}).empty());
    EXPECT_EQ(LayOut(), List{"player.SetFullScreenVideo()"});
    Call("setFullScreen", {false});
    EXPECT_EQ(LayOut().at(0), "browser.CorrectVideoAspectRatio(0, 0, 0, 0, [0, 0, 0, 0])");
}

TEST_F(VideoWindowFullScreen, SwitchingBackInsideTheEventIsCarriedOut) {
    Once("script.onFullScreenChange", [&] { ExpectDone(Call("setFullScreen", {false})); });
    ExpectDone(Call("setFullScreen", {true}));
    EXPECT_EQ(Get("fullscreen").value, Value(false));
    EXPECT_EQ(Calls({"script."}), (List{"script.onFullScreenChange()", "script.onFullScreenChange()"}));
}

TEST_F(VideoWindowFullScreen, TheEndOfTheObjectInsideTheEventIsSurvived) {
    browser.pageHoldsDuringCalls = false;
    Once("script.onFullScreenChange", [&] { EndObject(); });
    EXPECT_TRUE(Call("setFullScreen", {true}).accepted);
    EXPECT_EQ(browser.Async().Pending(), 0u);
    EXPECT_FALSE(browser.GetLedger().IsAlive(object->Object()));
}

TEST_F(VideoWindowFullScreen, AnInvalidatedObjectFlipsWithoutAnEventOrALayout) {
    object->Invalidate();
    ForgetWhatHappened();
    ExpectDone(Call("setFullScreen", {true}));
    EXPECT_EQ(Get("fullscreen").value, Value(true));
    EXPECT_TRUE(Calls({"script."}).empty());
    EXPECT_EQ(browser.Async().Pending(), 0u);
    ExpectLogInOrder({"m_OnEvent m_npp is NULL!", "OnEvent m_npp is NULL!"});
}

TEST_F(VideoWindowFullScreen, AnyFailingCallIsSurvived) {
    const auto present = [&] { Call("bindToCurrentChannel"); };
    const auto member = [&] {
        const Outcome outcome = Call("setFullScreen", {true});
        browser.RunAsyncCalls();
        return outcome;
    };
    SurvivesFailingBrowser(present, member);
    SurvivesFailingPlatform(present, member);
}

TEST_F(VideoWindowFullScreen, AnEventThatCannotBeMadeStillFlipsTheMode) {
    browser.FailFrom("createobject");
    browser.FailFrom("invokeDefault");
    ExpectDone(Call("setFullScreen", {true}));
    EXPECT_EQ(Get("fullscreen").value, Value(true));
    EXPECT_EQ(browser.Async().Pending(), 1u);
}

}  // namespace
}  // namespace videobroadcast_tests
