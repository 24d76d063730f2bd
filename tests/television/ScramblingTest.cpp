// Scrambled services: noticed from their packets, reported, and presented when they become clear.
#include "television/stream/ScramblingWatch.h"

#include "television/Core.h"
#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/Scrambler.h"
#include "television/interfaces/ChannelCache.h"
#include "tests/television/Packets.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using Calls = std::vector<std::string>;
using State = ScramblingWatch::State;

const std::string kSystem = std::to_string(demonstration::kCaSystemId);

class Watching : public testing::Test {
protected:
    bool Push(bool scrambled) {
        Packets packet = MakePacket({.pid = 0x101});
        if (scrambled) packet[3] |= 0x80;
        return m_watch->Push(packet.data());
    }
    std::unique_ptr<ScramblingWatch> m_watch = std::make_unique<ScramblingWatch>();
};

TEST_F(Watching, KnowsNothingOfAStreamWithoutPackets) { EXPECT_EQ(m_watch->Of(0x101), State::Unknown); }

TEST_F(Watching, BelievesTheFirstPacket) {
    EXPECT_TRUE(Push(true));
    EXPECT_EQ(m_watch->Of(0x101), State::Scrambled);
    EXPECT_EQ(m_watch->Of(0x102), State::Unknown);
}

TEST_F(Watching, IsNotDeceivedByAFewPackets) {
    Push(false);
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(Push(true));
    EXPECT_FALSE(Push(false));
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(Push(true));
    EXPECT_EQ(m_watch->Of(0x101), State::Clear);
    EXPECT_TRUE(Push(true));
    EXPECT_EQ(m_watch->Of(0x101), State::Scrambled);
}

TEST_F(Watching, LooksOnlyAtPacketsWithAPayloadThatCameWhole) {
    Packets erroneous = MakePacket({.pid = 0x101}), empty = erroneous;
    erroneous[1] |= 0x80;
    empty[3] = 0x20;
    EXPECT_FALSE(m_watch->Push(erroneous.data()));
    EXPECT_FALSE(m_watch->Push(empty.data()));
    EXPECT_EQ(m_watch->Of(0x101), State::Unknown);
}

TEST_F(Watching, ForgetsAnotherStream) {
    Push(true);
    m_watch->Forget();
    EXPECT_EQ(m_watch->Of(0x101), State::Unknown);
}

TEST(Scrambler, LeavesClocksAndOtherStreamsClear) {
    Packets packets = MakePacket({.pid = 0x101, .clock = 27'000, .presentation = 90});
    Append(packets, MakePacket({.pid = 0x102}));
    const Packets before = packets;
    demonstration::Scrambler scrambler({0x101});
    scrambler.Process(packets);
    EXPECT_TRUE(IsScrambled(packets.data()));
    EXPECT_EQ(ClockOf(packets.data()), 27'000);
    EXPECT_FALSE(std::equal(packets.begin() + 12, packets.begin() + kPacketSize, before.begin() + 12));
    EXPECT_TRUE(std::equal(packets.begin() + kPacketSize, packets.end(), before.begin() + kPacketSize));
    scrambler.Switch(false);
    packets = before;
    scrambler.Process(packets);
    EXPECT_EQ(packets, before);
}

class ScramblingTest : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        m_one = IdOf("Atlas One");
        m_key = IdOf("Atlas Key");
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }
    void Scramble(bool on) { EXPECT_EQ(Core::Instance().Set()->SetScrambling(on), std::nullopt); }
    std::string Tuned() const { return "ScrambledTune " + std::to_string(m_key); }
    std::string Success(unsigned int id) const { return "TuneSuccess " + std::to_string(id); }

    unsigned int m_one = 0, m_key = 0;
};

TEST_F(ScramblingTest, ATuneIsReportedAtOnceAndShowsBlack) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(m_player->SetChannel(m_key, false));
    EXPECT_TRUE(m_listener.WaitFor(Tuned()));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    EXPECT_TRUE(m_player->GetVideoComponents(true).empty());
    EXPECT_EQ(m_player->GetVideoComponents(false).size(), 1u);
    EXPECT_EQ(ChannelCache::TheCache().Holds(), 1u);
}

