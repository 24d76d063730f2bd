// Channel control while the page's code, called from inside it, changes the world.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

// The member of a Channel object while which is read something happens.
class ChannelControlGetter : public ScriptedObjectTest, public ::testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        Bring(kPresenting);
        browser.pageHoldsDuringCalls = false;  // the plug-in has only itself to stay alive
    }

    // A Channel found by its triplet, or by its descriptor when that is what is read last.
    FakeObject& MakeTrap(std::function<void()> action) {
        const std::string member = GetParam();
        const bool byDescriptor = member.starts_with("dsd ");
        FakeObject& trap = MakeChannel({{"dsd", byDescriptor ? Value("0A") : Value()},
                                        {"idType", 12}, {"sid", 1}, {"onid", 2}, {"tsid", 3}});
        const std::string name = byDescriptor ? member.substr(4) : member;
        if (name.starts_with("mid")) {
            WhenRead(trap, "mid", std::move(action), name == "mid 7" ? 7 : 0);
        } else {
            WhenRead(trap, name, std::move(action), name == "dsd" && byDescriptor ? Value("0A") : Value(1));
        }
        return trap;
    }
    // What the player and the browser were told beside being given back.
    static List Selections() {
        return Calls({"player.Get", "player.SetChannel", "browser.SetChannel", "cache.ReleaseChannel(2)",
                      "cache.ReleaseChannel(3)"});
    }
};

INSTANTIATE_TEST_SUITE_P(Members, ChannelControlGetter,
                         ::testing::Values("mid", "mid 7", "dsd", "idType", "sid", "onid", "tsid", "dsd dsd",
                                           "dsd idType", "dsd sid"));

TEST_P(ChannelControlGetter, ThatReleasesThePlayerMakesItError11) {
    ExpectDone(Call("setChannel", {MakeTrap([&] { Call("release"); })}));
    EXPECT_TRUE(Selections().empty());
    EXPECT_EQ(Calls({"script.", "browser.ReleaseBroadcastPlayer"}),
              (List{"script.onPlayStateChange(0, undefined)", "browser.ReleaseBroadcastPlayer(player)",
                    "script.onChannelChangeError(channel, 11)"}));
    ExpectLoggedOnce("COipfVideoBroadcast::m_SetPlayState (E_STATE_UNREALIZED) called (err 11)");
    ExpectNotLogged("setChannel() - channel not found.");
}

TEST_P(ChannelControlGetter, ThatReleasesAndTakesThePlayerAgainIsServedByIt) {
    ExpectDone(Call("setChannel", {MakeTrap([&] {
        Call("release");
        Call("nextChannel");
    })}));
    EXPECT_EQ(Calls({"player.SetChannel"}).size(), 1u);
    EXPECT_EQ(PlayState(), kConnecting);
}

TEST_P(ChannelControlGetter, ThatEndsTheObjectLeavesNothingToDo) {
    FakeObject& trap = MakeTrap([&] { EndObject(); });
    EXPECT_TRUE(Call("setChannel", {trap}).accepted);
    EXPECT_TRUE(Selections().empty());
    EXPECT_EQ(Calls({"script.", "browser.ReleaseBroadcastPlayer"}), List{"browser.ReleaseBroadcastPlayer(player)"});
    EXPECT_FALSE(browser.GetLedger().IsAlive(object->Object()));
}

TEST_P(ChannelControlGetter, ThatInvalidatesTheObjectLeavesNothingToDo) {
    FakeObject& trap = MakeTrap([&] { object->Invalidate(); });
    EXPECT_TRUE(Call("setChannel", {trap}).accepted);
    EXPECT_TRUE(Selections().empty());
    EXPECT_TRUE(Calls({"script."}).empty());
}

TEST_P(ChannelControlGetter, MayChangeTheChannelItself) {
    FakeObject& other = MakeRecord("other", {"mid"}, {{"mid", 9}});
    ExpectDone(Call("setChannel", {MakeTrap([&] { Call("setChannel", {other}); })}));
    const List tuned = Calls({"player.SetChannel"});
    ASSERT_EQ(tuned.size(), 2u);
    EXPECT_EQ(tuned.front(), "player.SetChannel(9, false)");
    EXPECT_EQ(PlayState(), kConnecting);
}

class ChannelControlReentrancy : public ScriptedObjectTest {
protected:
    void SetUp() override { browser.pageHoldsDuringCalls = false; }

    FakeObject& channel = MakeChannel({{"mid", 7}});
    FakeObject& unknown = MakeRecord("unknown", {}, {});
};

TEST_F(ChannelControlReentrancy, SetChannelInsideOnChannelChangeErrorIsCarriedOutBeforeThePlayStateOfTheFailure) {
    platform.answers.tripletChannel = std::nullopt;
    Once("script.onChannelChangeError", [&] { ExpectDone(Call("setChannel", {channel})); });
    ExpectDone(Call("setChannel", {unknown}));
    EXPECT_EQ(Calls({"script.", "player.SetChannel", "browser.SetChannel", "cache."}),
              (List{"script.onChannelChangeError(unknown, 12)", "player.SetChannel(7, false)",
                    "browser.SetChannel(7, false)", "script.onPlayStateChange(1, undefined)",
                    "cache.ReleaseChannel(7)", "script.onPlayStateChange(0, 12)"}));
}

