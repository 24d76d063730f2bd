// width, height, fullscreen and playState.
#include "tests/unit/videobroadcast/ObjectTest.h"
#include "tests/unit/videobroadcast/VideoWindowFixture.h"

namespace videobroadcast_tests {
namespace {

// "width" or "height", and the texts that belong to it.
struct Side {
    std::string name;
    std::string getterLine;
    std::string setterLine;
    std::string readOnlyLine;
    std::string readOnlyException;
    std::string notANumberLine;
    friend void PrintTo(const Side& side, std::ostream* out) { *out << side.name; }
};

class VideoWindowSize : public VideoWindowFixture, public ::testing::WithParamInterface<Side> {
protected:
    void ExpectTaken(const Value& value, std::int32_t size) {
        ForgetWhatHappened();
        ExpectDone(Set(side.name, value));
        EXPECT_EQ(browser.RunAsyncCalls(), 1u) << "layout requests for " << value.Show();
        EXPECT_EQ(Get(side.name).value, Value(size));
    }

    const Side& side = GetParam();
};

INSTANTIATE_TEST_SUITE_P(
    Sides, VideoWindowSize,
    ::testing::Values(Side{"width", "COipfVideoBroadcast::m_GetWidth()", "COipfVideoBroadcast::m_SetWidth()",
                           " COipfVideoBroadcast:: width is readonly in fullscreen mode",
                           "width is readonly in fullscreen mode",
                           "COipfVideoBroadcast::m_SetWidth() - not a number!"},
                      Side{"height", "COipfVideoBroadcast::m_GetHeight()", "COipfVideoBroadcast::m_SetHeight()",
                           " COipfVideoBroadcast height is readonly in fullscreen mode",
                           "height is readonly in fullscreen mode",
                           "COipfVideoBroadcast::m_SetHeight() - not a number!"}));

TEST_P(VideoWindowSize, StartsAt0AndIsReadAsAnInt32) {
    const Outcome outcome = Get(side.name);
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.value, Value(0));
    ExpectLogged(3, side.getterLine);
}

TEST_P(VideoWindowSize, AnIntegerIsTakenAndTheLayoutAskedForAsynchronously) {
    Bring(kPresenting);
    ExpectDone(Set(side.name, 640));
    ExpectLogged(3, side.setterLine);
    EXPECT_TRUE(Calls().empty());
    EXPECT_EQ(LayOut().at(0), side.name == "width" ? "browser.CorrectVideoAspectRatio(0, 0, 640, 0, [0, 0, 0, 0])"
                                                   : "browser.CorrectVideoAspectRatio(0, 0, 0, 640, [0, 0, 0, 0])");
    EXPECT_EQ(Get(side.name).value, Value(640));
    EXPECT_EQ(Get(side.name == "width" ? "height" : "width").value, Value(0));
}

TEST_P(VideoWindowSize, NumbersOfBothFormsAreTakenAsUnsignedOnes) {
    ExpectTaken(640, 640);
    ExpectTaken(640.0, 640);
    ExpectTaken(640.9, 640);
    ExpectTaken(0, 0);
    ExpectTaken(2147483647, 2147483647);
    ExpectTaken(-1, -1);
    ExpectTaken(-1.0, 0);
    ExpectTaken(4294967295.0, -1);
    ExpectTaken(2147483648.0, -2147483647 - 1);
    ExpectTaken(1e12, -1);
    ExpectTaken(__builtin_nan(""), 0);
}

TEST_P(VideoWindowSize, TheSameValueAsksForALayoutToo) {
    ExpectTaken(640, 640);
    ExpectTaken(640, 640);
}

TEST_P(VideoWindowSize, IsStoredBeforeTheLayoutIsAskedFor) {
    static std::function<void()> asked;
    browser.Functions()->pluginthreadasynccall = [](NPP, void (*)(void*), void*) { asked(); };
    videobroadcast::Probed probed(browser);
    Value stored;
    asked = [&] { stored = probed.Read(side.name).value; };
    browser.Set(probed.Get(), side.name, 640);
    EXPECT_EQ(stored, Value(640));
}

TEST_P(VideoWindowSize, WhatIsNoNumberIsRefusedWithoutAnException) {
    Set(side.name, 640);
    browser.RunAsyncCalls();
    for (const Value& wrong : {Value("640"), Value("640px"), Value(""), Value(true), Value(nullptr), Value(),
                               Value(MakeChannel({}))}) {
        ForgetWhatHappened();
        const Outcome outcome = Set(side.name, wrong);
        EXPECT_FALSE(outcome.accepted) << wrong.Show();
        EXPECT_EQ(outcome.exception, "");
        ExpectLogged(2, side.notANumberLine);
        EXPECT_EQ(browser.Async().Pending(), 0u);
        EXPECT_EQ(Get(side.name).value, Value(640));
    }
}

TEST_P(VideoWindowSize, ANumberIsNotLoggedAsNone) {
    Set(side.name, 640);
    ExpectNotLogged(side.notANumberLine);
    ExpectNotLogged(side.readOnlyLine);
}

TEST_P(VideoWindowSize, IsReadOnlyInFullScreenWhateverIsSet) {
    Set(side.name, 320);
    Call("setFullScreen", {true});
    browser.RunAsyncCalls();
    for (const Value& value : {Value(640), Value(640.0), Value("640px"), Value()}) {
        ForgetWhatHappened();
        ExpectException(Set(side.name, value), side.readOnlyException);
        ExpectLogInOrder({side.setterLine, side.readOnlyLine});
        ExpectLogged(2, side.readOnlyLine);
        ExpectNotLogged(side.notANumberLine);
        EXPECT_EQ(browser.Async().Pending(), 0u);
        EXPECT_EQ(Get(side.name).value, Value(320));
    }
}

TEST_P(VideoWindowSize, CanBeSetAgainAfterFullScreen) {
    Call("setFullScreen", {true});
    Call("setFullScreen", {false});
    browser.RunAsyncCalls();
    ExpectTaken(640, 640);
}

TEST_P(VideoWindowSize, IsSetWhoeverThePageIs) {
    platform.answers.broadcastRelated = false;
    ExpectTaken(640, 640);
    EXPECT_TRUE(Calls({"browser.IsBroadcastRelated"}).empty());
}

TEST_P(VideoWindowSize, AnyFailingCallIsSurvived) {
    for (const bool fullScreen : {false, true}) {
        const auto prepare = [&] {
            Call("bindToCurrentChannel");
            Call("setFullScreen", {fullScreen});
        };
        const auto member = [&] {
            const Outcome outcome = Set(side.name, 640);
            browser.RunAsyncCalls();
            return outcome;
        };
        SurvivesFailingBrowser(prepare, member);
        SurvivesFailingPlatform(prepare, member);
    }
}

TEST_P(VideoWindowSize, AnInvalidatedObjectTakesItWithoutAskingForALayout) {
    object->Invalidate();
    ExpectDone(Set(side.name, 640));
    EXPECT_EQ(browser.Async().Pending(), 0u);
    EXPECT_EQ(Get(side.name).value, Value(640));
}

class VideoWindowProperties : public VideoWindowFixture {};

TEST_F(VideoWindowProperties, FullscreenIsABooleanThatStartsFalse) {
    EXPECT_EQ(Get("fullscreen").value, Value(false));
    ExpectLogged(3, "COipfVideoBroadcast::m_GetFullScreen()");
    Call("setFullScreen", {true});
    EXPECT_EQ(Get("fullscreen").value, Value(true));
}

TEST_F(VideoWindowProperties, FullscreenAndPlayStateCannotBeSet) {
    EXPECT_FALSE(Set("fullscreen", true).accepted);
    EXPECT_FALSE(Set("playState", 2).accepted);
    EXPECT_EQ(Get("fullscreen").value, Value(false));
    EXPECT_EQ(Get("playState").value, Value(0));
}

TEST_F(VideoWindowProperties, PlayStateIsTheNumberOfTheStateWhoeverThePageIs) {
    platform.answers.broadcastRelated = false;
    EXPECT_EQ(Get("playState").value, Value(0));
    ExpectLogged(3, "COipfVideoBroadcast::m_GetPlayState()");
    EXPECT_TRUE(Calls().empty());
    platform.answers.broadcastRelated = true;
    for (const State state : {kConnecting, kPresenting, kStopped}) {
        MakeObject();
        Bring(state);
        EXPECT_EQ(Get("playState").value, Value(static_cast<int>(state)));
        EndObject();
    }
}

}  // namespace
}  // namespace videobroadcast_tests
