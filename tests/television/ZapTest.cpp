// Many channel changes: how fast they are, and that nothing grows.
#include <algorithm>
#include <atomic>
#include <fstream>

#include "platform/IJSChannelCache.h"
#include "television/interfaces/ChannelCache.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMeasured = false;
constexpr int kZaps = 40;
#else
constexpr bool kMeasured = true;
constexpr int kZaps = 300;
#endif

// The pages of memory that the process uses, in KiB.
long ResidentMemory() {
    std::ifstream file("/proc/self/statm");
    long all = 0, resident = 0;
    file >> all >> resident;
    return resident * 4;
}

class ZapTest : public TelevisionTest {
protected:
    void Zap() {
        const auto count = m_listener.Told().size();
        ASSERT_TRUE(m_player->NextChannel());
        ASSERT_TRUE(m_watch.WaitFor([&] { return m_listener.Told().size() > count; }));
        const std::string told = m_listener.Told().back();
        ASSERT_EQ(told.substr(0, 11), "TuneSuccess");
        IJSChannelCache::Instance()->ReleaseChannel(static_cast<unsigned>(std::stoul(told.substr(12))));
        m_times.push_back(m_television.LastTune().toFirstPicture);
    }
    std::vector<double> m_times;
};

TEST_F(ZapTest, ThreeHundredChangesAreFastAndLeaveNothingBehind) {
    ASSERT_TRUE(WaitForTunes(1));
    OpenPage();
    long before = 0;
    for (int i = 0; i < kZaps && !HasFatalFailure(); ++i) {
        Zap();
        if (i == kZaps / 3) before = ResidentMemory();
    }
    const long grown = ResidentMemory() - before;
    std::sort(m_times.begin(), m_times.end());
    const double median = m_times[m_times.size() / 2];
    RecordProperty("median_ms", std::to_string(median));
    RecordProperty("grown_KiB", std::to_string(grown));
    EXPECT_EQ(ChannelCache::TheCache().Holds(), 0u);
    if (kMeasured) {
        EXPECT_LT(median, 50) << "milliseconds to the first picture";
        EXPECT_LT(grown, 40'000) << "KiB; one pipeline that leaks would be 6000 a change";
    }
}

TEST_F(ZapTest, ChangesInQuickSuccessionEndOnTheLastOne) {
    ASSERT_TRUE(WaitForTunes(1));
    OpenPage();
    for (int round = 0; round < 20; ++round)
        for (const char* name : {"Atlas Two", "Atlas Radio", "Atlas One", "Boreal"})
            EXPECT_TRUE(m_player->SetChannel(IdOf(name), false));
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess " + std::to_string(IdOf("Boreal"))));
    EXPECT_EQ(What(m_television.CurrentPicture().get()), Shown::Boreal);
}

TEST_F(ZapTest, ThreadsThatReadWhileChannelsChangeAreServed) {
    OpenPage();
    std::atomic<bool> stop = false;
    std::vector<std::thread> readers;
    for (int i = 0; i < 2; ++i)
        readers.emplace_back([&] {
            while (!stop) {
                const auto picture = m_television.CurrentPicture();
                m_television.VideoRectangle();
                m_television.CurrentService();
                for (const Service& service : m_television.Services()) m_television.Programmes(service.id);
            }
        });
    for (int i = 0; i < 30; ++i) Zap();
    stop = true;
    for (auto& reader : readers) reader.join();
}

// The page comes and goes while notifications are under way: its listener must be left alone once it is gone.
TEST_F(ZapTest, ThreadsNeverCallAListenerThatWasReleased) {
    for (int i = 0; i < 100; ++i) {
        auto listener = std::make_unique<RecordingListener>(m_watch);
        auto* player = m_browser.GetBroadcastPlayer();
        ASSERT_NE(player, nullptr);
        player->SetListener(listener.get());
        player->NextChannel();
        if (i % 3 == 0) m_watch.WaitFor([&] { return !listener->Told().empty(); });
        if (i % 5 == 0) m_television.ViewerSelectsNext();
        m_browser.ReleaseBroadcastPlayer(player);
        listener.reset();
    }
}

}  // namespace
}  // namespace television::test
