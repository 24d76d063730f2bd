// What a platform with a broadcast receiver keeps: the player, its listener, the holds on channels.
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <set>
#include <string>
#include <thread>

#include "platform/CDAEBrowserAPI.h"
#include "platform/IBroadcastPlayer.h"
#include "platform/IJSChannelCache.h"
#include "tests/platform/TellListener.h"

namespace contract {
namespace {

// No channel of any television, as far as we know any.
constexpr unsigned int kUnknownChannel = 0xfffffff0;
constexpr std::size_t kMostChannels = 5000;

class Player : public testing::Test {
protected:
    void SetUp() override {
        m_player = m_browser.GetBroadcastPlayer();
        if (!m_player) GTEST_SKIP() << "This platform hands out no broadcast player.";
        m_player->SetListener(&m_listener);
    }
    void TearDown() override {
        m_listener.LetOutcomesGo();
        if (m_player) m_browser.ReleaseBroadcastPlayer(m_player);
        for (const unsigned int id : m_listener.TakeHolds()) m_cache.ReleaseChannel(id);
    }

    // 0 when no channel is selected. The hold is given back at once.
    unsigned int Selected() {
        unsigned int id = 0;
        if (m_player->GetChannel(id)) m_cache.ReleaseChannel(id);
        return id;
    }
    std::vector<std::string> ActiveSounds() {
        std::vector<std::string> texts;
        for (const IAudioComponent& sound : m_player->GetAudioComponents(true)) texts.push_back(sound.ParamString());
        return texts;
    }

