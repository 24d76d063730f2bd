// Where the video goes: the layout of the video plane.
#include "tests/unit/videobroadcast/VideoWindowFixture.h"

namespace videobroadcast_tests {
namespace {

class VideoWindowLayout : public VideoWindowFixture {
protected:
    void SetUp() override {
        Bring(kPresenting);
        SetWindow(100, 200, 640, 360);
    }
    void ExpectNoLayout(const std::string& line) {
        EXPECT_TRUE(LayOut().empty());
        ExpectLogged(3, line);
        ExpectLogInOrder({"COipfVideoBroadcast::updateLayout called x: 100, y: 200, width: 640, height: 360", line});
    }
};

TEST_F(VideoWindowLayout, TheStepsAreMadeInThisOrder) {
    platform.answers.corrected = TPTRect{101, 201, 600, 300};
    platform.answers.video = TPTRect{150, 300, 900, 450};
    platform.answers.panel = {1280, 720};
    ForgetWhatHappened();
    browser.RunAsyncCalls();
    EXPECT_EQ(Calls(), (List{"tasks.GetActiveApplication()", "browser.IsMediaPlaybackMode()",
                             "browser.CorrectVideoAspectRatio(100, 200, 640, 360, [0, 0, 0, 0])",
                             "browser.ConvertGraphicsToVideo([101, 201, 600, 300], [0, 0, 1280, 720], [0, 0, 0, 0])",
                             "player.SetVideoWindow(150, 300, 900, 450)", "browser.GetPanelResolution(1920, 1080)",
                             "screen.SetDynamicContrast(24, 1)"}));
}

TEST_F(VideoWindowLayout, TheStepsAreLogged) {
    platform.answers.corrected = TPTRect{101, 201, 600, 300};
    LayOut();
    ExpectLogInOrder({"m_ProcessEvent E_UPDATE_LAYOUT",
                      "COipfVideoBroadcast::updateLayout called x: 100, y: 200, width: 640, height: 360",
                      "updateLayout corrected for aspect ratio x: 101, y: 201, width: 600, height: 300",
                      "ConvertGraphicsToVideo returns true",
                      "Dynamic Contrast ++++ void OipfVideoBroadcast::COipfVideoBroadcast::m_UpdateLayout()(3151)"});
}

TEST_F(VideoWindowLayout, ARectangleThatCannotBeConvertedIsUsedAllTheSame) {
    platform.answers.convertible = false;
    platform.answers.video = TPTRect{1, 2, 3, 4};
    ExpectNotLogged("ConvertGraphicsToVideo returns true");
    const List calls = LayOut();
    ExpectNotLogged("ConvertGraphicsToVideo returns true");
    EXPECT_EQ(calls.at(2), "player.SetVideoWindow(1, 2, 3, 4)");
}

TEST_F(VideoWindowLayout, EachLayoutGivesThePlatformAFreshPlaneAndFreshRectangles) {
    const List first = LayOut();
    Notify([](IBroadcastPlayerListener& listener) { listener.UpdateLayout(); });
    List both = first;
    both.insert(both.end(), first.begin(), first.end());
    EXPECT_EQ(LayoutCalls(), both);
}

TEST_F(VideoWindowLayout, NegativePositionsArriveAsTheirBitPattern) {
    SetWindow(-10, -20, 640, 360);
    browser.RunAsyncCalls();
    EXPECT_EQ(Calls({"browser.Correct", "browser.Convert"}).at(0),
              "browser.CorrectVideoAspectRatio(4294967286, 4294967276, 640, 360, [0, 0, 0, 0])");
    EXPECT_EQ(Calls({"browser.Convert"}).at(0),
              "browser.ConvertGraphicsToVideo([-10, -20, 640, 360], [0, 0, 1280, 720], [0, 0, 0, 0])");
}

TEST_F(VideoWindowLayout, ASuspendedChannelIsNotLaidOut) {
    platform.answers.mediaPlaybackMode = true;
    ExpectNoLayout("COipfVideoBroadcast::m_UpdateLayout skipped - channel is suspended");
    EXPECT_TRUE(LogOf("COipfVideoBroadcast::updateLayout() - failed").empty());
    platform.answers.mediaPlaybackMode = false;
}

TEST_F(VideoWindowLayout, SuspensionIsAskedAboutBeforeThePlayerAndTheState) {
    Call("release");
    platform.answers.mediaPlaybackMode = true;
    ExpectNoLayout("COipfVideoBroadcast::m_UpdateLayout skipped - channel is suspended");
    platform.answers.mediaPlaybackMode = false;
}

TEST_F(VideoWindowLayout, WithoutAPlayerNothingIsLaidOut) {
    Call("release");
    ExpectNoLayout("COipfVideoBroadcast::updateLayout() - failed, m_bcPlayer:(nil), m_playState:0");
}

TEST_F(VideoWindowLayout, AStateOtherThanPresentingIsNotLaidOut) {
    Call("stop");
    EXPECT_TRUE(LayOut().empty());
    List lines = LogOf("COipfVideoBroadcast::updateLayout() - failed, m_bcPlayer:0x");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines.front().ends_with(", m_playState:3")) << lines.front();

