// Channels as a page controls them through the platform's interfaces.
#include "platform/IJSChannelCache.h"
#include "television/demonstration/DemonstrationServices.h"
#include "television/interfaces/ChannelCache.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using Calls = std::vector<std::string>;

std::string Success(unsigned int id) { return "TuneSuccess " + std::to_string(id); }

class ChannelTest : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        m_one = IdOf("Atlas One");
        m_two = IdOf("Atlas Two");
        m_boreal = IdOf("Boreal");
        m_radio = IdOf("Atlas Radio");
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }
    unsigned int m_one = 0, m_two = 0, m_boreal = 0, m_radio = 0;
};

TEST_F(ChannelTest, SetChannelShowsTheServiceAndReportsItOnce) {
    EXPECT_TRUE(m_player->SetChannel(m_two, false));
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
    EXPECT_EQ(What(m_television.CurrentPicture().get()), Shown::AtlasTwo);
    EXPECT_TRUE(m_player->SetChannel(m_boreal, false));
    EXPECT_TRUE(m_listener.WaitFor(Success(m_boreal)));
    EXPECT_EQ(What(m_television.CurrentPicture().get()), Shown::Boreal);
    EXPECT_EQ(m_listener.Told(), (Calls{Success(m_two), Success(m_boreal)}));
    EXPECT_NE(m_listener.Thread(), std::this_thread::get_id());
}

TEST_F(ChannelTest, SetChannelRefusesAnUnknownChannel) {
    EXPECT_FALSE(m_player->SetChannel(4711, false));
    EXPECT_EQ(m_television.CurrentService()->id, m_one);
}

TEST_F(ChannelTest, SetChannelToThePresentedChannelIsReportedWithoutInterruption) {
    EXPECT_TRUE(m_player->SetChannel(m_one, false));
    EXPECT_TRUE(m_listener.WaitFor(Success(m_one)));
    EXPECT_EQ(m_television.LastTune().count, 1u);
}

TEST_F(ChannelTest, ANewerSetChannelCancelsTheReportOfTheOlder) {
    for (int i = 0; i < 10; ++i) {
        m_listener.Clear();
        EXPECT_TRUE(m_player->SetChannel(m_two, false));
        EXPECT_TRUE(m_player->SetChannel(m_boreal, false));
        const auto told = m_listener.Told();
        EXPECT_TRUE(m_listener.WaitFor(Success(m_boreal)));
        EXPECT_LE(m_listener.Told().size(), told.size() + 1) << "nothing but the second one's after it";
    }
}

TEST_F(ChannelTest, StopShowsBlackAndCancelsTheReport) {
    for (int i = 0; i < 10; ++i) {
        m_player->SetChannel(m_two, false);
        m_player->Stop();
        m_listener.Clear();
        EXPECT_EQ(m_television.CurrentPicture(), nullptr);
        m_player->SetChannel(m_one, false);
        EXPECT_TRUE(m_listener.WaitFor(Success(m_one)));
        EXPECT_EQ(m_listener.Told(), Calls{Success(m_one)});
    }
}

TEST_F(ChannelTest, StopKeepsTheChannelSelectedAndBindPresentsItAgain) {
    m_player->Stop();
    unsigned int id = 0;
    EXPECT_TRUE(m_player->GetChannel(id));
    EXPECT_EQ(id, m_one);
    m_player->BindToCurrentChannel();
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    m_player->SetChannel(m_two, false);
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
    EXPECT_EQ(m_listener.Told(), Calls{Success(m_two)}) << "binding reports no success";
}

TEST_F(ChannelTest, BindReportsNothingWhenTheChannelIsPresented) {
    m_player->BindToCurrentChannel();
    m_player->SetChannel(m_two, false);
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
    EXPECT_EQ(m_listener.Told(), Calls{Success(m_two)});
}

TEST_F(ChannelTest, BindPresentsAChangeThatIsUnderWay) {
    m_browser.ReleaseBroadcastPlayer(m_player);
    m_television.ViewerSelects(m_two);
    OpenPage();
    m_player->BindToCurrentChannel();
    EXPECT_TRUE(WaitForPicture(Shown::AtlasTwo));
}

