// setChannel: finding the channel of a Channel object without an id, by its descriptor or by its triplet.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

class ChannelControlLookup : public ScriptedObjectNumbersTest {
protected:
    // From here a failure is a change of the play state.
    void SetUp() override { Bring(kPresenting); }
};

INSTANTIATE_TEST_SUITE_P(Numbers, ChannelControlLookup, BothNumbers());

TEST_P(ChannelControlLookup, ADescriptorIsReadThenIdTypeAndSidThenThePlayerIsAsked) {
    ExpectDone(Call("setChannel", {MakeChannel({{"mid", 0}, {"dsd", "0A1b"}, {"idType", 13}, {"sid", 5},
                                                {"onid", 1}, {"tsid", 2}})}));
    EXPECT_EQ(Steps(), (List{"read mid", "read dsd", "read idType", "read sid",
                             "player.GetChannelFromDSD(13, 0a1b, 5)", "player.SetChannel(3, true)",
                             "browser.SetChannel(3, false)", "script.onPlayStateChange(1, undefined)",
                             "cache.ReleaseChannel(3)"}));
    ExpectLogged(3, "Got channel from DSD, id 3");
    EXPECT_EQ(platform.Holds(3), 0);
}

TEST_P(ChannelControlLookup, ATripletIsReadAfterIdTypeAndSidThenThePlayerIsAsked) {
    ExpectDone(Call("setChannel", {MakeChannel({{"idType", 12}, {"sid", 5}, {"onid", 1}, {"tsid", 2}})}));
    EXPECT_EQ(Steps(), (List{"read mid", "read dsd", "read idType", "read sid", "read onid", "read tsid",
                             "player.GetChannelFromTriplet(12, 1, 2, 5)", "player.SetChannel(2, false)",
                             "browser.SetChannel(2, false)", "script.onPlayStateChange(1, undefined)",
                             "cache.ReleaseChannel(2)"}));
    ExpectLogged(3, "Got channel from triplet, id 2");
    ExpectNotLogged("Failed to get channel from triplet!");
    EXPECT_EQ(platform.Holds(2), 0);
}

TEST_P(ChannelControlLookup, AMissingIdTypeIsMinus1AndOtherMissingNumbersAre0) {
    ExpectDone(Call("setChannel", {MakeChannel({})}));
    ExpectDone(Call("setChannel", {MakeChannel({{"dsd", "00"}})}));
    EXPECT_EQ(Calls({"player.GetChannelFrom"}),
              (List{"player.GetChannelFromTriplet(-1, 0, 0, 0)", "player.GetChannelFromDSD(-1, 00, 0)"}));
}

TEST_P(ChannelControlLookup, MembersThatAreNoNumbersCountAsMissing) {
    ExpectDone(Call("setChannel",
                    {MakeChannel({{"idType", "12"}, {"sid", "5"}, {"onid", true}, {"tsid", nullptr}})}));
    EXPECT_EQ(Calls({"player.GetChannelFrom"}), List{"player.GetChannelFromTriplet(-1, 0, 0, 0)"});
}

TEST_P(ChannelControlLookup, NegativeNumbersReachThePlayer) {
    ExpectDone(Call("setChannel", {MakeChannel({{"idType", -2}, {"sid", -3}, {"onid", -4}, {"tsid", -5}})}));
    EXPECT_EQ(Calls({"player.GetChannelFrom"}), List{"player.GetChannelFromTriplet(-2, -4, -5, -3)"});
}

TEST_P(ChannelControlLookup, FractionsAreCutAndNumbersOutOfRangeBecomeTheNearestLimit) {
    ExpectDone(Call("setChannel",
                    {MakeChannel({{"idType", 12.9}, {"sid", -5.9}, {"onid", 1e12}, {"tsid", -1e12}})}));
    EXPECT_EQ(Calls({"player.GetChannelFrom"}),
              List{"player.GetChannelFromTriplet(12, 2147483647, -2147483648, -5)"});
}

TEST_P(ChannelControlLookup, AnUnknownTripletIsError12) {
    platform.answers.tripletChannel = std::nullopt;
    ExpectDone(Call("setChannel", {MakeChannel({{"idType", 12}, {"sid", 5}})}));
    EXPECT_EQ(Steps(), (List{"read mid", "read dsd", "read idType", "read sid", "read onid", "read tsid",
                             "player.GetChannelFromTriplet(12, 0, 0, 5)", "script.onChannelChangeError(channel, 12)",
                             "script.onPlayStateChange(0, 12)"}));
    ExpectLogInOrder({"Failed to get channel from triplet!", "setChannel() - channel not found."});
    ExpectLogged(2, "Failed to get channel from triplet!");
    ExpectLogged(2, "setChannel() - channel not found.");
    EXPECT_TRUE(LogOf("Got channel from triplet").empty());
}