    Notify([](IBroadcastPlayerListener& listener) { listener.ChannelChanged(); });
    ForgetWhatHappened();
    Notify([](IBroadcastPlayerListener& listener) { listener.UpdateLayout(); });
    EXPECT_TRUE(LayoutCalls().empty());
    lines = LogOf("COipfVideoBroadcast::updateLayout() - failed, m_bcPlayer:0x");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines.front().ends_with(", m_playState:1")) << lines.front();
}

TEST_F(VideoWindowLayout, APresentedObjectWithoutAPlayerIsNotLaidOut) {
    platform.Notify([](IBroadcastPlayerListener& listener) {
        listener.ChannelChanged();
        listener.TuneSuccess(0);
        listener.UpdateLayout();
    });
    Call("release");
    ForgetWhatHappened();
    browser.RunAsyncCalls();
    EXPECT_EQ(PlayState(), kPresenting);
    EXPECT_TRUE(LayoutCalls().empty());
    EXPECT_GE(Log::Instance().Count("COipfVideoBroadcast::updateLayout() - failed, m_bcPlayer:(nil), m_playState:2"),
              1u);
}

TEST_F(VideoWindowLayout, FullScreenIsThePlayersAlone) {
    Call("setFullScreen", {true});
    ForgetWhatHappened();
    browser.RunAsyncCalls();
    EXPECT_EQ(LayoutCalls(), (List{"player.SetFullScreenVideo()", "player.SetFullScreenVideo()"}));
    ExpectLogged(3, "COipfVideoBroadcast::m_Fullscreen - App isnt EPG and HOMEPANEL", 2);
}

TEST_F(VideoWindowLayout, ALayoutOfAnOrdinaryWindowIsNotFullScreen) {
    LayOut();
    EXPECT_TRUE(Calls({"player.SetFullScreenVideo"}).empty());
    ExpectNotLogged("COipfVideoBroadcast::m_Fullscreen - App isnt EPG and HOMEPANEL");
}

TEST_F(VideoWindowLayout, ARequestInAnotherStateIsDroppedAndTheNextPresentationTakesTheStoredRectangle) {
    Call("stop");
    LayOut();
    ForgetWhatHappened();
    Call("bindToCurrentChannel");
    EXPECT_EQ(LayoutCalls().at(0), "browser.CorrectVideoAspectRatio(100, 200, 640, 360, [0, 0, 0, 0])");
    EXPECT_EQ(Calls({"player.SetVideoWindow"}).size(), 1u);
    EXPECT_EQ(browser.RunAsyncCalls(), 0u);
}

TEST_F(VideoWindowLayout, EachAcceptedTransitionLaysOutAtOnceAndARefusedOneDoesNot) {
    browser.RunAsyncCalls();
    Call("stop");
    ForgetWhatHappened();
    Call("bindToCurrentChannel");
    EXPECT_EQ(LogOf("COipfVideoBroadcast::updateLayout called").size(), 2u);
    ForgetWhatHappened();
    Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(0); });
    EXPECT_TRUE(LogOf("COipfVideoBroadcast::updateLayout called").empty());
}

TEST_F(VideoWindowLayout, TheLayoutOfATransitionComesAfterItsEvent) {
    browser.RunAsyncCalls();
    Call("stop");
    Call("nextChannel");
    ForgetWhatHappened();
    Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(0); });
    ExpectInOrder({"script.onPlayStateChange(2, undefined)", "tasks.GetActiveApplication()",
                   "browser.IsMediaPlaybackMode()", "player.SetVideoWindow(150, 300, 960, 540)"});
}