TEST_F(ChannelTest, NextAndPreviousGoThroughTheListAndWrapAround) {
    EXPECT_TRUE(m_player->PrevChannel());
    EXPECT_TRUE(m_listener.WaitFor("ScrambledTune " + std::to_string(IdOf("Atlas Key"))));
    EXPECT_TRUE(m_player->NextChannel());
    EXPECT_TRUE(m_listener.WaitFor("Unscrambled " + std::to_string(demonstration::kCaSystemId)));
    EXPECT_EQ(m_listener.Told()[1], Success(m_one));
    EXPECT_TRUE(m_player->SetChannel(m_radio, false));
    EXPECT_TRUE(m_listener.WaitFor(Success(m_radio)));
    EXPECT_TRUE(m_player->PrevChannel());
    EXPECT_TRUE(m_listener.WaitFor(Success(m_boreal)));
    EXPECT_TRUE(m_player->SetChannel(m_one, false));
    EXPECT_TRUE(m_listener.WaitFor(Success(m_one)));
    EXPECT_TRUE(m_player->NextChannel());
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
}

TEST_F(ChannelTest, ARadioServiceIsPresentedBySoundAndShowsBlack) {
    m_player->SetChannel(m_radio, false);
    EXPECT_TRUE(m_listener.WaitFor(Success(m_radio)));
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    EXPECT_TRUE(m_player->GetVideoComponents(false).empty());
    EXPECT_EQ(m_player->GetAudioComponents(true).size(), 1u);
}

