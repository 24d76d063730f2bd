// The play state machine.
#include <tuple>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

using State = Object::EPlayState;
using Error = Object::EChannelChangeError;

constexpr State kUnrealized = Object::E_STATE_UNREALIZED;
constexpr State kConnecting = Object::E_STATE_CONNECTING;
constexpr State kPresenting = Object::E_STATE_PRESENTING;
constexpr State kStopped = Object::E_STATE_STOPPED;

constexpr const char* kNames[] = {"E_STATE_UNREALIZED", "E_STATE_CONNECTING", "E_STATE_PRESENTING", "E_STATE_STOPPED"};

std::string Number(int number) { return std::to_string(number); }

class PlayStates : public ObjectTest {
protected:
    // Takes the object to a state by legal moves, without a player.
    void Bring(State state) {
        if (state != kUnrealized) object->m_SetPlayState(kConnecting, Error(1));
        if (state == kPresenting || state == kStopped) object->m_SetPlayState(state, Error(1000));
        ASSERT_EQ(object.PlayState(), state);
        Forget();
    }
    void TearDown() override {
        object.Destroy();
        ObjectTest::TearDown();
    }
    static std::size_t LayoutUpdates() { return Calls({"tasks.GetActiveApplication()"}).size(); }

    Probed object{browser};
};

class EachTransition : public PlayStates, public ::testing::WithParamInterface<std::tuple<int, int>> {};

std::string NameOfTransition(const ::testing::TestParamInfo<std::tuple<int, int>>& info) {
    const auto [from, to] = info.param;
    return std::string(kNames[from] + 8) + "_to_" + (kNames[to] + 8);
}

INSTANTIATE_TEST_SUITE_P(Pairs, EachTransition, ::testing::Combine(::testing::Range(0, 4), ::testing::Range(0, 4)),
                         NameOfTransition);

TEST_P(EachTransition, IsAcceptedOrRefusedAsTheTableSays) {
    constexpr bool kLegal[4][4] = {
        {false, true, false, false},
        {true, true, true, true},
        {true, true, false, true},
        {true, true, false, false},
    };
    const auto [from, to] = GetParam();
    const bool legal = kLegal[from][to];
    SetHandler(object.Get(), "onPlayStateChange");
    Bring(State(from));

    object->m_SetPlayState(State(to), Error(12));

    const std::string refusal = "Invalid transition from " + Number(from) + " to " + Number(to) + " with (err 12)";
    EXPECT_EQ(object.PlayState(), legal ? to : from);
    EXPECT_EQ(Told(), legal ? Lines{"script.onPlayStateChange(" + Number(to) + ", 12)"} : Lines{});
    EXPECT_EQ(LayoutUpdates(), legal ? 1u : 0u);
    ExpectLogged(3, std::string("COipfVideoBroadcast::m_SetPlayState (") + kNames[to] + ") called (err 12)");
    ExpectLogged(2, refusal, legal ? 0 : 1);
    ExpectLogged(3, "COipfVideoBroadcast::m_SetPlayState OK", legal ? 1 : 0);
}

TEST_F(PlayStates, AStateOutsideTheTableIsRefused) {
    SetHandler(object.Get(), "onPlayStateChange");
    Bring(kConnecting);
    for (const int state : {-1, 4, 1000}) {
        object->m_SetPlayState(State(state), Error(1000));
        ExpectLogged(2, "Invalid transition from 1 to " + Number(state) + " with (err 1000)");
    }
    ExpectLogged(3, "COipfVideoBroadcast::m_SetPlayState (?) called (err 1000)", 3);
    EXPECT_EQ(object.PlayState(), kConnecting);
    EXPECT_TRUE(Told().empty());
    EXPECT_EQ(LayoutUpdates(), 0u);
}

TEST_F(PlayStates, TheSameErrorWhileConnectingIsSwallowed) {
    SetHandler(object.Get(), "onPlayStateChange");
    object->m_SetPlayState(kConnecting, Error(3));
    Forget();
    object->m_SetPlayState(kConnecting, Error(3));
    EXPECT_TRUE(Told().empty());
    EXPECT_EQ(LayoutUpdates(), 0u);
    ExpectLogged(3, "Still in CONNECTING, and error is same as last error - do nothing");
    ExpectNotLogged("COipfVideoBroadcast::m_SetPlayState OK");
}

TEST_F(PlayStates, AnotherErrorWhileConnectingIsTold) {
    SetHandler(object.Get(), "onPlayStateChange");
    for (const int error : {3, 4, 3, 1000, 1000, 0, 0}) {
        object->m_SetPlayState(kConnecting, Error(error));
    }
    EXPECT_EQ(Told(), (Lines{"script.onPlayStateChange(1, 3)", "script.onPlayStateChange(1, 4)",
                             "script.onPlayStateChange(1, 3)", "script.onPlayStateChange(1, undefined)",
                             "script.onPlayStateChange(1, 0)"}));
    EXPECT_EQ(LayoutUpdates(), 5u);
}

TEST_F(PlayStates, TheFirstMoveIntoConnectingIsNeverTheSame) {
    SetHandler(object.Get(), "onPlayStateChange");
    object->m_SetPlayState(kConnecting, Error(0));
    EXPECT_EQ(Told(), Lines{"script.onPlayStateChange(1, 0)"});
}

TEST_F(PlayStates, TheLastErrorIsRememberedOnlyOnMovesIntoConnecting) {
    SetHandler(object.Get(), "onPlayStateChange");
    object->m_SetPlayState(kConnecting, Error(3));
    object->m_SetPlayState(kPresenting, Error(1000));
    object->m_SetPlayState(kConnecting, Error(3));  // another state in between: told again
    object->m_SetPlayState(kConnecting, Error(3));
    EXPECT_EQ(Told(), (Lines{"script.onPlayStateChange(1, 3)", "script.onPlayStateChange(2, undefined)",
                             "script.onPlayStateChange(1, 3)"}));
}

