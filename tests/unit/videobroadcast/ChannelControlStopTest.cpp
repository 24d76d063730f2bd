// stop and release.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

class ChannelControlStop : public ScriptedObjectTest {
protected:
    void ExpectNothingStopped() {
        EXPECT_TRUE(Steps().empty());
        ExpectLogged(2, "CVBOEmbeddedObject::stop cannot stop in this state");
    }
};

TEST_F(ChannelControlStop, ThePlayerStopsThenThePlayState) {
    for (const State from : {kConnecting, kPresenting}) {
        MakeObject();
        Bring(from);
        ExpectDone(Call("stop"));
        EXPECT_EQ(Steps(), (List{"player.Stop()", "script.onPlayStateChange(3, undefined)"}));
        ExpectNotLogged("CVBOEmbeddedObject::stop cannot stop in this state");
        ExpectLoggedOnce("COipfVideoBroadcast::m_SetPlayState (E_STATE_STOPPED) called (err 1000)");
        EXPECT_EQ(PlayState(), kStopped);
        EndObject();
    }
}

TEST_F(ChannelControlStop, AStoppedObjectKeepsItsPlayer) {
    Bring(kStopped);
    EXPECT_EQ(platform.HandedOut(), 1u);
}

TEST_F(ChannelControlStop, NothingHappensInStopped) {
    Bring(kStopped);
    ExpectDone(Call("stop"));
    ExpectNothingStopped();
    EXPECT_EQ(PlayState(), kStopped);
}

TEST_F(ChannelControlStop, NothingHappensInUnrealizedWithAPlayer) {
    platform.answers.canStep = false;
    Call("nextChannel");
    ASSERT_EQ(platform.HandedOut(), 1u);
    Bring(kUnrealized);
    ExpectDone(Call("stop"));
    ExpectNothingStopped();
    EXPECT_EQ(PlayState(), kUnrealized);
}

TEST_F(ChannelControlStop, NothingHappensInUnrealizedWithoutAPlayer) {
    ExpectDone(Call("stop"));
    ExpectNothingStopped();
}

TEST_F(ChannelControlStop, NothingHappensInConnectingWithoutAPlayer) {
    BringToConnectingWithoutPlayer();
    ExpectDone(Call("stop"));
    ExpectNothingStopped();
    EXPECT_EQ(PlayState(), kConnecting);
}

TEST_F(ChannelControlStop, ArgumentsAreIgnored) {
    Bring(kPresenting);
    ExpectDone(Call("stop", {1, 2, 3, 4}));
    EXPECT_EQ(PlayState(), kStopped);
}

TEST_F(ChannelControlStop, APageThatIsNotBroadcastRelatedStopsNothingAndGetsNoException) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    ExpectDone(Call("stop"));
    EXPECT_EQ(Calls(), List{"browser.IsBroadcastRelated()"});
    ExpectLogged(2, "m_Stop - app is not broadcast related");
    ExpectNotLogged("CVBOEmbeddedObject::stop cannot stop in this state");
    EXPECT_EQ(PlayState(), kPresenting);
}

class ChannelControlStopMarks : public ScriptedObjectTest {
protected:
    void SetUp() override {
        Bring(kPresenting);
        Rate();
    }
    void Rate() {
        Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
    }
    void Block() {
        Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(5, true); });
    }
};

TEST_F(ChannelControlStopMarks, TheLastRatingCountsNoLongerAfterAStop) {
    Call("stop");
    Rate();
    ExpectNotLogged("Rating has not changed (9)");
}

TEST_F(ChannelControlStopMarks, TheLastRatingCountsNoLongerAlsoWhenNothingCouldBeStopped) {
    Call("stop");
    Rate();
    Call("stop");
    Rate();
    ExpectNotLogged("Rating has not changed (9)");
}

TEST_F(ChannelControlStopMarks, TheLastRatingStaysWhenThePageIsRefused) {
    platform.answers.broadcastRelated = false;
    Call("stop");
    Rate();
    ExpectLoggedOnce("Rating has not changed (9)");
}

TEST_F(ChannelControlStopMarks, TheBlockedMarkStays) {
    Block();
    Call("stop");
    Notify([](IBroadcastPlayerListener& listener) { listener.ChannelChanged(); });
    Block();
    ExpectLoggedOnce("Connecting and blocked - but m_blocked already set");
}

class ChannelControlRelease : public ScriptedObjectTest {};

TEST_F(ChannelControlRelease, ThePlayStateChangesBeforeThePlayerIsGivenBack) {
    Bring(kPresenting);
    ExpectDone(Call("release"));
    EXPECT_EQ(Steps(),
              (List{"script.onPlayStateChange(0, undefined)", "browser.ReleaseBroadcastPlayer(player)"}));
    EXPECT_EQ(PlayState(), kUnrealized);
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(ChannelControlRelease, WithoutAPlayerNothingHappens) {
    ExpectDone(Call("release"));
    EXPECT_TRUE(Steps().empty());
    EXPECT_TRUE(LogOf("m_ReleaseBroadcastPlayer").empty());
}

TEST_F(ChannelControlRelease, ArgumentsAreIgnored) {
    Bring(kPresenting);
    ExpectDone(Call("release", {1, "two", nullptr, 4}));
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(ChannelControlRelease, APageThatIsNotBroadcastRelatedReleasesNothingAndGetsNoException) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    ExpectDone(Call("release"));
    EXPECT_EQ(Calls(), List{"browser.IsBroadcastRelated()"});
    ExpectLogged(2, "m_Release - app is not broadcast related");
    EXPECT_EQ(platform.HandedOut(), 1u);
    EXPECT_EQ(PlayState(), kPresenting);
}

TEST_F(ChannelControlRelease, ARelatedPageIsNotLoggedAsRefused) {
    Call("release");
    Bring(kPresenting);
    Call("release");
    EXPECT_TRUE(LogOf("m_Release - ").empty());
}

TEST_F(ChannelControlRelease, AnObjectThatReleasedTakesAPlayerAgain) {
    Bring(kPresenting);
    Call("release");
    ExpectDone(Call("nextChannel"));
    ExpectInOrder({"browser.ReleaseBroadcastPlayer(player)", "browser.GetBroadcastPlayer()",
                   "player.SetListener(listener)", "player.NextChannel()"});
}

}  // namespace
}  // namespace videobroadcast_tests