    CDAEBrowserAPI& m_browser = *CDAEBrowserAPI::Instance();
    IJSChannelCache& m_cache = *IJSChannelCache::Instance();
    TellListener m_listener;
    IBroadcastPlayer* m_player = nullptr;
};

TEST_F(Player, HasOneHolderAtATime) {
    IBroadcastPlayer* second = m_browser.GetBroadcastPlayer();
    EXPECT_NE(second, m_player);
    if (second) m_browser.ReleaseBroadcastPlayer(second);
}

TEST_F(Player, IsToBeHadAgainOnceItIsGivenBack) {
    m_browser.ReleaseBroadcastPlayer(m_player);
    m_player = m_browser.GetBroadcastPlayer();
    EXPECT_NE(m_player, nullptr);
}

TEST_F(Player, RefusesAChannelThatThereIsNot) {
    EXPECT_FALSE(m_player->SetChannel(kUnknownChannel, false));
    EXPECT_FALSE(m_player->SetChannel(0, false));
}

TEST_F(Player, TellsTheOutcomeOfEachChangeOnAnotherThread) {
    ASSERT_TRUE(m_player->NextChannel());
    ASSERT_TRUE(m_listener.WaitForOutcomes(1));
    ASSERT_TRUE(m_player->PrevChannel());
    ASSERT_TRUE(m_listener.WaitForOutcomes(2));
    ASSERT_TRUE(m_player->SetChannel(Selected(), false));
    ASSERT_TRUE(m_listener.WaitForOutcomes(3));
    EXPECT_EQ(m_listener.Outcomes(), 3u);
    const auto threads = m_listener.Threads();
    EXPECT_EQ(std::count(threads.begin(), threads.end(), std::this_thread::get_id()), 0);
}

TEST_F(Player, GoesForthAndBackInTheListWhichWrapsAround) {
    const unsigned int first = Selected();
    ASSERT_NE(first, 0u);
    std::set<unsigned int> seen;
    do {
        ASSERT_TRUE(seen.insert(Selected()).second) << "the list does not lead back to its beginning";
        ASSERT_LT(seen.size(), kMostChannels);
        const unsigned int before = Selected();
        ASSERT_TRUE(m_player->NextChannel());
        const unsigned int after = Selected();
        ASSERT_TRUE(m_player->PrevChannel());
        EXPECT_EQ(Selected(), before);
        ASSERT_TRUE(m_player->SetChannel(after, false));
    } while (Selected() != first);
}

TEST_F(Player, KeepsTheChannelWhenPresentationStopsAndHasNoneAfterStopChannel) {
    const unsigned int channel = Selected();
    m_player->Stop();
    EXPECT_EQ(Selected(), channel);
    m_player->StopChannel();
    unsigned int id = 4711;
    EXPECT_FALSE(m_player->GetChannel(id));
    EXPECT_EQ(id, 4711u);
    EXPECT_TRUE(m_player->SetChannel(channel, false));
    EXPECT_TRUE(m_listener.WaitForOutcomes(1));
}

TEST_F(Player, FindsNoChannelByNumbersThatNoneHas) {
    unsigned int id = 4711;
    EXPECT_FALSE(m_player->GetChannelFromTriplet(-1, 0xfffe, 0xfffe, 0xfffe, id));
    EXPECT_EQ(id, 0u);
}

TEST_F(Player, CannotParseHalfADescriptorOfAnyDeliverySystem) {
    for (const char tag : {'\x43', '\x44', '\x5a'}) {
        unsigned int id = 0;
        const int result = m_player->GetChannelFromDSD(0, std::string{tag, '\x0b', '\x01'}, 1, id);
        EXPECT_TRUE(result == 1 || result == 2) << result;
        EXPECT_EQ(id, 0u);
    }
    unsigned int id = 0;
    EXPECT_NE(m_player->GetChannelFromDSD(0, "", 1, id), 0);
}

TEST_F(Player, KeepsTheVolumeBetweenZeroAndAHundred) {
    int before = -1, volume = -1;
    m_player->GetVolume(before);
    EXPECT_GE(before, 0);
    EXPECT_LE(before, 100);
    for (const auto& [set, got] : {std::pair(40, 40), {-5, 0}, {1000, 100}}) {
        m_player->SetVolume(set);
        m_player->GetVolume(volume);
        EXPECT_EQ(volume, got);
    }
    m_player->SetVolume(before);
}

TEST_F(Player, PresentsOnlyComponentsOfTheService) {
    ASSERT_TRUE(m_player->SetChannel(Selected(), false));
    ASSERT_TRUE(m_listener.WaitForOutcomes(1));
    EXPECT_LE(m_player->GetVideoComponents(true).size(), m_player->GetVideoComponents(false).size());
    EXPECT_LE(m_player->GetAudioComponents(true).size(), m_player->GetAudioComponents(false).size());
    EXPECT_LE(m_player->GetSubtitleComponents(true).size(), m_player->GetSubtitleComponents(false).size());
}

TEST_F(Player, ChangesNothingForAComponentThatThereIsNot) {
    ASSERT_TRUE(m_player->SetChannel(Selected(), false));
    ASSERT_TRUE(m_listener.WaitForOutcomes(1));
    const auto before = ActiveSounds();
    m_player->SelectAudioComponent(4711);
    m_player->UnselectAudioComponent(4711);
    m_player->SelectVideoComponent(0x1ffe);
    m_player->UnselectVideoComponent(0x1ffe);
    m_player->SelectSubtitleComponent(4711);
    m_player->UnselectSubtitleComponent(4711);
    EXPECT_EQ(ActiveSounds(), before);
}

TEST_F(Player, TakesAnyWindowAndTheFullScreen) {
    for (TPTRect window : {TPTRect{100, 100, 640, 360}, TPTRect{-50, -50, 10, 10}, TPTRect{}})
        m_player->SetVideoWindow(window);
    m_player->SetFullScreenVideo();
}

// The plug-in may hold the lock that listener calls take while it asks these three.
TEST_F(Player, ChangesToMediaPlaybackAndBackWithoutWaitingForACallOfTheListener) {
    m_listener.HoldOutcomes();
    ASSERT_TRUE(m_player->SetChannel(Selected(), false));
    ASSERT_TRUE(m_listener.WaitUntilAnOutcomeWaits());
    EXPECT_FALSE(m_browser.IsMediaPlaybackMode());
    m_browser.EnableMediaPlaybackMode();
    EXPECT_TRUE(m_browser.IsMediaPlaybackMode());
    m_browser.DisableMediaPlaybackMode();
    EXPECT_FALSE(m_browser.IsMediaPlaybackMode());
    m_listener.LetOutcomesGo();
}

TEST_F(Player, IsGivenBackWhenNoCallIsInProgressAndTellsNothingAfterwards) {
    m_listener.HoldOutcomes();
    ASSERT_TRUE(m_player->SetChannel(Selected(), false));
    ASSERT_TRUE(m_listener.WaitUntilAnOutcomeWaits());
    const auto other = std::async(std::launch::async, [this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));  // the time that a release has to be too early in
        m_listener.LetOutcomesGo();
    });
    m_browser.ReleaseBroadcastPlayer(m_player);
    m_player = nullptr;
    EXPECT_EQ(m_listener.CallsInProgress(), 0u);
    const std::size_t told = m_listener.Threads().size();
    // What another holder is told is told to that one alone.
    TellListener next;
    IBroadcastPlayer* player = m_browser.GetBroadcastPlayer();
    ASSERT_NE(player, nullptr);
    player->SetListener(&next);
    EXPECT_TRUE(player->NextChannel());
    EXPECT_TRUE(next.WaitForOutcomes(1));
    EXPECT_TRUE(player->PrevChannel());
    EXPECT_TRUE(next.WaitForOutcomes(2));
    m_browser.ReleaseBroadcastPlayer(player);
    for (const unsigned int id : next.TakeHolds()) m_cache.ReleaseChannel(id);
    EXPECT_EQ(m_listener.Threads().size(), told);
}

}  // namespace
}  // namespace contract
