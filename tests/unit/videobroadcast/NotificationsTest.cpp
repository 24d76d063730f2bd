// What the object does about each notification of the platform, on the browser's main thread.
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Notifications : public ObjectTest {
protected:
    void SetUp() override {
        for (const char* handler : {"onPlayStateChange", "onChannelChangeSucceeded", "onChannelChangeError",
                                    "onProgrammesChanged", "onDRMRightsError"}) {
            SetHandler(handler);
        }
        Forget();
    }

    // The browser acts on one notification: what happened.
    Lines Acted(void (Object::*notification)()) {
        return ActedOn([=](Object& object) { (object.*notification)(); });
    }
    template <class Argument>
    Lines Acted(void (Object::*notification)(Argument), Argument argument) {
        return ActedOn([=](Object& object) { (object.*notification)(argument); });
    }
    Lines ActedOn(const std::function<void(Object&)>& notify) {
        Forget();
        notify(Native());
        EXPECT_TRUE(Calls().empty()) << "The callback did more than to queue.";
        EXPECT_EQ(Pump(), 1u);
        return Steps();
    }
    static Lines Steps() {
        Lines steps = Calls({"script.on", "evaluate", "cache.", "tasks.GetActiveApplication", "browser.EnableMedia",
                             "browser.DisableMedia"});
        for (std::string& step : steps) {
            if (step.starts_with("tasks.")) step = "layout";
        }
        return steps;
    }
};

void Blocked(Object& object) { object.ParentalRatingBlocked(7, true); }
void TunedBlocked(Object& object) { object.ParentalRatingBlocked(7, false); }

const Lines kNothing;

TEST_F(Notifications, ProgrammeChangedRaisesProgrammesChangedWithoutArguments) {
    Listen("ProgrammesChanged");
    Acted(&Object::ProgrammeChanged);
    EXPECT_EQ(Told(), (Lines{"script.onProgrammesChanged()", "event ProgrammesChanged{}"}));
}

TEST_F(Notifications, ChannelChangedConnects) {
    EXPECT_EQ(Acted(&Object::ChannelChanged), (Lines{"script.onPlayStateChange(1, undefined)", "layout"}));
}

TEST_F(Notifications, ChannelChangedConnectsWhatWasPresented) {
    Present();
    EXPECT_EQ(Acted(&Object::ChannelChanged), (Lines{"script.onPlayStateChange(1, undefined)", "layout"}));
}

TEST_F(Notifications, TuneSuccessPresentsThenReportsTheChannel) {
    Connect();
    EXPECT_EQ(Acted(&Object::TuneSuccess, 7u),
              (Lines{"script.onPlayStateChange(2, undefined)", "layout", "evaluate new Channel(\"key\", 7);",
                     "script.onChannelChangeSucceeded(Channel(7))"}));
}

TEST_F(Notifications, TuneSuccessIsReportedEvenWhenTheStateIsRefused) {
    EXPECT_EQ(Acted(&Object::TuneSuccess, 7u),
              (Lines{"evaluate new Channel(\"key\", 7);", "script.onChannelChangeSucceeded(Channel(7))"}));
    ExpectLogged(2, "Invalid transition from 0 to 2 with (err 1000)");
    EXPECT_EQ(PlayState(), Object::E_STATE_UNREALIZED);
}

TEST_F(Notifications, TuneFailConnectsWithErrorOneThenReportsIt) {
    Present();
    EXPECT_EQ(Acted(&Object::TuneFail, 7u),
              (Lines{"script.onPlayStateChange(1, 1)", "layout", "evaluate new Channel(\"key\", 7);",
                     "script.onChannelChangeError(Channel(7), 1)"}));
}

TEST_F(Notifications, NoSignalConnectsWithErrorOneAndReportsNoChannel) {
    Present();
    EXPECT_EQ(Acted(&Object::NoSignal), (Lines{"script.onPlayStateChange(1, 1)", "layout"}));
}