TEST_F(PlayStates, ErrorThousandIsUndefinedForHandlersAndListeners) {
    SetHandler(object.Get(), "onPlayStateChange");
    Listen(object.Get(), "PlayStateChange");
    Forget();
    object->m_SetPlayState(kConnecting, Error(1000));
    EXPECT_EQ(Told(), (Lines{"script.onPlayStateChange(1, undefined)",
                             "event PlayStateChange{state: 1, error: undefined}"}));
}

TEST_F(PlayStates, StateAndErrorArriveAsIntegers) {
    FakeObject& handler = SetHandler(object.Get(), "onPlayStateChange");
    object->m_SetPlayState(kConnecting, Error(0));
    ASSERT_EQ(handler.Calls().size(), 1u);
    EXPECT_EQ(handler.Calls()[0], (Values{1, 0}));
}

TEST_F(PlayStates, TheHandlerIsToldThenTheListenersThenTheLayoutIsApplied) {
    Listen(object.Get(), "PlayStateChange");
    SetHandler(object.Get(), "onPlayStateChange");
    Forget();
    object->m_SetPlayState(kConnecting, Error(4));
    EXPECT_EQ(Calls({"script.on", "event ", "tasks."}),
              (Lines{"script.onPlayStateChange(1, 4)", "event PlayStateChange{state: 1, error: 4}",
                     "tasks.GetActiveApplication()"}));
}

TEST_F(PlayStates, AHandlerReadsTheNewState) {
    int seen = -1;
    SetHandler(object.Get(), "onPlayStateChange", [&] { seen = object.PlayState(); });
    object->m_SetPlayState(kConnecting, Error(1000));
    EXPECT_EQ(seen, kConnecting);
}

TEST_F(PlayStates, WithoutAnyListenerTheStateMovesAllTheSame) {
    object->m_SetPlayState(kConnecting, Error(1000));
    EXPECT_EQ(object.PlayState(), kConnecting);
    EXPECT_EQ(LayoutUpdates(), 1u);
}

TEST_F(PlayStates, AfterInvalidationTheStateMovesButNothingIsTold) {
    SetHandler(object.Get(), "onPlayStateChange");
    Bring(kConnecting);
    object.Invalidate();
    Forget();
    object->m_SetPlayState(kUnrealized, Error(1000));
    EXPECT_TRUE(Told().empty());
    EXPECT_EQ(object.PlayState(), kUnrealized);
    EXPECT_EQ(LayoutUpdates(), 1u);
}

TEST_F(PlayStates, AHandlerMayMoveTheStateOn) {
    SetHandler(object.Get(), "onPlayStateChange", [&] {
        if (object.PlayState() == kConnecting) object->m_SetPlayState(kPresenting, Error(1000));
    });
    Listen(object.Get(), "PlayStateChange");
    Forget();
    object->m_SetPlayState(kConnecting, Error(4));
    // The nested event comes whole, then the outer one goes on to its listeners.
    EXPECT_EQ(Told(), (Lines{"script.onPlayStateChange(1, 4)", "script.onPlayStateChange(2, undefined)",
                             "event PlayStateChange{state: 2, error: undefined}",
                             "event PlayStateChange{state: 1, error: 4}"}));
    EXPECT_EQ(object.PlayState(), kPresenting);
}

class PlayStateCauses : public ObjectTest {
protected:
    Lines StatesTold() { return Calls({"script.onPlayStateChange"}); }
};

TEST_F(PlayStateCauses, BindingToAClearChannelConnectsThenPresents) {
    SetHandler("onPlayStateChange");
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(StatesTold(),
              (Lines{"script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(2, undefined)"}));
}

TEST_F(PlayStateCauses, StopAndReleaseCarryNoError) {
    Present();
    SetHandler("onPlayStateChange");
    Page().Call("stop");
    Page().Call("release");
    EXPECT_EQ(StatesTold(),
              (Lines{"script.onPlayStateChange(3, undefined)", "script.onPlayStateChange(0, undefined)"}));
}

TEST_F(PlayStateCauses, StopInsideTheHandlerStops) {
    SetHandler("onPlayStateChange", [&] {
        if (PlayState() == kConnecting) Page().Call("stop");
    });
    Page().Call("nextChannel");
    EXPECT_EQ(Calls({"script.on", "player.NextChannel", "player.Stop"}),
              (Lines{"player.NextChannel()", "script.onPlayStateChange(1, undefined)", "player.Stop()",
                     "script.onPlayStateChange(3, undefined)"}));
    EXPECT_EQ(PlayState(), kStopped);
}

TEST_F(PlayStateCauses, StopInsideTheHandlerKeepsBindingFromPresenting) {
    SetHandler("onPlayStateChange", [&] {
        if (PlayState() == kConnecting) Page().Call("stop");
    });
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(StatesTold(),
              (Lines{"script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(3, undefined)"}));
    ExpectLogged(2, "Invalid transition from 3 to 2 with (err 1000)");
    EXPECT_EQ(PlayState(), kStopped);
}

TEST_F(PlayStateCauses, ThePlayerOfAPresentedChannelIsPlacedAfterTheEvent) {
    SetHandler("onPlayStateChange");
    Page().Call("bindToCurrentChannel");
    ExpectInOrder({"player.BindToCurrentChannel()", "script.onPlayStateChange(1, undefined)",
                   "tasks.GetActiveApplication()", "script.onPlayStateChange(2, undefined)",
                   "tasks.GetActiveApplication()", "player.SetVideoWindow(0, 0, 0, 0)"});
}

}  // namespace
}  // namespace videobroadcast
