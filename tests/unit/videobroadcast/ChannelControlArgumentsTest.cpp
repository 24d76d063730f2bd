// setChannel: what it accepts, the recorder, the player, and the null channel.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

class ChannelControlArguments : public ScriptedObjectTest {
protected:
    FakeObject& channel = MakeChannel({{"mid", 7}});
};

TEST_F(ChannelControlArguments, FourArgumentsAreRefusedWithAnExceptionAndNothingElse) {
    ExpectException(Call("setChannel", {channel, 1, 2, 3}), "SetChannel - wrong number of args.");
    EXPECT_EQ(Calls(), List{"exception SetChannel - wrong number of args."});
}

TEST_F(ChannelControlArguments, TheirNumberIsCheckedBeforeTheFirst) {
    ExpectException(Call("setChannel", {5, 1, 2, 3}), "SetChannel - wrong number of args.");
    ExpectException(Call("setChannel", {nullptr, 1, 2, 3}), "SetChannel - wrong number of args.");
    ExpectException(Call("setChannel", Values(100, Value(channel))), "SetChannel - wrong number of args.");
}

TEST_F(ChannelControlArguments, UpToThreeAreAcceptedAndOnlyTheFirstIsRead) {
    FakeObject& other = MakeChannel({{"mid", 8}});
    ExpectDone(Call("setChannel", {channel, other}));
    ExpectDone(Call("setChannel", {channel, other, other}));
    EXPECT_EQ(Calls({"player.SetChannel"}), (List{"player.SetChannel(7, false)", "player.SetChannel(7, false)"}));
    EXPECT_TRUE(other.Reads().empty());
}

class ChannelControlWrongArgument : public ScriptedObjectTest, public ::testing::WithParamInterface<Value> {};

TEST_P(ChannelControlWrongArgument, IsRefusedBeforeAnythingIsAsked) {
    platform.answers.pvrOperating = true;
    ExpectException(Call("setChannel", {GetParam()}), "setChannel arg 0 invalid");
    EXPECT_EQ(Calls(), List{"exception setChannel arg 0 invalid"});
}

INSTANTIATE_TEST_SUITE_P(Values, ChannelControlWrongArgument,
                         ::testing::Values(Value(5), Value(5.0), Value("channel"), Value(""), Value(true),
                                           Value(false), Value(0), Value()));

TEST_F(ChannelControlArguments, AVariantOfTypeObjectWithoutAnObjectIsAnInvalidArgument) {
    ExpectException(Call("setChannel", {Value(static_cast<NPObject*>(nullptr))}), "setChannel arg 0 invalid");
    EXPECT_EQ(Calls(), List{"exception setChannel arg 0 invalid"});
}

TEST_F(ChannelControlArguments, NoArgumentAtAllIsAnInvalidOne) {
    ExpectException(Call("setChannel"), "setChannel arg 0 invalid");
    EXPECT_EQ(Calls(), List{"exception setChannel arg 0 invalid"});
}

TEST_F(ChannelControlArguments, AnOperatingRecorderIsReportedAsError7AndLeavesThePlayStateAlone) {
    platform.answers.pvrOperating = true;
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(Calls(), (List{"tasks.GetWrapperManager()", "tasks.GetWrapperInstance(59)", "pvr.IsPvrOperating()",
                             "script.onChannelChangeError(channel, 7)"}));
    ExpectLogged(2, "Can't setChannel - PVR operating!");
    EXPECT_TRUE(LogOf("COipfVideoBroadcast::m_SetPlayState").empty());
}

TEST_F(ChannelControlArguments, AnOperatingRecorderIsReportedForTheNullChannelToo) {
    platform.answers.pvrOperating = true;
    Bring(kUnrealized);
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(Steps(), List{"script.onChannelChangeError(null, 7)"});
}

TEST_F(ChannelControlArguments, AnOperatingRecorderKeepsThePresentedChannel) {
    Bring(kPresenting);
    platform.answers.pvrOperating = true;
    ExpectDone(Call("setChannel", {channel}));
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(Steps(), (List{"script.onChannelChangeError(channel, 7)", "script.onChannelChangeError(null, 7)"}));
    EXPECT_EQ(PlayState(), kPresenting);
    EXPECT_EQ(platform.HandedOut(), 1u);
}

TEST_F(ChannelControlArguments, WithoutAnOperatingRecorderTheChannelIsChangedWithoutThatLine) {
    Call("setChannel", {channel});
    ExpectNotLogged("Can't setChannel - PVR operating!");
    EXPECT_EQ(Calls({"player.SetChannel"}), List{"player.SetChannel(7, false)"});
}

class ChannelControlWithoutRecorder : public ScriptedObjectTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(ChannelControlWithoutRecorder, NoRecorderIsOperating) {
    platform.answers.pvrOperating = true;
    platform.answers.hasTaskManager = GetParam() != "TaskManager";
    platform.answers.hasWrapperManager = GetParam() != "WrapperManager";
    platform.answers.hasPvr = GetParam() != "Recorder";
    platform.Apply();
    ExpectDone(Call("setChannel", {MakeChannel({{"mid", 7}})}));
    ExpectDone(Call("nextChannel"));
    EXPECT_EQ(Calls({"pvr.", "player.SetChannel", "player.Next", "exception"}),
              (List{"player.SetChannel(7, false)", "player.NextChannel()"}));
}

