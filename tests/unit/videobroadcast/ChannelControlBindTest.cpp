// bindToCurrentChannel.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

class ChannelControlBind : public ScriptedObjectTest {};

TEST_F(ChannelControlBind, ThePlayerBindsThenThePlayStateGoesToConnectingThenToPresenting) {
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(), (List{"browser.GetBroadcastPlayer()", "player.SetListener(listener)",
                             "player.BindToCurrentChannel()", "script.onPlayStateChange(1, undefined)",
                             "script.onPlayStateChange(2, undefined)"}));
    ExpectLogInOrder({"COipfVideoBroadcast::m_SetPlayState (E_STATE_CONNECTING) called (err 1000)",
                      "Set play state to presenting.",
                      "COipfVideoBroadcast::m_SetPlayState (E_STATE_PRESENTING) called (err 1000)",
                      "COipfVideoBroadcast::bindToCurrentChannel OK"});
    EXPECT_EQ(PlayState(), kPresenting);
}

TEST_F(ChannelControlBind, ThePageIsAskedAboutFirstAndTheRecorderNever) {
    platform.answers.pvrOperating = true;
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Calls().front(), "browser.IsBroadcastRelated()");
    EXPECT_TRUE(Calls({"pvr."}).empty());
    EXPECT_EQ(PlayState(), kPresenting);
}

TEST_F(ChannelControlBind, ArgumentsAreIgnored) {
    ExpectDone(Call("bindToCurrentChannel", {MakeChannel({}), 2, 3, 4}));
    EXPECT_EQ(PlayState(), kPresenting);
}

TEST_F(ChannelControlBind, AStoppedObjectBindsAgainWithThePlayerThatItHolds) {
    Bring(kStopped);
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(), (List{"player.BindToCurrentChannel()", "script.onPlayStateChange(1, undefined)",
                             "script.onPlayStateChange(2, undefined)"}));
}

TEST_F(ChannelControlBind, NothingIsSelectedReportedOrGivenBack) {
    Call("bindToCurrentChannel");
    EXPECT_TRUE(Calls({"browser.SetChannel", "player.SetChannel", "cache.", "script.onChannelChange"}).empty());
}

TEST_F(ChannelControlBind, AnyOtherStateIsLoggedAndNothingChanges) {
    Bring(kConnecting);
    ExpectDone(Call("bindToCurrentChannel"));
    ExpectLogged(2, "m_BindToCurrentCh in wrong state (1)");
    EXPECT_EQ(PlayState(), kConnecting);
    EXPECT_TRUE(Steps().empty());

    MakeObject();
    Bring(kPresenting);
    ExpectDone(Call("bindToCurrentChannel"));
    ExpectLogged(2, "m_BindToCurrentCh in wrong state (2)");
    EXPECT_EQ(PlayState(), kPresenting);
    EXPECT_TRUE(Steps().empty());
}

TEST_F(ChannelControlBind, APageThatIsNotBroadcastRelatedGetsASecurityErrorInAnyState) {
    platform.answers.broadcastRelated = false;
    ExpectException(Call("bindToCurrentChannel"), "SecurityError");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
    ExpectLogged(2, "m_BindToCurrentCh - app is not broadcast related ");

    platform.answers.broadcastRelated = true;
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    ExpectException(Call("bindToCurrentChannel"), "SecurityError");
    EXPECT_TRUE(LogOf("m_BindToCurrentCh in wrong state").empty());
}

TEST_F(ChannelControlBind, AScrambledChannelStaysConnecting) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.Scrambled(1); });
    Call("stop");
    ForgetWhatHappened();
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(), (List{"player.BindToCurrentChannel()", "script.onPlayStateChange(1, undefined)"}));
    ExpectNotLogged("Set play state to presenting.");
    ExpectLoggedOnce("COipfVideoBroadcast::bindToCurrentChannel OK");
    EXPECT_EQ(PlayState(), kConnecting);
}

TEST_F(ChannelControlBind, AChannelThatWasSetMeanwhileCountsAsScrambledStill) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.Scrambled(1); });
    for (const Value& channel : {Value(MakeChannel({{"mid", 7}})), Value(nullptr)}) {
        Call("setChannel", {channel});
        Call("stop");
        Call("bindToCurrentChannel");
        EXPECT_EQ(PlayState(), kConnecting);
    }
}

TEST_F(ChannelControlBind, AChannelThatIsClearAgainIsPresented) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.Scrambled(1); });
    Notify([](IBroadcastPlayerListener& listener) { listener.Unscrambled(1); });
    Call("stop");
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(PlayState(), kPresenting);
}

