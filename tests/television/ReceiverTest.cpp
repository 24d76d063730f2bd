// How fast a stream is handed on that does not come in real time.
#include <gtest/gtest.h>

#include <atomic>

#include "television/stream/Receiver.h"
#include "tests/television/Packets.h"
#include "tests/television/RecordingListener.h"

namespace television::test {
namespace {

using Clock = std::chrono::steady_clock;

// Packets without end, a slice of them for each step of their clock.
class SteppingSource : public PacketSource {
public:
    explicit SteppingSource(std::int64_t step) : m_step(step) {}
    std::optional<std::string> Open() override { return std::nullopt; }
    Result Read(std::vector<std::uint8_t>& packets) override {
        for (unsigned i = 0; i < 64; ++i) Append(packets, MakePacket({.continuity = i & 15, .clock = m_clock}));
        m_clock += m_step;
        return Result::Packets;
    }
    bool NeedsPacing() const override { return true; }

private:
    std::int64_t m_step, m_clock = 0;
};

class Counter : public ReceiverClient {
public:
    explicit Counter(bool hasEnough = false) : m_hasEnough(hasEnough) {}
    bool HasEnough() const override { return m_hasEnough; }
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
    bool m_hasEnough;
    std::atomic<int> m_slices = 0;
    Watch m_watch;
};

TEST(ReceiverThread, DoesNotRaceWhereTheClockStandsStill) {
    constexpr int kSlices = 400;
    Counter counter;
    Receiver receiver(std::make_unique<SteppingSource>(0), counter);
    receiver.KeepTime();
    ASSERT_TRUE(counter.WaitFor(10));
    const auto started = Clock::now();
    ASSERT_TRUE(counter.WaitFor(counter.Slices() + kSlices));
    EXPECT_GT(Clock::now() - started, std::chrono::milliseconds(kSlices / 4)) << "half a millisecond each";
}

TEST(ReceiverThread, KeepsTimeOnceItsClientHasEnough) {
    constexpr int kSlices = 30;
    const auto started = Clock::now();
    Counter counter(true);
    Receiver receiver(std::make_unique<SteppingSource>(kClockRate / 50), counter);
    ASSERT_TRUE(counter.WaitFor(kSlices));
    EXPECT_GT(Clock::now() - started, std::chrono::milliseconds((kSlices - 5) * 20)) << "20 milliseconds each";
}

}  // namespace
}  // namespace television::test