TEST_F(Notifications, ServiceNotAvailableUnrealizesWithoutErrorButReportsErrorTwelve) {
    Present();
    EXPECT_EQ(Acted(&Object::ServiceNotAvailable, 7u),
              (Lines{"script.onPlayStateChange(0, undefined)", "layout", "evaluate new Channel(\"key\", 7);",
                     "script.onChannelChangeError(Channel(7), 12)"}));
}

TEST_F(Notifications, ChannelZeroMovesTheStateAndIsNotReported) {
    Connect();
    EXPECT_EQ(Acted(&Object::TuneSuccess, 0u), (Lines{"script.onPlayStateChange(2, undefined)", "layout"}));
    EXPECT_EQ(Acted(&Object::TuneFail, 0u), (Lines{"script.onPlayStateChange(1, 1)", "layout"}));
    EXPECT_EQ(Acted(&Object::ServiceNotAvailable, 0u), (Lines{"script.onPlayStateChange(0, undefined)", "layout"}));
    EXPECT_EQ(Acted(&Object::ScrambledTune, 0u), (Lines{"script.onPlayStateChange(1, 4)", "layout"}));
    EXPECT_EQ(ActedOn([](Object& object) { object.ParentalRatingBlocked(0, false); }),
              (Lines{"script.onPlayStateChange(1, 3)", "layout"}));
}

TEST_F(Notifications, ChannelIdsTravelWhole) {
    Connect();
    Acted(&Object::TuneSuccess, 4294967295u);
    EXPECT_EQ(browser.Evaluated().back(), "new Channel(\"key\", 4294967295);");
}

TEST_F(Notifications, TheHoldOfAReportedChannelIsThePages) {
    Connect();
    for (const bool made : {true, false}) {
        platform.TakeHold(7);
        if (!made) browser.FailNth("evaluate", 1);
        Acted(&Object::TuneSuccess, 7u);
        EXPECT_EQ(platform.Holds(7), 1);  // the first Channel object keeps its hold, the second was never made
    }
}

TEST_F(Notifications, ABlockedChannelConnectsWithErrorThreeAndIsNotReported) {
    Present();
    EXPECT_EQ(ActedOn(Blocked), (Lines{"script.onPlayStateChange(1, 3)", "layout"}));
}

TEST_F(Notifications, ASecondBlockWhileConnectingChangesNothing) {
    Present();
    ActedOn(Blocked);
    EXPECT_EQ(ActedOn(Blocked), kNothing);
    ExpectLogged(3, "Connecting and blocked - but m_blocked already set");
    EXPECT_EQ(LinesWith("COipfVideoBroadcast::m_SetPlayState"), 0u);
}

TEST_F(Notifications, ASecondBlockInAnotherStateIsTold) {
    Present();
    ActedOn(Blocked);
    Acted(&Object::ParentalRatingUnblocked, 7u);
    EXPECT_EQ(ActedOn(Blocked), (Lines{"script.onPlayStateChange(1, 3)", "layout"}));
    ExpectNotLogged("Connecting and blocked - but m_blocked already set");
}

TEST_F(Notifications, ABlockWhileConnectingUnblockedIsTold) {
    Connect();
    EXPECT_EQ(ActedOn(Blocked), (Lines{"script.onPlayStateChange(1, 3)", "layout"}));
}

TEST_F(Notifications, ABlockThatChangesNothingIsRememberedAllTheSame) {
    Present();
    ActedOn(Blocked);
    platform.answers.pvrOperating = true;
    platform.Apply();
    Page().Call("nextChannel");  // refused, but it forgets the block
    EXPECT_EQ(ActedOn(Blocked), kNothing);
    ExpectLogged(3, "Still in CONNECTING, and error is same as last error - do nothing");
    EXPECT_EQ(ActedOn(Blocked), kNothing);
    ExpectLogged(3, "Connecting and blocked - but m_blocked already set");
}

TEST_F(Notifications, ATuneIntoABlockedChannelIsReportedAsASuccess) {
    Connect();
    EXPECT_EQ(ActedOn(TunedBlocked),
              (Lines{"script.onPlayStateChange(1, 3)", "layout", "evaluate new Channel(\"key\", 7);",
                     "script.onChannelChangeSucceeded(Channel(7))"}));
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
}

