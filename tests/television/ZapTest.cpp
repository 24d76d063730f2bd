// Many channel changes: how fast they are, and that nothing grows.
#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
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

constexpr std::array kChannels{"Atlas One", "Atlas Two", "Boreal", "Atlas Radio"};

// As many as tests/zap-campaign wants; all channels equally often.
int Zaps() {
    const char* wanted = std::getenv("CAMPAIGN_ZAPS");
    const int zaps = wanted ? std::atoi(wanted) : kZaps;
    return zaps / static_cast<int>(kChannels.size()) * static_cast<int>(kChannels.size());
}

long Threads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

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
        const auto count = static_cast<std::ptrdiff_t>(m_listener.Told().size());
        m_channel = (m_channel + 1) % kChannels.size();
        const unsigned int id = IdOf(kChannels[m_channel]);
        ASSERT_TRUE(m_player->SetChannel(id, false));
        std::string outcome;
        ASSERT_TRUE(m_watch.WaitFor([&] {
            const auto told = m_listener.Told();
            const auto found = std::find_if(told.begin() + count, told.end(),
                                            [](const std::string& call) { return call != "ProgrammeChanged"; });
            if (found != told.end()) outcome = *found;
            return found != told.end();
        }));
        ASSERT_EQ(outcome, "TuneSuccess " + std::to_string(id));
        IJSChannelCache::Instance()->ReleaseChannel(id);
        m_times.push_back(m_television.LastTune().toFirstPicture);
    }
    // Once round the channels, so that what is compared was taken on the same one.
    void ZapRound() {
        for (std::size_t i = 0; i < kChannels.size() && !HasFatalFailure(); ++i) Zap();
    }
    std::size_t m_channel = 0;
    std::vector<double> m_times;
};

TEST_F(ZapTest, HundredsOfChangesAreFastAndLeaveNothingBehind) {
    ASSERT_TRUE(WaitForTunes(1));
    OpenPage();
    const auto zaps = static_cast<std::size_t>(Zaps());
    while (m_times.size() < zaps / 3 && !HasFatalFailure()) ZapRound();
    const long before = ResidentMemory(), threads = Threads();
    while (m_times.size() < zaps && !HasFatalFailure()) ZapRound();
    const long grown = ResidentMemory() - before;
    EXPECT_TRUE(m_watch.WaitFor([&] { return Threads() == threads; })) << Threads() << " instead of " << threads;
    std::sort(m_times.begin(), m_times.end());
    const double median = m_times[m_times.size() / 2];
    RecordProperty("median_ms", std::to_string(median));
    RecordProperty("grown_KiB", std::to_string(grown));
    std::printf("%zu changes: median %.0f ms, worst %.0f ms; %ld KiB more, %ld threads\n", m_times.size(), median,
                m_times.back(), grown, Threads());
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
        for (const char* name : {"Atlas Two", "Atlas Radio", "Atlas One", "Atlas Radio"})
            EXPECT_TRUE(m_player->SetChannel(IdOf(name), false));
    EXPECT_TRUE(m_player->SetChannel(IdOf("Boreal"), false));  // so that its success can be of this change only
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
