// nextChannel and prevChannel.
#include <tuple>

#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

struct Step {
    const char* method;
    const char* call;
    friend void PrintTo(const Step& step, std::ostream* out) { *out << step.method; }
};

class ChannelControlStep : public ScriptedObjectTest, public ::testing::WithParamInterface<Step> {
protected:
    const std::string method = GetParam().method;
    const std::string call = GetParam().call;
};

INSTANTIATE_TEST_SUITE_P(Methods, ChannelControlStep,
                         ::testing::Values(Step{"nextChannel", "player.NextChannel()"},
                                           Step{"prevChannel", "player.PrevChannel()"}));

TEST_P(ChannelControlStep, ThePageThenTheRecorderIsAskedThenThePlayerSteps) {
    ExpectDone(Call(method));
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "tasks.GetWrapperManager()",
                             "tasks.GetWrapperInstance(59)", "pvr.IsPvrOperating()", "browser.GetBroadcastPlayer()",
                             "player.SetListener(listener)", call, "script.onPlayStateChange(1, undefined)",
                             "tasks.GetActiveApplication()", "browser.IsMediaPlaybackMode()"}));
    EXPECT_EQ(PlayState(), kConnecting);
    ExpectNotLogged("IBroadcastPlayer::Next/PrevChannel() FAILED");
}

TEST_P(ChannelControlStep, ArgumentsAreIgnored) {
    ExpectDone(Call(method, {1, "two", nullptr, MakeChannel({}), 5}));
    EXPECT_EQ(Calls({"player.N", "player.P"}), List{call});
}

TEST_P(ChannelControlStep, EveryStateLeadsToConnecting) {
    for (const State from : {kUnrealized, kConnecting, kPresenting, kStopped}) {
        MakeObject();
        Bring(from);
        ExpectDone(Call(method));
        EXPECT_EQ(PlayState(), kConnecting);
        ExpectLoggedOnce("COipfVideoBroadcast::m_SetPlayState (E_STATE_CONNECTING) called (err 1000)");
        EndObject();
    }
}

TEST_P(ChannelControlStep, APageThatIsNotBroadcastRelatedGetsASecurityErrorAndNothingIsAsked) {
    platform.answers.broadcastRelated = false;
    platform.answers.pvrOperating = true;
    ExpectException(Call(method), "SecurityError");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
    ExpectLogged(2, "GetBroadcastPlayer is not broadcast related ");
}

TEST_P(ChannelControlStep, AnOperatingRecorderThrowsAndReportsNothing) {
    Bring(kPresenting);
    platform.answers.pvrOperating = true;
    ExpectException(Call(method), "PVR operating");
    EXPECT_EQ(Steps(), List{"exception PVR operating"});
    ExpectLogged(2, "Can't call next/prevChannel - PVR operating!");
    EXPECT_EQ(PlayState(), kPresenting);
}

TEST_P(ChannelControlStep, AnOperatingRecorderKeepsThePlayerFromBeingTaken) {
    platform.answers.pvrOperating = true;
    Call(method);
    EXPECT_TRUE(Calls({"browser.GetBroadcastPlayer", "player."}).empty());
}

TEST_P(ChannelControlStep, AFailedStepIsReportedAsError10OfANullChannelThenUnrealized) {
    platform.answers.canStep = false;
    Bring(kPresenting);
    ExpectDone(Call(method));
    EXPECT_EQ(Steps(),
              (List{call, "script.onChannelChangeError(null, 10)", "script.onPlayStateChange(0, 10)"}));
    ExpectLogged(2, "IBroadcastPlayer::Next/PrevChannel() FAILED");
    EXPECT_EQ(PlayState(), kUnrealized);
    EXPECT_EQ(platform.HandedOut(), 1u);
}

TEST_P(ChannelControlStep, WithoutAPlayerError11IsReportedOfANullChannelThenUnrealized) {
    BringToConnectingWithoutPlayer();
    platform.answers.players = 0;
    ExpectDone(Call(method));
    EXPECT_EQ(Steps(), (List{"browser.GetBroadcastPlayer()", "script.onChannelChangeError(null, 11)",
                             "script.onPlayStateChange(0, 11)"}));
}

TEST_P(ChannelControlStep, NothingIsSelectedAndNoHoldIsGivenBack) {
    Call(method);
    platform.answers.canStep = false;
    Call(method);
    EXPECT_TRUE(Calls({"browser.SetChannel", "player.SetChannel", "cache."}).empty());
}

// Whether the step is made or refused, the marks are cleared first.
enum Hindrance { kNone, kNotRelated, kRecorder, kFailure };

class ChannelControlStepMarks : public ScriptedObjectTest,
                                public ::testing::WithParamInterface<std::tuple<std::string, Hindrance>> {
protected:
    void Step() {
        const auto& [method, hindrance] = GetParam();
        platform.answers.broadcastRelated = hindrance != kNotRelated;
        platform.answers.pvrOperating = hindrance == kRecorder;
        platform.answers.canStep = hindrance != kFailure;
        Call(method);
        platform.answers.broadcastRelated = true;
    }
};

INSTANTIATE_TEST_SUITE_P(Methods, ChannelControlStepMarks,
                         ::testing::Combine(::testing::Values("nextChannel", "prevChannel"),
                                            ::testing::Values(kNone, kNotRelated, kRecorder, kFailure)));

TEST_P(ChannelControlStepMarks, TheBlockedMarkIsCleared) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(5, true); });
    Step();
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(5, true); });
    ExpectNotLogged("Connecting and blocked - but m_blocked already set");
}

TEST_P(ChannelControlStepMarks, TheLastRatingCountsNoLonger) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
    Step();
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
    ExpectNotLogged("Rating has not changed (9)");
}

}  // namespace
}  // namespace videobroadcast_tests
