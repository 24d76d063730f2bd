// What a page hears and sees of the others that want the receiver, the screen, the recorder and the aerial.
#include "platform/CTaskManager.h"
#include "television/Core.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using Calls = std::vector<std::string>;

class ResourcesTest : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }
    TelevisionSet& Set() { return *Core::Instance().Set(); }
    Resources& Others() { return Set().TheResources(); }
};

TEST_F(ResourcesTest, AnotherObjectGetsThePlayerOnceTheFirstGaveItBack) {
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(m_browser.GetBroadcastPlayer(), nullptr);
        m_browser.ReleaseBroadcastPlayer(m_player);
        OpenPage();
        m_player->BindToCurrentChannel();
    }
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
}

TEST_F(ResourcesTest, TheMediaPlayerTakesTheScreenAndThePageRestoresTheBroadcast) {
    EXPECT_TRUE(Others().StartMediaPlayer());
    EXPECT_FALSE(Others().StartMediaPlayer()) << "it plays already";
    EXPECT_TRUE(m_listener.WaitFor("Suspend"));
    EXPECT_TRUE(m_browser.IsMediaPlaybackMode());
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    m_browser.EnableMediaPlaybackMode();
    EXPECT_FALSE(m_browser.DisableMediaPlaybackMode()) << "the media player has the screen still";

    EXPECT_TRUE(Others().StopMediaPlayer());
    EXPECT_FALSE(Others().StopMediaPlayer());
    EXPECT_TRUE(m_listener.WaitFor("Resume"));
    EXPECT_TRUE(m_browser.DisableMediaPlaybackMode());
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_EQ(m_listener.Told(), (Calls{"Suspend", "Resume"}));
}

TEST_F(ResourcesTest, AMediaPlayerThatStopsAtOnceLeavesTheBroadcastOn) {
    Calls expected;
    for (int i = 0; i < 20; ++i) {
        Others().StartMediaPlayer();
        Others().StopMediaPlayer();
        expected.insert(expected.end(), {"Suspend", "Resume"});
    }
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_listener.Told() == expected; }));
    EXPECT_TRUE(m_browser.DisableMediaPlaybackMode());
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
}

TEST_F(ResourcesTest, WithoutAPageTheBroadcastComesBackByItself) {
    m_browser.ReleaseBroadcastPlayer(m_player);
    Others().StartMediaPlayer();
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    Others().StopMediaPlayer();
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_TRUE(m_listener.Told().empty());
}

TEST_F(ResourcesTest, APageThatBindsWhileTheMediaPlayerPlaysIsSuspended) {
    m_browser.ReleaseBroadcastPlayer(m_player);
    Others().StartMediaPlayer();
    OpenPage();
    m_player->BindToCurrentChannel();
    EXPECT_TRUE(m_listener.WaitFor("Suspend"));
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    m_player->Stop();
    Others().StopMediaPlayer();
    EXPECT_TRUE(m_listener.WaitFor("Resume"));
    EXPECT_TRUE(m_browser.DisableMediaPlaybackMode());
    EXPECT_EQ(m_television.CurrentPicture(), nullptr) << "the page has stopped it";
}

TEST_F(ResourcesTest, TheRecorderIsOperatingWhileItRecords) {
    auto* recorder = dynamic_cast<CPvrWrapper*>(
        g_pTaskManager->GetWrapperManager()->GetWrapperInstance(DTV_APPLICATION_PVR));
    ASSERT_NE(recorder, nullptr);
    EXPECT_FALSE(recorder->IsPvrOperating());
    EXPECT_TRUE(Others().SetRecording(true));
    EXPECT_FALSE(Others().SetRecording(true));
    EXPECT_TRUE(recorder->IsPvrOperating());
    EXPECT_TRUE(Others().SetRecording(false));
    EXPECT_FALSE(recorder->IsPvrOperating());
}

TEST_F(ResourcesTest, TheViewerMayNotChangeTheChannelWhileTheRecorderRecords) {
    const std::string refusal =
        "A recording is running and needs the receiver: stop the recorder to change the channel.";
    const unsigned int one = IdOf("Atlas One"), two = IdOf("Atlas Two");
    Others().SetRecording(true);
    EXPECT_EQ(m_television.ViewerSelects(two), refusal);
    EXPECT_EQ(m_television.ViewerSelectsNext(), refusal);
    EXPECT_EQ(m_television.ViewerSelectsPrevious(), refusal);
    EXPECT_EQ(m_television.ViewerSelects(one), std::nullopt) << "it is on already";
    EXPECT_EQ(m_television.CurrentService()->id, one);
    Others().SetRecording(false);
    m_listener.Clear();
    EXPECT_EQ(m_television.ViewerSelects(two), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess " + std::to_string(two)));
}

TEST_F(ResourcesTest, WithoutAnAerialTheSignalIsLostAndNoChannelIsToBeHad) {
    Set().ConnectAerial(false);
    EXPECT_TRUE(m_listener.WaitFor("NoSignal"));
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    const std::string two = std::to_string(IdOf("Atlas Two"));
    EXPECT_TRUE(m_player->SetChannel(IdOf("Atlas Two"), false));
    EXPECT_TRUE(m_listener.WaitFor("TuneFail " + two));
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);

    Set().ConnectAerial(true);
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess 0"));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasTwo));
    EXPECT_EQ(m_listener.Told(), (Calls{"NoSignal", "TuneFail " + two, "TuneSuccess 0"}));
}

TEST_F(ResourcesTest, AnAerialThatIsBackAtOnceIsNoLossOfSignal) {
    Set().ConnectAerial(false);
    Set().ConnectAerial(true);
    const auto picture = m_television.CurrentPicture();
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_television.CurrentPicture() != picture; }));
    EXPECT_TRUE(m_listener.Told().empty());
}

TEST_F(ResourcesTest, APictureShownWithAnotherAspectRatioIsLaidOutAnew) {
    const auto layouts = [&] { return m_listener.Count("UpdateLayout"); };
    TPTRect corrected{};
    m_listener.Clear();
    Set().TheScreen().ForceAspectRatio(4.0 / 3.0);
    EXPECT_TRUE(m_watch.WaitFor([&] { return layouts() == 1; }));
    m_browser.CorrectVideoAspectRatio(0, 0, 1280, 720, corrected);
    EXPECT_EQ(corrected.x, 160);
    EXPECT_EQ(corrected.width, 960);
    EXPECT_EQ(m_television.VideoRectangle().width, 1440);

    Set().TheScreen().ForceAspectRatio(std::nullopt);
    EXPECT_TRUE(m_watch.WaitFor([&] { return layouts() == 2; }));
    m_browser.CorrectVideoAspectRatio(0, 0, 1280, 720, corrected);
    EXPECT_EQ(corrected.width, 1280);
    EXPECT_EQ(m_television.VideoRectangle().width, 1920);
}

}  // namespace
}  // namespace television::test
