// setChannel: tuning to the channel that was found.
#include <tuple>

#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

class ChannelControlTune : public ScriptedObjectNumbersTest {};

INSTANTIATE_TEST_SUITE_P(Numbers, ChannelControlTune, BothNumbers());

TEST_P(ChannelControlTune, AnIdFromMidIsTunedWithoutReadingAnythingElse) {
    FakeObject& channel =
        MakeChannel({{"mid", 7}, {"dsd", "0A1b"}, {"idType", 12}, {"sid", 1}, {"onid", 2}, {"tsid", 3}});
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(channel.Reads(), List{"mid"});
    ExpectLogged(3, "Got channel id 7");
    ExpectNotLogged("Failed to get Channel ID!");
}

TEST_P(ChannelControlTune, ThePlayerIsToldThenTheBrowserThenThePlayStateAndTheHoldIsGivenBackLast) {
    ExpectDone(Call("setChannel", {MakeChannel({{"mid", 7}})}));
    EXPECT_EQ(Calls(),
              (List{"tasks.GetWrapperManager()", "tasks.GetWrapperInstance(59)", "pvr.IsPvrOperating()",
                    "browser.GetBroadcastPlayer()", "player.SetListener(listener)", "read mid",
                    "player.SetChannel(7, false)", "browser.SetChannel(7, false)",
                    "script.onPlayStateChange(1, undefined)", "tasks.GetActiveApplication()",
                    "browser.IsMediaPlaybackMode()", "cache.ReleaseChannel(7)"}));
    EXPECT_EQ(PlayState(), kConnecting);
}

TEST_P(ChannelControlTune, SuccessIsNotReportedUntilThePlayerSaysSo) {
    FakeObject& channel = MakeChannel({{"mid", 7}});
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_TRUE(Calls({"script.onChannelChange"}).empty());
    EXPECT_EQ(browser.RunAsyncCalls(), 0u);
    platform.TakeHold(7);
    Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(7); });
    EXPECT_EQ(Calls({"script.onChannelChange"}), List{"script.onChannelChangeSucceeded(Channel(7))"});
    EXPECT_EQ(PlayState(), kPresenting);
}

TEST_P(ChannelControlTune, ARefusedIdIsReleasedThenReportedThenThePlayStateGoesToUnrealized) {
    platform.answers.acceptsChannel = false;
    Bring(kPresenting);
    ExpectDone(Call("setChannel", {MakeChannel({{"mid", 7}})}));
    EXPECT_EQ(Steps(), (List{"read mid", "player.SetChannel(7, false)", "cache.ReleaseChannel(7)",
                             "script.onChannelChangeError(channel, 100)", "script.onPlayStateChange(0, 100)"}));
    ExpectLogged(2, "setChannel(7) failed.");
    EXPECT_EQ(PlayState(), kUnrealized);
}

TEST_P(ChannelControlTune, AnAcceptedIdLogsNoFailure) {
    Call("setChannel", {MakeChannel({{"mid", 7}})});
    EXPECT_TRUE(LogOf("setChannel").empty());
}

TEST_P(ChannelControlTune, ARefusedIdThatWasLookedUpIsReleasedOnce) {
    platform.answers.acceptsChannel = false;
    platform.TakeHold(2);
    ExpectDone(Call("setChannel", {MakeChannel({})}));
    EXPECT_EQ(Calls({"cache."}), List{"cache.ReleaseChannel(2)"});
    EXPECT_EQ(platform.Holds(2), 1);
}

TEST_P(ChannelControlTune, AnAcceptedIdThatWasLookedUpIsReleasedOnce) {
    platform.TakeHold(2);
    ExpectDone(Call("setChannel", {MakeChannel({})}));
    EXPECT_EQ(Calls({"cache."}), List{"cache.ReleaseChannel(2)"});
    EXPECT_EQ(platform.Holds(2), 1);
}

TEST_P(ChannelControlTune, SetChannelLeavesTheBlockedMarkOfTheLastChannel) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(5, true); });
    Call("setChannel", {MakeChannel({{"mid", 7}})});
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingBlocked(5, true); });
    ExpectLoggedOnce("Connecting and blocked - but m_blocked already set");
}

TEST_P(ChannelControlTune, SetChannelLeavesTheLastRatingValid) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
    Call("setChannel", {MakeChannel({{"mid", 7}})});
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
    ExpectLoggedOnce("Rating has not changed (9)");
}

// What "mid" is, which id is tuned and what is logged about it; 0: it is not used.
struct MidCase {
    Value mid;
    unsigned id;
    const char* line;
    friend void PrintTo(const MidCase& mid, std::ostream* out) { *out << mid.mid.Show(); }
};

class ChannelControlMid : public ScriptedObjectTest, public ::testing::WithParamInterface<MidCase> {};