TEST_F(ChannelTest, TheViewersChangeIsAnnouncedAndThenReported) {
    EXPECT_EQ(m_television.ViewerSelects(m_boreal), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor(Success(m_boreal)));
    EXPECT_EQ(m_listener.Told(), (Calls{"ChannelChanged", Success(m_boreal)}));
    m_listener.Clear();
    EXPECT_EQ(m_television.ViewerSelectsPrevious(), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
    EXPECT_EQ(m_listener.Told(), (Calls{"ChannelChanged", Success(m_two)}));
    EXPECT_EQ(m_television.CurrentService()->id, m_two);
}

TEST_F(ChannelTest, TheViewersChangeToTheShownChannelChangesNothing) {
    EXPECT_EQ(m_television.ViewerSelects(m_one), std::nullopt);
    EXPECT_TRUE(m_player->SetChannel(m_two, false));
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
    EXPECT_EQ(m_listener.Told(), Calls{Success(m_two)});
}

TEST_F(ChannelTest, StopChannelLeavesNoChannelAndReleaseBringsTheLastOneBack) {
    m_player->StopChannel();
    unsigned int id = 7;
    EXPECT_FALSE(m_player->GetChannel(id));
    EXPECT_EQ(id, 7u);
    EXPECT_FALSE(m_television.CurrentService());
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    m_browser.ReleaseBroadcastPlayer(m_player);
    EXPECT_EQ(m_television.CurrentService()->id, m_one);
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_TRUE(m_listener.Told().empty());
}

TEST_F(ChannelTest, ReleaseForgetsTheListenerAndShowsTheBroadcastFullScreen) {
    TPTRect window{100, 100, 640, 360};
    m_player->SetVideoWindow(window);
    EXPECT_EQ(m_television.VideoRectangle().x, 100);
    m_player->SetChannel(m_two, false);
    m_browser.ReleaseBroadcastPlayer(m_player);
    const auto told = m_listener.Told();
    EXPECT_EQ(m_television.VideoRectangle().width, 1920);
    EXPECT_TRUE(WaitForPicture(Shown::AtlasTwo));
    EXPECT_EQ(m_listener.Told(), told);
}

TEST_F(ChannelTest, OnlyOnePlayerIsHandedOut) {
    EXPECT_EQ(m_browser.GetBroadcastPlayer(), nullptr);
    m_browser.ReleaseBroadcastPlayer(nullptr);
    EXPECT_EQ(m_browser.GetBroadcastPlayer(), nullptr);
    m_browser.ReleaseBroadcastPlayer(m_player);
    EXPECT_EQ(m_browser.GetBroadcastPlayer(), m_player);
}

TEST_F(ChannelTest, MediaPlaybackModeIsBlackUntilItEnds) {
    m_browser.EnableMediaPlaybackMode();
    EXPECT_TRUE(m_browser.IsMediaPlaybackMode());
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    EXPECT_TRUE(m_browser.DisableMediaPlaybackMode());
    EXPECT_FALSE(m_browser.IsMediaPlaybackMode());
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_TRUE(m_listener.Told().empty()) << "the channel was presented before, and is again";
}

TEST_F(ChannelTest, AChannelSetInMediaPlaybackModeIsPresentedAfterIt) {
    m_browser.EnableMediaPlaybackMode();
    EXPECT_TRUE(m_player->SetChannel(m_two, false));
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    EXPECT_TRUE(m_browser.DisableMediaPlaybackMode());
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
    EXPECT_EQ(m_listener.Told(), Calls{Success(m_two)});
}

TEST_F(ChannelTest, IdsThatAreHandedOutAreHeldUntilTheyAreReleased) {
    auto& cache = ChannelCache::TheCache();
    unsigned int id = 0;
    EXPECT_EQ(cache.Holds(), 0u);
    EXPECT_TRUE(m_player->GetChannel(id));
    EXPECT_TRUE(m_browser.CurrentChannel(id));
    m_player->SetChannel(m_two, false);
    EXPECT_TRUE(m_listener.WaitFor(Success(m_two)));
    EXPECT_EQ(cache.Holds(), 3u);
    IJSChannelCache::Instance()->ReleaseChannel(m_one);
    IJSChannelCache::Instance()->ReleaseChannel(4711);
    EXPECT_EQ(cache.Holds(), 2u);
    m_television.PageClosed();
    EXPECT_EQ(cache.Holds(), 0u);
}

TEST_F(ChannelTest, IsFoundByItsTriplet) {
    using namespace demonstration;
    unsigned int id = 7;
    for (const int idType : {-1, 10, 12, 16}) {
        EXPECT_TRUE(m_player->GetChannelFromTriplet(idType, kOnid, kTsid, 0x6e02, id)) << idType;
        EXPECT_EQ(id, m_two);
    }
    for (const int idType : {0, 20, 40}) {
        EXPECT_FALSE(m_player->GetChannelFromTriplet(idType, kOnid, kTsid, 0x6e02, id)) << idType;
        EXPECT_EQ(id, 0u);
    }
    EXPECT_FALSE(m_player->GetChannelFromTriplet(12, 0, kTsid, 0x6e02, id));
    EXPECT_FALSE(m_player->GetChannelFromTriplet(12, kOnid, kTsid, 1, id));
}

TEST_F(ChannelTest, IsFoundByItsDeliverySystemDescriptor) {
    const std::string dsd = m_television.FindService(m_two)->dsd;
    unsigned int id = 0;
    EXPECT_EQ(m_player->GetChannelFromDSD(13, dsd, 0x6e02, id), 0);
    EXPECT_EQ(id, m_two);
    id = 0;
    EXPECT_EQ(m_player->GetChannelFromDSD(13, dsd.substr(0, 5), 0x6e02, id), 1);
    std::string cable = dsd, elsewhere = dsd, unknown = dsd;
    cable[0] = '\x44';
    cable[2] = cable[3] = cable[4] = cable[5] = '\x11';
    unknown[0] = '\x7f';
    elsewhere[5] ^= 1;
    EXPECT_EQ(m_player->GetChannelFromDSD(10, cable, 0x6e02, id), 2);
    EXPECT_EQ(m_player->GetChannelFromDSD(12, unknown, 0x6e02, id), 2);
    EXPECT_EQ(m_player->GetChannelFromDSD(40, dsd, 0x6e02, id), 2);
    EXPECT_EQ(m_player->GetChannelFromDSD(12, elsewhere, 0x6e02, id), 3);
    EXPECT_EQ(m_player->GetChannelFromDSD(12, dsd, 1, id), 3);
    EXPECT_EQ(id, 0u);
}

}  // namespace
}  // namespace television::test