TEST_F(ChannelControlReentrancy, AFailingSetChannelInsideOnChannelChangeErrorEndsWhenThePageStops) {
    platform.answers.tripletChannel = std::nullopt;
    int left = 3;
    When("script.onChannelChangeError", [&] {
        if (left-- > 0) {
            ExpectDone(Call("setChannel", {unknown}));
        }
    });
    ExpectDone(Call("setChannel", {unknown}));
    EXPECT_EQ(Calls({"script.onChannelChangeError"}).size(), 4u);
}

TEST_F(ChannelControlReentrancy, AGetterThatReleasesThePlayerGivesTheIdBackBeforeTheReport) {
    FakeObject& trap = MakeChannel({});
    WhenRead(trap, "mid", [&] { Call("release"); }, 7);
    ExpectDone(Call("setChannel", {trap}));
    EXPECT_EQ(Calls({"cache.", "script.onChannelChangeError"}),
              (List{"cache.ReleaseChannel(7)", "script.onChannelChangeError(channel#2, 11)"}));
}

TEST_F(ChannelControlReentrancy, StopInsideOnPlayStateChangeKeepsBindFromPresenting) {
    Once("script.onPlayStateChange(1", [&] { Call("stop"); });
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Steps(), (List{"browser.GetBroadcastPlayer()", "player.SetListener(listener)",
                             "player.BindToCurrentChannel()", "script.onPlayStateChange(1, undefined)",
                             "player.Stop()", "script.onPlayStateChange(3, undefined)"}));
    ExpectLogInOrder({"Invalid transition from 3 to 2 with (err 1000)",
                      "COipfVideoBroadcast::bindToCurrentChannel OK"});
    EXPECT_EQ(PlayState(), kStopped);
}

TEST_F(ChannelControlReentrancy, ReleaseInsideOnPlayStateChangeKeepsBindFromPresenting) {
    Once("script.onPlayStateChange(1", [&] { Call("release"); });
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(PlayState(), kUnrealized);
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(ChannelControlReentrancy, ReleaseInsideOnPlayStateChangeStillGivesBackTheHoldOfTheChannel) {
    Once("script.onPlayStateChange(1", [&] { Call("release"); });
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(Calls({"browser.SetChannel", "browser.ReleaseBroadcastPlayer", "cache."}),
              (List{"browser.SetChannel(7, false)", "browser.ReleaseBroadcastPlayer(player)",
                    "cache.ReleaseChannel(7)"}));
}

TEST_F(ChannelControlReentrancy, ReleaseInsideThePlayStateChangeOfAReleaseGivesThePlayerBackOnce) {
    Bring(kPresenting);
    Once("script.onPlayStateChange(0", [&] { Call("release"); });
    ExpectDone(Call("release"));
    EXPECT_EQ(Calls({"browser.ReleaseBroadcastPlayer"}).size(), 1u);
}

TEST_F(ChannelControlReentrancy, ReleaseInsideTheReportOfANullChannelGivesThePlayerBackOnce) {
    Bring(kPresenting);
    Once("script.onChannelChangeSucceeded", [&] { Call("release"); });
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(Steps(), (List{"browser.SetChannel(0, true)", "player.StopChannel()",
                             "script.onChannelChangeSucceeded(null)", "script.onPlayStateChange(0, undefined)",
                             "browser.ReleaseBroadcastPlayer(player)"}));
}

TEST_F(ChannelControlReentrancy, SetChannelInsideTheReportOfANullChannelLosesItsPlayer) {
    Bring(kPresenting);
    Once("script.onChannelChangeSucceeded", [&] { Call("setChannel", {channel}); });
    ExpectDone(Call("setChannel", {nullptr}));
    ExpectInOrder({"script.onChannelChangeSucceeded(null)", "player.SetChannel(7, false)",
                   "script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(0, undefined)",
                   "browser.ReleaseBroadcastPlayer(player)"});
    EXPECT_EQ(PlayState(), kUnrealized);
}

TEST_F(ChannelControlReentrancy, APlayerTakenInsideThePlayStateChangeOfAReleaseIsKeptWhenTheFirstWasGivenBack) {
    Bring(kPresenting);
    Once("script.onPlayStateChange(0", [&] {
        Call("release");
        Call("nextChannel");
    });
    ExpectDone(Call("release"));
    EXPECT_EQ(platform.HandedOut(), 1u);
    EXPECT_EQ(PlayState(), kConnecting);
}

TEST_F(ChannelControlReentrancy, StopInsideTheReportOfARefusedIdGoesOnToUnrealized) {
    Bring(kPresenting);
    platform.answers.acceptsChannel = false;
    Once("script.onChannelChangeError", [&] { Call("stop"); });
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(Calls({"script."}),
              (List{"script.onChannelChangeError(channel, 100)", "script.onPlayStateChange(3, undefined)",
                    "script.onPlayStateChange(0, 100)"}));
}

// A handler that opens a dialogue: the browser goes on with what is queued before the handler returns.
TEST_F(ChannelControlReentrancy, NotificationsThatRunInsideAHandlerAreActedOnBeforeTheRest) {
    platform.answers.currentChannel = std::nullopt;
    Once("script.onPlayStateChange(1", [&] {
        platform.Notify([](IBroadcastPlayerListener& listener) {
            listener.TuneFail(0);
            listener.UpdateLayout();
        });
        EXPECT_EQ(browser.RunAsyncCalls(), 2u);
    });
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Calls({"script."}), (List{"script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(1, 1)",
                                        "script.onPlayStateChange(2, undefined)"}));
}