TEST_P(ChannelControlMid, IsAnUnsignedNumberOrMissing) {
    const auto& [mid, id, line] = GetParam();
    FakeObject& channel = MakeChannel({{"mid", mid}});
    ExpectDone(Call("setChannel", {channel}));
    ExpectLoggedOnce(line);
    EXPECT_EQ(LogOf("Got channel id").size() + LogOf("Failed to get Channel ID!").size(), 1u);
    const std::string tuned = std::to_string(id == 0 ? 2 : id);  // 2: the answer of the look-up by triplet
    EXPECT_EQ(Calls({"player.SetChannel", "browser.SetChannel", "cache."}),
              (List{"player.SetChannel(" + tuned + ", false)", "browser.SetChannel(" + tuned + ", false)",
                    "cache.ReleaseChannel(" + tuned + ")"}));
    EXPECT_EQ(channel.Reads().size(), id == 0 ? 6u : 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Values, ChannelControlMid,
    ::testing::Values(MidCase{1, 1, "Got channel id 1"}, MidCase{7.9, 7, "Got channel id 7"},
                      MidCase{2147483648.0, 2147483648u, "Got channel id -2147483648"},
                      MidCase{-1, 4294967295u, "Got channel id -1"},
                      MidCase{4294967295.0, 4294967295u, "Got channel id -1"},
                      MidCase{1e300, 4294967295u, "Got channel id -1"}, MidCase{0, 0, "Got channel id 0"},
                      MidCase{0.9, 0, "Got channel id 0"}, MidCase{-1.0, 0, "Got channel id 0"},
                      MidCase{__builtin_nan(""), 0, "Got channel id 0"},
                      MidCase{"7", 0, "Failed to get Channel ID!"}, MidCase{true, 0, "Failed to get Channel ID!"},
                      MidCase{nullptr, 0, "Failed to get Channel ID!"},
                      MidCase{{}, 0, "Failed to get Channel ID!"}));

TEST_F(ChannelControlMid, AnObjectIsNoIdAndIsGivenBack) {
    FakeObject& strange = browser.MakeObject("strange");
    ExpectDone(Call("setChannel", {MakeChannel({{"mid", strange}, {"dsd", strange}, {"idType", strange}})}));
    EXPECT_EQ(Calls({"player.Get"}), List{"player.GetChannelFromTriplet(-1, 0, 0, 0)"});
    EXPECT_EQ(strange.HeldByPlugin(), 0u);
}

TEST_F(ChannelControlMid, AVariantOfTypeObjectWithoutAnObjectIsNoIdAndHoldsNothingToGiveBack) {
    ExpectDone(Call("setChannel", {MakeChannel({{"mid", static_cast<NPObject*>(nullptr)}})}));
    ExpectLoggedOnce("Failed to get Channel ID!");
}

TEST_F(ChannelControlMid, AnIdAboveTheSignedRangeIsLoggedSignedWhenItIsRefused) {
    platform.answers.acceptsChannel = false;
    Call("setChannel", {MakeChannel({{"mid", -2}})});
    EXPECT_EQ(Calls({"player.SetChannel", "cache."}),
              (List{"player.SetChannel(4294967294, false)", "cache.ReleaseChannel(4294967294)"}));
    ExpectLogged(2, "setChannel(-2) failed.");
}

// The play state that setChannel starts from, and what is answered.
using StateCase = std::tuple<State, bool>;

class ChannelControlFromState : public ScriptedObjectTest, public ::testing::WithParamInterface<StateCase> {};

TEST_P(ChannelControlFromState, AChannelLeadsToConnectingOnSuccessAndToUnrealizedOnFailure) {
    const auto [from, accepts] = GetParam();
    Bring(from);
    platform.answers.acceptsChannel = accepts;
    ExpectDone(Call("setChannel", {MakeChannel({{"mid", 7}})}));
    EXPECT_EQ(PlayState(), accepts ? kConnecting : kUnrealized);
    ExpectLoggedOnce(accepts ? "COipfVideoBroadcast::m_SetPlayState (E_STATE_CONNECTING) called (err 1000)"
                             : "COipfVideoBroadcast::m_SetPlayState (E_STATE_UNREALIZED) called (err 100)");
    EXPECT_EQ(LogOf("COipfVideoBroadcast::m_SetPlayState (").size(), 1u);
    const bool changes = from != (accepts ? kConnecting : kUnrealized);
    const std::string event = accepts ? "script.onPlayStateChange(1, undefined)" : "script.onPlayStateChange(0, 100)";
    EXPECT_EQ(Calls({"script.onPlayStateChange"}), changes ? List{event} : List{});
}

TEST_P(ChannelControlFromState, TheNullChannelLeadsToUnrealized) {
    const auto [from, accepts] = GetParam();
    Bring(from);
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(PlayState(), kUnrealized);
    EXPECT_EQ(Calls({"script.onPlayStateChange"}),
              from == kUnrealized ? List{} : List{"script.onPlayStateChange(0, undefined)"});
}

INSTANTIATE_TEST_SUITE_P(States, ChannelControlFromState,
                         ::testing::Combine(::testing::Values(kUnrealized, kConnecting, kPresenting, kStopped),
                                            ::testing::Values(false, true)));

}  // namespace
}  // namespace videobroadcast_tests
