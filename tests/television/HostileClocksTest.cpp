// Streams whose clock does not tell how fast they run.
#include <gtest/gtest.h>

#include <atomic>

#include "television/stream/Receiver.h"
#include "tests/television/Packets.h"
#include "tests/television/RecordingListener.h"

namespace television::test {
namespace {

using Clock = std::chrono::steady_clock;

// Packets without end, whose clock stands still.
class StandingSource : public PacketSource {
public:
    std::optional<std::string> Open() override { return std::nullopt; }
    Result Read(std::vector<std::uint8_t>& packets) override {
        for (unsigned i = 0; i < 64; ++i) Append(packets, MakePacket({.continuity = i & 15, .clock = 0}));
        return Result::Packets;
    }
    bool NeedsPacing() const override { return true; }
};

class Counter : public ReceiverClient {
public:
    void PacketsReceived(std::span<const std::uint8_t>, std::int64_t) override {
        ++m_slices;
        m_watch.Notify();
    }
    void StreamBroke() override {}
    void SignalLost() override {}
    void SignalReturned() override {}
    int Slices() const { return m_slices; }
    bool WaitFor(int slices) {
        return m_watch.WaitFor([&] { return m_slices >= slices; });
    }

private:
    std::atomic<int> m_slices = 0;
    Watch m_watch;
};

TEST(ReceiverThread, DoesNotRaceWhereTheClockStandsStill) {
    constexpr int kSlices = 400;
    Counter counter;
    Receiver receiver(std::make_unique<StandingSource>(), counter);
    receiver.KeepTime();
    ASSERT_TRUE(counter.WaitFor(10));
    const auto started = Clock::now();
    ASSERT_TRUE(counter.WaitFor(counter.Slices() + kSlices));
    EXPECT_GT(Clock::now() - started, std::chrono::milliseconds(kSlices / 4)) << "half a millisecond each";
}

}  // namespace
}  // namespace television::test