TEST_F(ScramblingTest, AServiceThatBecomesClearIsPresentedAndScrambledAgainIsBlack) {
    m_player->SetChannel(m_key, false);
    ASSERT_TRUE(m_listener.WaitFor(Tuned()));
    Scramble(false);
    EXPECT_TRUE(m_listener.WaitFor("Unscrambled " + kSystem));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasKey));
    Scramble(true);
    EXPECT_TRUE(m_listener.WaitFor("Scrambled " + kSystem));
    EXPECT_EQ(m_television.CurrentPicture(), nullptr);
    EXPECT_EQ(m_listener.Told(), (Calls{Tuned(), "Unscrambled " + kSystem, "Scrambled " + kSystem}));
}

TEST_F(ScramblingTest, AClearTuneIsASuccessWhateverTheTablesSay) {
    m_player->SetChannel(m_key, false);
    ASSERT_TRUE(m_listener.WaitFor(Tuned()));
    Scramble(false);
    ASSERT_TRUE(m_listener.WaitFor("Unscrambled " + kSystem));
    m_listener.Clear();
    m_player->SetChannel(m_one, false);
    ASSERT_TRUE(m_listener.WaitFor(Success(m_one)));
    m_player->SetChannel(m_key, false);
    EXPECT_TRUE(m_listener.WaitFor(Success(m_key)));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasKey));
    EXPECT_EQ(m_listener.Told(), (Calls{Success(m_one), Success(m_key)}));
    EXPECT_TRUE(m_television.FindService(m_key)->scrambled);
}

TEST_F(ScramblingTest, AListenerThatKnowsTheChannelAsScrambledHearsThatAnotherIsClear) {
    m_player->SetChannel(m_key, false);
    ASSERT_TRUE(m_listener.WaitFor(Tuned()));
    m_player->SetChannel(m_one, false);
    EXPECT_TRUE(m_listener.WaitFor("Unscrambled " + kSystem));
    EXPECT_EQ(m_listener.Told(), (Calls{Tuned(), Success(m_one), "Unscrambled " + kSystem}));
    m_listener.Clear();
    m_player->SetChannel(IdOf("Atlas Two"), false);
    EXPECT_TRUE(m_listener.WaitFor(Success(IdOf("Atlas Two")))) << "and only once";
}

TEST_F(ScramblingTest, BindToAScrambledChannelReportsItAsAFailure) {
    m_television.ViewerSelects(m_key);
    ASSERT_TRUE(m_listener.WaitFor(Tuned()));
    m_browser.ReleaseBroadcastPlayer(m_player);
    m_listener.Clear();
    OpenPage();
    m_player->BindToCurrentChannel();
    EXPECT_TRUE(m_listener.WaitFor("Scrambled " + kSystem));
}

TEST_F(ScramblingTest, StopEndsTheWaitForAClearStream) {
    m_player->SetChannel(m_key, false);
    ASSERT_TRUE(m_listener.WaitFor(Tuned()));
    m_player->Stop();
    Scramble(false);
    m_player->SetChannel(m_one, false);
    EXPECT_TRUE(m_listener.WaitFor("Unscrambled " + kSystem));
    EXPECT_EQ(m_listener.Told(), (Calls{Tuned(), Success(m_one), "Unscrambled " + kSystem}));
}

TEST_F(ScramblingTest, MediaPlaybackModeEndsWithTheSameReport) {
    m_player->SetChannel(m_key, false);
    ASSERT_TRUE(m_listener.WaitFor(Tuned()));
    m_browser.EnableMediaPlaybackMode();
    m_browser.DisableMediaPlaybackMode();
    EXPECT_TRUE(m_listener.WaitFor("ScrambledTune 0"));
}

TEST_F(ScramblingTest, ARightsMessageReachesTheListener) {
    auto& set = *Core::Instance().Set();
    EXPECT_EQ(set.TellRights({.valid = true, .caSystemId = 0x0b00, .text = "hi"}), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor("Message 4 of 2816, 6:hi, 7:1"));
    EXPECT_EQ(set.TellRights({}), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor("Message 4 of 0, 7:0"));
    m_player->SetChannel(m_key, false);
    EXPECT_TRUE(m_listener.WaitFor(Tuned()));
    EXPECT_EQ(set.TellRights({}), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor("Message 4 of " + kSystem + ", 7:0"));
    m_browser.ReleaseBroadcastPlayer(m_player);
    EXPECT_EQ(set.TellRights({}), "No page has the broadcast: open one that binds its object to the channel.");
}

}  // namespace
}  // namespace television::test
