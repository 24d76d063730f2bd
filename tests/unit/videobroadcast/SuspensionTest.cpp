// Suspending and resuming presentation, and what a scrambled channel changes about it.
#include <utility>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Suspension : public ObjectTest {
protected:
    void Suspend() {
        Native().Suspend();
        Pump();
    }
    void Resume() {
        Forget();
        Native().Resume();
        Pump();
    }
    static Lines Steps() { return Calls({"script.onPlayState", "browser.Enable", "browser.Disable"}); }
};

TEST_F(Suspension, SuspendEntersMediaPlaybackThenConnectsWithErrorEleven) {
    Present();
    SetHandler("onPlayStateChange");
    Suspend();
    EXPECT_EQ(Steps(), (Lines{"browser.EnableMediaPlaybackMode()", "script.onPlayStateChange(1, 11)"}));
    ExpectLogged(3, "COipfVideoBroadcast::m_OnSuspend()");
    ExpectLogged(3, "COipfVideoBroadcast::m_UpdateLayout skipped - channel is suspended");
}

TEST_F(Suspension, SuspendWithoutAPlayerDoesNothing) {
    SetHandler("onPlayStateChange");
    Suspend();
    EXPECT_TRUE(Steps().empty());
    ExpectLogged(3, "COipfVideoBroadcast::m_OnSuspend()");
    ExpectLogged(2, "COipfVideoBroadcast::m_OnSuspend() - no broadcast player");
    EXPECT_FALSE(platform.answers.mediaPlaybackMode);
}

TEST_F(Suspension, SuspendOfAnUnrealizedObjectWithAPlayerConnects) {
    Present();
    Native().ServiceNotAvailable(0);
    Pump();
    SetHandler("onPlayStateChange");
    Suspend();
    EXPECT_EQ(Steps(), (Lines{"browser.EnableMediaPlaybackMode()", "script.onPlayStateChange(1, 11)"}));
}

TEST_F(Suspension, ASecondSuspendEntersMediaPlaybackAgainAndTellsNothing) {
    Present();
    Suspend();
    SetHandler("onPlayStateChange");
    Forget();
    Suspend();
    EXPECT_EQ(Steps(), Lines{"browser.EnableMediaPlaybackMode()"});
}

TEST_F(Suspension, ResumePresentsABlockedChannelToo) {
    Present();
    Native().ParentalRatingBlocked(7, true);
    Pump();
    Resume();
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
}

TEST_F(Suspension, ResumeLeavesMediaPlaybackThenPresents) {
    Present();
    Suspend();
    SetHandler("onPlayStateChange");
    Resume();
    EXPECT_EQ(Steps(), (Lines{"browser.DisableMediaPlaybackMode()", "script.onPlayStateChange(2, undefined)"}));
    ExpectLogged(3, "COipfVideoBroadcast::m_OnResume()");
    ExpectLogged(3, "Set play state to presenting.");
}

TEST_F(Suspension, ResumeOutsideMediaPlaybackOnlyPresents) {
    Connect();
    SetHandler("onPlayStateChange");
    Resume();
    EXPECT_EQ(Steps(), Lines{"script.onPlayStateChange(2, undefined)"});
}

TEST_F(Suspension, ResumeAsksWhetherMediaIsPlayedBeforeItEndsThat) {
    Present();
    Suspend();
    Resume();
    const Lines asked = Calls({"browser.IsMedia", "browser.Disable"});
    ASSERT_GE(asked.size(), 2u);
    EXPECT_EQ(asked[0], "browser.IsMediaPlaybackMode()");
    EXPECT_EQ(asked[1], "browser.DisableMediaPlaybackMode()");
}

TEST_F(Suspension, WithoutTheBrowserInterfaceResumeOnlyPresents) {
    Connect();
    platform.answers.hasBrowserAPI = false;
    Resume();
    platform.answers.hasBrowserAPI = true;
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
}

TEST_F(Suspension, ResumeThatCannotRestoreTheChannelStopsThere) {
    Present();
    Suspend();
    SetHandler("onPlayStateChange");
    platform.answers.canRestoreChannel = false;
    Resume();
    EXPECT_EQ(Steps(), Lines{"browser.DisableMediaPlaybackMode()"});
    ExpectLogged(2, "COipfVideoBroadcast::m_OnResume - fail to restore channel");
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
    ExpectNotLogged("Set play state to presenting.");
}