TEST_F(Notifications, ATuneIntoABlockedChannelBlocks) {
    Connect();
    ActedOn(TunedBlocked);
    EXPECT_EQ(ActedOn(Blocked), kNothing);
    ExpectLogged(3, "Connecting and blocked - but m_blocked already set");
}

TEST_F(Notifications, ASecondTuneIntoABlockedChannelIsReportedAgain) {
    Connect();
    ActedOn(TunedBlocked);
    EXPECT_EQ(ActedOn(TunedBlocked), (Lines{"evaluate new Channel(\"key\", 7);",
                                            "script.onChannelChangeSucceeded(Channel(7)#2)"}));
}

TEST_F(Notifications, TheBlockIsRememberedAfterTheStateWasTold) {
    Present();
    bool released = false;
    SetHandler("onPlayStateChange", [&] {
        if (!std::exchange(released, true)) Page().Call("release");  // forgets a block
    });
    ActedOn(Blocked);
    ASSERT_EQ(PlayState(), Object::E_STATE_UNREALIZED);
    Acted(&Object::ChannelChanged);
    EXPECT_EQ(ActedOn(Blocked), kNothing);
    ExpectLogged(3, "Connecting and blocked - but m_blocked already set");
}

TEST_F(Notifications, UnblockingPresentsAChannelThatConnects) {
    Present();
    ActedOn(Blocked);
    EXPECT_EQ(Acted(&Object::ParentalRatingUnblocked, 7u), (Lines{"script.onPlayStateChange(2, undefined)", "layout"}));
}

TEST_F(Notifications, UnblockingInAnyOtherStateChangesNothing) {
    EXPECT_EQ(Acted(&Object::ParentalRatingUnblocked, 7u), kNothing);
    Present();
    EXPECT_EQ(Acted(&Object::ParentalRatingUnblocked, 7u), kNothing);
    Page().Call("stop");
    EXPECT_EQ(Acted(&Object::ParentalRatingUnblocked, 7u), kNothing);
    EXPECT_EQ(LinesWith("COipfVideoBroadcast::m_SetPlayState"), 0u);
}

TEST_F(Notifications, UnblockingDoesNotForgetTheBlock) {
    Present();
    ActedOn(Blocked);
    Acted(&Object::ParentalRatingUnblocked, 7u);
    Acted(&Object::ChannelChanged);
    EXPECT_EQ(ActedOn(Blocked), kNothing);
    ExpectLogged(3, "Connecting and blocked - but m_blocked already set");
}

TEST_F(Notifications, ASuccessfulTuneDoesNotForgetTheBlock) {
    Present();
    ActedOn(Blocked);
    Acted(&Object::TuneSuccess, 0u);
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
    Acted(&Object::ChannelChanged);
    EXPECT_EQ(ActedOn(Blocked), kNothing);
}

TEST_F(Notifications, UnblockingPresentsAScrambledChannelToo) {
    Present();
    Acted<unsigned short>(&Object::Scrambled, 1);
    EXPECT_EQ(Acted(&Object::ParentalRatingUnblocked, 7u), (Lines{"script.onPlayStateChange(2, undefined)", "layout"}));
}

TEST_F(Notifications, SetChannelDoesNotForgetTheBlockButNextChannelDoes) {
    Present();
    ActedOn(Blocked);
    FakeObject& channel = browser.MakeObject("channel").Set("mid", 5);
    Page().Call("setChannel", {channel});
    EXPECT_EQ(ActedOn(Blocked), kNothing);
    Page().Call("nextChannel");
    EXPECT_EQ(ActedOn(Blocked), (Lines{"script.onPlayStateChange(1, 3)", "layout"}));
}

TEST_F(Notifications, UpdateLayoutAppliesTheLayout) {
    EXPECT_EQ(Acted(&Object::UpdateLayout), Lines{"layout"});
}