TEST_F(VideoWindowLayout, WithoutATaskManagerTheLayoutIsTheSame) {
    const List calls = LayOut();
    platform.answers.hasTaskManager = false;
    platform.Apply();
    ForgetWhatHappened();
    Notify([](IBroadcastPlayerListener& listener) { listener.UpdateLayout(); });
    EXPECT_EQ(LayoutCalls(), calls);
    EXPECT_TRUE(Calls({"tasks."}).empty());
}

TEST_F(VideoWindowLayout, WithoutAScreenServiceTheVideoIsPlaced) {
    platform.answers.hasAppScreen = false;
    platform.Apply();
    EXPECT_EQ(LayOut().back(), "browser.GetPanelResolution(1920, 1080)");
    EXPECT_EQ(Calls({"player.SetVideoWindow"}).size(), 1u);
}

TEST_F(VideoWindowLayout, WithoutABrowserIntegrationNothingIsPlaced) {
    platform.answers.hasBrowserAPI = false;
    EXPECT_TRUE(LayOut().empty());
    platform.answers.hasBrowserAPI = true;
}

// A rectangle of the video plane, the panel, and the contrast that goes with them.
struct ContrastCase {
    TPTRect video;
    std::optional<std::pair<int, int>> panel;
    int contrast;
    friend void PrintTo(const ContrastCase& test, std::ostream* out) {
        *out << test.video.x << " " << test.video.y << " " << test.video.width << " " << test.video.height << " on "
             << (test.panel ? std::to_string(test.panel->second) : "unknown");
    }
};

class VideoWindowContrast : public VideoWindowFixture, public ::testing::WithParamInterface<ContrastCase> {};

TEST_P(VideoWindowContrast, Is0OnlyForVideoOfThePanelsFullHeightFromItsTop) {
    const auto& [video, panel, contrast] = GetParam();
    Bring(kPresenting);
    SetWindow(100, 200, 640, 360);
    platform.answers.video = video;
    platform.answers.panel = panel;
    EXPECT_EQ(LayOut().back(), "screen.SetDynamicContrast(24, " + std::to_string(contrast) + ")");
    const std::string text = "Dynamic Contrast ++++ void OipfVideoBroadcast::COipfVideoBroadcast::m_UpdateLayout()";
    EXPECT_EQ(LogOf("Dynamic Contrast"), List{text + (contrast == 0 ? "(3146)" : "(3151)")});
}

constexpr std::pair kFullHd{1920, 1080};

INSTANTIATE_TEST_SUITE_P(Rectangles, VideoWindowContrast,
                         ::testing::Values(ContrastCase{{0, 0, 1920, 1080}, kFullHd, 0},
                                           ContrastCase{{0, 1, 1920, 1080}, kFullHd, 1},
                                           ContrastCase{{0, -1, 1920, 1081}, kFullHd, 1},
                                           ContrastCase{{0, 0, 1920, 1079}, kFullHd, 1},
                                           ContrastCase{{0, 0, 1920, 1081}, kFullHd, 0},
                                           ContrastCase{{700, 0, 1, 1080}, kFullHd, 0},
                                           ContrastCase{{-5, 0, 0, 1080}, kFullHd, 0},
                                           ContrastCase{{0, 0, 1280, 720}, std::pair{1280, 720}, 0},
                                           ContrastCase{{0, 0, 1920, 1080}, std::pair{3840, 2160}, 1},
                                           ContrastCase{{0, 0, 1920, 1080}, std::nullopt, 0},
                                           ContrastCase{{0, 0, 1920, 1079}, std::nullopt, 1}));

TEST_F(VideoWindowLayout, ALayoutRequestOfAnObjectThatWasInvalidatedMeanwhileIsForgotten) {
    object->Invalidate();
    ForgetWhatHappened();
    EXPECT_EQ(browser.RunAsyncCalls(), 1u);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(VideoWindowLayout, ARequestOfAnInvalidatedObjectIsDropped) {
    browser.RunAsyncCalls();
    object->Invalidate();
    ForgetWhatHappened();
    static_cast<OipfVideoBroadcast::COipfVideoBroadcast*>(object->Object())->UpdateLayout();
    EXPECT_EQ(browser.Async().Pending(), 0u);
    ExpectLoggedOnce("OnEvent m_npp is NULL!");
}

}  // namespace
}  // namespace videobroadcast_tests