TEST_F(Suspension, ResumeInAnyOtherStateOnlyLeavesMediaPlayback) {
    platform.answers.mediaPlaybackMode = true;
    SetHandler("onPlayStateChange");
    Resume();
    EXPECT_EQ(Steps(), Lines{"browser.DisableMediaPlaybackMode()"});
    ExpectNotLogged("Set play state to presenting.");
    Present();
    Resume();
    EXPECT_TRUE(Steps().empty());
    Page().Call("stop");
    Resume();
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(LinesWith("COipfVideoBroadcast::m_SetPlayState"), 0u);
}

TEST_F(Suspension, ResumeOfAScrambledChannelLeavesTheStateAlone) {
    Present();
    Native().Scrambled(1);
    Suspend();
    SetHandler("onPlayStateChange");
    Resume();
    EXPECT_EQ(Steps(), Lines{"browser.DisableMediaPlaybackMode()"});
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
}

TEST_F(Suspension, ATuneIntoAScrambledChannelHoldsResumeBackToo) {
    Connect();
    Native().ScrambledTune(7);
    Pump();
    Resume();
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
}

TEST_F(Suspension, AfterUnscramblingResumePresents) {
    Present();
    Native().Scrambled(1);
    Native().Unscrambled(1);
    Pump();
    Suspend();
    Resume();
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
}

TEST_F(Suspension, OnlyUnscramblingForgetsThatTheChannelIsScrambled) {
    Present();
    Native().Scrambled(1);
    Native().TuneSuccess(0);
    Pump();
    Page().Call("nextChannel");
    Page().Call("stop");
    Page().Call("release");
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
    Resume();
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
}

TEST_F(Suspension, TheChannelIsKnownAsScrambledOnlyAfterTheRightsWereTold) {
    Present();
    Page().Call("release");
    SetHandler("onDRMRightsError", [&] { Page().Call("bindToCurrentChannel"); });
    SetHandler("onPlayStateChange");
    Native().Scrambled(1);
    Pump();
    EXPECT_EQ(Steps(), (Lines{"script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(2, undefined)",
                              "script.onPlayStateChange(1, 4)"}));
}

TEST_F(Suspension, TheChannelIsKnownAsScrambledBeforeTheStateIsTold) {
    bool bound = false;  // the handler stays set
    for (const bool tune : {false, true}) {
        Present();
        bound = false;
        SetHandler("onPlayStateChange", [&] {
            if (std::exchange(bound, true)) return;
            Page().Call("stop");
            Page().Call("bindToCurrentChannel");
        });
        tune ? Native().ScrambledTune(0) : Native().Scrambled(1);
        Pump();
        EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
        Native().Unscrambled(1);
        Pump();
        Page().Call("release");
    }
}

TEST_F(Suspension, TheChannelIsKnownAsClearOnlyAfterTheRightsWereTold) {
    Present();
    Native().Scrambled(1);
    Pump();
    SetHandler("onDRMRightsError", [&] {
        Page().Call("stop");
        Page().Call("bindToCurrentChannel");
        EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
    });
    Native().Unscrambled(1);
    Pump();
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
}

TEST_F(Suspension, TheChannelIsKnownAsClearBeforeTheStateIsTold) {
    Present();
    Native().Scrambled(1);
    Pump();
    bool stopped = false;
    SetHandler("onPlayStateChange", [&] {
        if (std::exchange(stopped, true)) return;
        Page().Call("stop");
        Page().Call("bindToCurrentChannel");
    });
    Native().Unscrambled(1);
    Pump();
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
}

TEST_F(Suspension, ReleasingWhileSuspendedLeavesMediaPlaybackOn) {
    Present();
    Suspend();
    Page().Call("release");
    EXPECT_TRUE(platform.answers.mediaPlaybackMode);
    EXPECT_TRUE(Calls({"browser.Disable"}).empty());
}

TEST_F(Suspension, ASuspendOnTheWayWhenThePlayerIsGivenBackDoesNothing) {
    Present();
    Native().Suspend();
    Page().Call("release");
    Forget();
    Pump();
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(LinesWith("COipfVideoBroadcast::m_OnSuspend() - no broadcast player"), 1u);
}

}  // namespace
}  // namespace videobroadcast