TEST_F(Notifications, AScrambledChannelRaisesNoRightsThenConnectsWithErrorFour) {
    Present();
    EXPECT_EQ(Acted<unsigned short>(&Object::Scrambled, 0x0B00),
              (Lines{"script.onDRMRightsError(0, undefined, \"urn:dvb:casystemid:2816\", undefined)",
                     "script.onPlayStateChange(1, 4)", "layout"}));
}

TEST_F(Notifications, ATuneIntoAScrambledChannelIsReportedAsASuccessWithoutARightsError) {
    Connect();
    EXPECT_EQ(Acted(&Object::ScrambledTune, 7u),
              (Lines{"script.onPlayStateChange(1, 4)", "layout", "evaluate new Channel(\"key\", 7);",
                     "script.onChannelChangeSucceeded(Channel(7))"}));
    EXPECT_EQ(PlayState(), Object::E_STATE_CONNECTING);
}

TEST_F(Notifications, AnUnscrambledChannelRaisesValidRightsThenPresents) {
    Present();
    Acted<unsigned short>(&Object::Scrambled, 0x0B00);
    EXPECT_EQ(Acted<unsigned short>(&Object::Unscrambled, 0x0B00),
              (Lines{"script.onDRMRightsError(2, undefined, \"urn:dvb:casystemid:2816\", undefined)",
                     "script.onPlayStateChange(2, undefined)", "layout"}));
}

TEST_F(Notifications, UnscramblingInAnyOtherStateRaisesOnlyTheRights) {
    const Lines rights = {"script.onDRMRightsError(2, undefined, \"urn:dvb:casystemid:1\", undefined)"};
    EXPECT_EQ(Acted<unsigned short>(&Object::Unscrambled, 1), rights);
    Present();
    EXPECT_EQ(Acted<unsigned short>(&Object::Unscrambled, 1), rights);
    Page().Call("stop");
    EXPECT_EQ(Acted<unsigned short>(&Object::Unscrambled, 1), rights);
    EXPECT_EQ(PlayState(), Object::E_STATE_STOPPED);
}

TEST_F(Notifications, ScramblingIsLoggedUnderItsNameAndItsDeed) {
    Present();
    Acted<unsigned short>(&Object::Scrambled, 1);
    ExpectLogged(3, "m_ProcessEvent E_CH_SCRAMBLED");
    ExpectLogged(3, "E_CH_SCRAMBLED - send DrmRightsError message");
    Acted<unsigned short>(&Object::Unscrambled, 1);
    ExpectLogged(3, "m_ProcessEvent E_CH_UNSCRAMBLED");
    ExpectLogged(3, "E_CH_UNSCRAMBLED - send message");
}

TEST_F(Notifications, NumbersOutsideTheTableAreLoggedAsErrors) {
    for (const unsigned id : {0u, 3u, 5u, 8u, 11u, 13u, 999u, 1014u}) {
        EXPECT_EQ(ActedOn([=](Object& object) { object.OnEvent({id, 1}); }), kNothing);
        ExpectLogged(0, "Recieved event " + std::to_string(id) + " in m_OnEvent()");
    }
}

TEST_F(Notifications, NullPayloadsAreIgnored) {
    EXPECT_EQ(ActedOn([](Object& object) { object.OnSASMessageReceived(nullptr); }), kNothing);
    EXPECT_EQ(ActedOn([](Object& object) { object.OnEvent({Object::E_ON_STREAM_EVENT, 0}); }), kNothing);
    EXPECT_EQ(LinesWith("[COipfVideoBroadcast::m_OnDsmEvent]"), 0u);
}

TEST_F(Notifications, WhatWasQueuedBeforeReleaseStillActs) {
    Connect();
    Native().TuneFail(7);
    Page().Call("release");
    Forget();
    Pump();
    EXPECT_EQ(Steps(), (Lines{"script.onPlayStateChange(1, 1)", "layout", "evaluate new Channel(\"key\", 7);",
                              "script.onChannelChangeError(Channel(7), 1)"}));
}

}  // namespace
}  // namespace videobroadcast