INSTANTIATE_TEST_SUITE_P(Lacking, ChannelControlWithoutRecorder,
                         ::testing::Values("TaskManager", "WrapperManager", "Recorder"));

TEST_F(ChannelControlArguments, SetChannelDoesNotAskWhetherThePageIsBroadcastRelated) {
    platform.answers.broadcastRelated = false;
    ExpectDone(Call("setChannel", {channel}));
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_TRUE(Calls({"browser.IsBroadcastRelated", "exception"}).empty());
    ExpectInOrder({"player.SetChannel(7, false)", "browser.SetChannel(0, true)"});
}

TEST_F(ChannelControlArguments, WithoutAPlayerError11IsReportedBeforeThePlayStateGoesToUnrealized) {
    BringToConnectingWithoutPlayer();
    platform.answers.players = 0;
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(Steps(), (List{"browser.GetBroadcastPlayer()", "script.onChannelChangeError(channel, 11)",
                             "script.onPlayStateChange(0, 11)"}));
    EXPECT_TRUE(channel.Reads().empty());
}

TEST_F(ChannelControlArguments, WithoutAPlayerTheNullChannelIsError11Too) {
    BringToConnectingWithoutPlayer();
    platform.answers.players = 0;
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(Steps(), (List{"browser.GetBroadcastPlayer()", "script.onChannelChangeError(null, 11)",
                             "script.onPlayStateChange(0, 11)"}));
    EXPECT_TRUE(LogOf("CVBOEmbeddedObject::SetNullChannel").empty());
}

TEST_F(ChannelControlArguments, WithoutAPlayerAnUnrealizedObjectReportsButStaysAsItIs) {
    platform.answers.players = 0;
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(Steps(),
              (List{"browser.GetBroadcastPlayer()", "script.onChannelChangeError(channel, 11)"}));
    ExpectLogged(2, "Invalid transition from 0 to 0 with (err 11)");
}

TEST_F(ChannelControlArguments, APlayerThatIsHeldIsNotAskedForAgain) {
    Call("setChannel", {channel});
    Call("setChannel", {channel});
    EXPECT_EQ(Calls({"browser.GetBroadcastPlayer", "player.SetListener"}),
              (List{"browser.GetBroadcastPlayer()", "player.SetListener(listener)"}));
}

TEST_F(ChannelControlArguments, TheNullChannelIsBoundReportedAndThePlayerGivenBackInThisOrder) {
    Bring(kPresenting);
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(Steps(), (List{"browser.SetChannel(0, true)", "player.StopChannel()",
                             "script.onChannelChangeSucceeded(null)", "script.onPlayStateChange(0, undefined)",
                             "browser.ReleaseBroadcastPlayer(player)"}));
    EXPECT_EQ(PlayState(), kUnrealized);
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(ChannelControlArguments, TheNullChannelTakesAPlayerWhenNoneIsHeld) {
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(Steps(), (List{"browser.GetBroadcastPlayer()", "player.SetListener(listener)",
                             "browser.SetChannel(0, true)", "player.StopChannel()",
                             "script.onChannelChangeSucceeded(null)", "browser.ReleaseBroadcastPlayer(player)"}));
}

TEST_F(ChannelControlArguments, TheNullChannelIsLoggedAndAsksForThePlayerTwice) {
    Call("setChannel", {nullptr, 1, 2});
    ExpectLogInOrder({"CVBOEmbeddedObject::SetNullChannel bc = true", "CVBOEmbeddedObject::SetNullChannel complete",
                      "m_ReleaseBroadcastPlayer finished"});
    EXPECT_EQ(LogOf("m_GetBroadcastPlayer request ").size(), 2u);
}

TEST_F(ChannelControlArguments, TheNullChannelChangesThePlayStateOnlyByGivingThePlayerBack) {
    Bring(kPresenting);
    Call("setChannel", {nullptr});
    EXPECT_EQ(LogOf("COipfVideoBroadcast::m_SetPlayState ("),
              List{"COipfVideoBroadcast::m_SetPlayState (E_STATE_UNREALIZED) called (err 1000)"});
}

TEST_F(ChannelControlArguments, AChannelAsksForThePlayerOnce) {
    Call("setChannel", {channel});
    EXPECT_EQ(LogOf("m_GetBroadcastPlayer request ").size(), 1u);
    Call("setChannel", {MakeChannel({})});
    EXPECT_EQ(LogOf("m_GetBroadcastPlayer request ").size(), 2u);
}

TEST_F(ChannelControlArguments, TheReportCarriesTheVeryObjectOfTheScript) {
    FakeObject& listener = browser.MakeFunction("listener");
    browser.MayKeep(listener);
    Call("addEventListener", {"ChannelChangeError", listener, false});
    platform.answers.acceptsChannel = false;
    listener.SetFunction([&](const Values& arguments) {
        EXPECT_EQ(browser.Get(arguments[0].Object(), "channel").value, Value(channel));
        EXPECT_EQ(browser.Get(arguments[0].Object(), "errorState").value, Value(100));
    });
    Call("setChannel", {channel});
    EXPECT_EQ(listener.Calls().size(), 1u);
    EXPECT_EQ(Calls({"script.onChannelChangeError"}), List{"script.onChannelChangeError(channel, 100)"});
}

}  // namespace
}  // namespace videobroadcast_tests