TEST_F(ChannelControlReentrancy, ATuneSuccessInsideTheReportOfAFailureIsUndoneByTheFailure) {
    Bring(kConnecting);
    platform.answers.acceptsChannel = false;
    Once("script.onChannelChangeError", [&] {
        platform.Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(0); });
        browser.RunAsyncCalls();
    });
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(Calls({"script."}),
              (List{"script.onChannelChangeError(channel, 100)", "script.onPlayStateChange(2, undefined)",
                    "script.onPlayStateChange(0, 100)"}));
}

TEST_F(ChannelControlReentrancy, TheObjectItselfIsAChannelWithoutMembers) {
    platform.answers.tripletChannel = std::nullopt;
    ExpectDone(Call("setChannel", {object->Object()}));
    EXPECT_EQ(Calls({"player.Get", "script."}),
              (List{"player.GetChannelFromTriplet(-1, 0, 0, 0)", "script.onChannelChangeError(plug-in object, 12)"}));
}

// A member during which the page's handler ends the object, and how the browser comes to call the handler.
struct EndCase {
    const char* name;
    const char* handler;
    const char* method;
    State from;
    bool works;
    friend void PrintTo(const EndCase& end, std::ostream* out) { *out << end.name; }
};

class ChannelControlEnd : public ScriptedObjectTest, public ::testing::WithParamInterface<EndCase> {
protected:
    void SetUp() override {
        const auto& [name, handler, method, from, works] = GetParam();
        Bring(from);
        browser.pageHoldsDuringCalls = false;
        platform.answers.canStep = platform.answers.acceptsChannel = works;
    }
    Outcome CallMember() {
        const std::string method = GetParam().method;
        if (method == "setChannel(null)") {
            return Call("setChannel", {nullptr});
        }
        return method == "setChannel" ? Call(method, {MakeChannel({})}) : Call(method);
    }
};

TEST_P(ChannelControlEnd, TheEndOfTheObjectInsideAHandlerIsSurvivedAndGivesEverythingBack) {
    Once(GetParam().handler, [&] {
        EndObject();
        ClearCalls();
    });
    EXPECT_TRUE(CallMember().accepted);
    EXPECT_FALSE(browser.GetLedger().IsAlive(object->Object()));
    EXPECT_TRUE(Calls({"script.", "player."}).empty());
    EXPECT_EQ(platform.HandedOut(), 0u);
    EXPECT_EQ(platform.Holds(2), 0);
}

TEST_P(ChannelControlEnd, TheInvalidationOfTheObjectInsideAHandlerEndsItsEvents) {
    Once(GetParam().handler, [&] {
        object->Invalidate();
        ClearCalls();
    });
    EXPECT_TRUE(CallMember().accepted);
    EXPECT_TRUE(Calls({"script.", "player."}).empty());
    EXPECT_EQ(platform.Holds(2), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Members, ChannelControlEnd,
    ::testing::Values(EndCase{"Bind", "script.onPlayStateChange", "bindToCurrentChannel", kUnrealized, true},
                      EndCase{"Next", "script.onPlayStateChange", "nextChannel", kPresenting, true},
                      EndCase{"NextFails", "script.onChannelChangeError", "nextChannel", kPresenting, false},
                      EndCase{"Prev", "script.onPlayStateChange", "prevChannel", kPresenting, true},
                      EndCase{"Stop", "script.onPlayStateChange", "stop", kPresenting, true},
                      EndCase{"Release", "script.onPlayStateChange", "release", kPresenting, true},
                      EndCase{"SetChannel", "script.onPlayStateChange", "setChannel", kPresenting, true},
                      EndCase{"SetChannelFails", "script.onChannelChangeError", "setChannel", kPresenting, false},
                      EndCase{"Null", "script.onChannelChangeSucceeded", "setChannel(null)", kPresenting, true},
                      EndCase{"NullState", "script.onPlayStateChange", "setChannel(null)", kPresenting, true}));

TEST_F(ChannelControlReentrancy, TheEndOfTheObjectInsideTheChannelConstructorIsSurvived) {
    platform.answers.players = 0;
    browser.AnswerEvaluateOf("new Channel(", [&](const std::string&) {
        EndObject();
        return Value(browser.MakeResult("channel of a page that goes"));
    });
    EXPECT_TRUE(Call("bindToCurrentChannel").accepted);
    EXPECT_TRUE(Calls({"script."}).empty());
    EXPECT_FALSE(browser.GetLedger().IsAlive(object->Object()));
}

}  // namespace
}  // namespace videobroadcast_tests