TEST_P(ChannelControlLookup, ATripletWithTheId0IsNotFoundEither) {
    platform.answers.tripletChannel = 0;
    ExpectDone(Call("setChannel", {MakeChannel({{"idType", 12}})}));
    ExpectLogInOrder({"Got channel from triplet, id 0", "setChannel() - channel not found."});
    EXPECT_EQ(Calls({"script.", "cache.", "player.SetChannel"}),
              (List{"script.onChannelChangeError(channel, 12)", "script.onPlayStateChange(0, 12)"}));
}

TEST_P(ChannelControlLookup, ADescriptorThatCannotBeParsedIsError100) {
    platform.answers.dsdResult = 1;
    ExpectDone(Call("setChannel", {MakeChannel({{"dsd", "0A"}, {"idType", 13}, {"sid", 5}})}));
    EXPECT_EQ(Steps(), (List{"read mid", "read dsd", "read idType", "read sid", "player.GetChannelFromDSD(13, 0a, 5)",
                             "script.onChannelChangeError(channel, 100)", "script.onPlayStateChange(0, 100)"}));
    ExpectLogged(2, "DSD Parse error - failed to get channel from DSD!");
    ExpectNotLogged("setChannel() - channel not found.");
    EXPECT_TRUE(LogOf("Got channel from DSD").empty());
}

TEST_P(ChannelControlLookup, ADescriptorOfAnUnsupportedDeliverySystemIsError0) {
    platform.answers.dsdResult = 2;
    ExpectDone(Call("setChannel", {MakeChannel({{"dsd", "0A"}, {"idType", 13}, {"sid", 5}})}));
    EXPECT_EQ(Steps(), (List{"read mid", "read dsd", "read idType", "read sid", "player.GetChannelFromDSD(13, 0a, 5)",
                             "script.onChannelChangeError(channel, 0)", "script.onPlayStateChange(0, 0)"}));
    ExpectLogged(2, "Channel not supported from DSD");
    ExpectNotLogged("setChannel() - channel not found.");
}

TEST_P(ChannelControlLookup, ADescriptorThatYieldsTheId0IsNotFound) {
    platform.answers.dsdChannel = std::nullopt;
    ExpectDone(Call("setChannel", {MakeChannel({{"dsd", "0A"}})}));
    ExpectLogInOrder({"Got channel from DSD, id 0", "setChannel() - channel not found."});
    EXPECT_EQ(Calls({"script.", "cache.", "player.SetChannel", "player.GetChannelFromTriplet"}),
              (List{"script.onChannelChangeError(channel, 12)", "script.onPlayStateChange(0, 12)"}));
}

class ChannelControlOtherDsdResult : public ScriptedObjectTest, public ::testing::WithParamInterface<int> {
protected:
    void SetUp() override { Bring(kPresenting); }
};

INSTANTIATE_TEST_SUITE_P(Results, ChannelControlOtherDsdResult, ::testing::Values(-1, 3, 4, 100));

TEST_P(ChannelControlOtherDsdResult, DecidesNothingAndAnIdThatWasWrittenIsTunedAsIfItCameFromElsewhere) {
    platform.answers.dsdResult = GetParam();
    ExpectDone(Call("setChannel", {MakeChannel({{"dsd", "0A"}})}));
    EXPECT_EQ(Calls({"player.GetChannelFrom", "player.SetChannel", "browser.SetChannel", "cache."}),
              (List{"player.GetChannelFromDSD(-1, 0a, 0)", "player.SetChannel(3, false)",
                    "browser.SetChannel(3, false)", "cache.ReleaseChannel(3)"}));
    EXPECT_TRUE(LogOf("Got channel from DSD").empty());
}

TEST_P(ChannelControlOtherDsdResult, WithoutAnIdIsNotFound) {
    platform.answers.dsdResult = GetParam();
    platform.answers.dsdChannel = std::nullopt;
    ExpectDone(Call("setChannel", {MakeChannel({{"dsd", "0A"}})}));
    ExpectLoggedOnce("setChannel() - channel not found.");
    EXPECT_EQ(Calls({"script.", "cache.", "player.SetChannel"}),
              (List{"script.onChannelChangeError(channel, 12)", "script.onPlayStateChange(0, 12)"}));
}

}  // namespace
}  // namespace videobroadcast_tests