TEST_F(ChannelControlBind, TheMarksAreClearedAlsoInAWrongStateAndWhenThePageIsRefused) {
    for (const bool related : {true, false}) {
        MakeObject();
        Bring(kPresenting);
        Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
        Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(5, true); });
        platform.answers.broadcastRelated = related;
        Call("bindToCurrentChannel");
        Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
        Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(5, true); });
        ExpectNotLogged("Rating has not changed (9)");
        ExpectNotLogged("Connecting and blocked - but m_blocked already set");
        platform.answers.broadcastRelated = true;
        EndObject();
    }
}

class ChannelControlBindWithoutPlayer : public ScriptedObjectTest {
protected:
    void SetUp() override { platform.answers.players = 0; }
};

TEST_F(ChannelControlBindWithoutPlayer, TheTelevisionsChannelIsReportedWithError11) {
    platform.answers.currentChannel = 44;
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(),
              (List{"browser.GetBroadcastPlayer()", "browser.CurrentChannel()", "evaluate new Channel(\"key\", 44);",
                    "script.onChannelChangeError(Channel(44), 11)"}));
    ExpectLogged(2, "bindToCurrentChannel failed to get m_bcPlayer");
    ExpectLoggedOnce("COipfVideoBroadcast::m_SetPlayState (E_STATE_UNREALIZED) called (err 11)");
    ExpectNotLogged("COipfVideoBroadcast::bindToCurrentChannel OK");
    EXPECT_EQ(PlayState(), kUnrealized);
}

TEST_F(ChannelControlBindWithoutPlayer, TheChannelObjectKeepsTheHold) {
    Call("bindToCurrentChannel");
    EXPECT_EQ(platform.Holds(1), 1);
    EXPECT_TRUE(Calls({"cache."}).empty());
}

TEST_F(ChannelControlBindWithoutPlayer, ALargeIdIsWrittenUnsigned) {
    platform.answers.currentChannel = 4294967295u;
    Call("bindToCurrentChannel");
    EXPECT_EQ(browser.Evaluated().back(), "new Channel(\"key\", 4294967295);");
}

TEST_F(ChannelControlBindWithoutPlayer, WithoutACurrentChannelAChannelOfId0IsReported) {
    platform.answers.currentChannel = std::nullopt;
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(),
              (List{"browser.GetBroadcastPlayer()", "browser.CurrentChannel()", "evaluate new Channel(\"key\", 0);",
                    "script.onChannelChangeError(Channel(0), 11)"}));
}

TEST_F(ChannelControlBindWithoutPlayer, AChannelObjectThatCannotBeMadeIsReleasedAndReportedAsUndefined) {
    browser.FailFrom("evaluate");
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(),
              (List{"browser.GetBroadcastPlayer()", "browser.CurrentChannel()", "evaluate new Channel(\"key\", 1);",
                    "cache.ReleaseChannel(1)", "script.onChannelChangeError(undefined, 11)"}));
    EXPECT_EQ(platform.Holds(1), 0);
    ExpectLoggedOnce("COipfVideoBroadcast::m_SetPlayState (E_STATE_UNREALIZED) called (err 11)");
}

TEST_F(ChannelControlBindWithoutPlayer, TheId0IsReleasedLikeAnyOther) {
    platform.answers.currentChannel = std::nullopt;
    browser.FailFrom("getvalue");
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(), (List{"browser.GetBroadcastPlayer()", "browser.CurrentChannel()", "cache.ReleaseChannel(0)",
                             "script.onChannelChangeError(undefined, 11)"}));
}

TEST_F(ChannelControlBindWithoutPlayer, TheReportComesBeforeThePlayState) {
    Once("script.onChannelChangeError", [&] {
        platform.answers.players = 1;
        Call("nextChannel");
    });
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Calls({"script."}), (List{"script.onChannelChangeError(Channel(1), 11)",
                                        "script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(0, 11)"}));
}

TEST_F(ChannelControlBindWithoutPlayer, TheChannelObjectIsGivenUpBeforeThePlayStateChanges) {
    Once("script.onChannelChangeError", [&] {
        platform.answers.players = 1;
        Call("nextChannel");
    });
    bool seen = false;
    When("script.onPlayStateChange(0, 11)", [&] {
        seen = true;
        EXPECT_EQ(browser.Created("Channel").front()->HeldByPlugin(), 0u);
    });
    Call("bindToCurrentChannel");
    EXPECT_TRUE(seen);
}

}  // namespace
}  // namespace videobroadcast_tests
