// The last seconds of the multiplex, and what a new channel gets of them.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "television/stream/StreamBuffer.h"
#include "television/stream/StreamTypes.h"
#include "tests/television/Packets.h"

namespace television::test {
namespace {

constexpr std::uint16_t kMap = 0x100, kVideo = 0x101, kAudio = 0x102, kOther = 0x201;

class StreamBufferTest : public testing::Test {
protected:
    // Each written packet is numbered by its counter, which is enough to tell them apart within 16.
    void Write(const Packets& packets) { m_buffer.Write(packets, m_now += kClockRate / 100); }
    void WriteTables() {
        Write(MakePacket({.pid = 0, .startsUnit = true}));
        Write(MakePacket({.pid = kMap, .startsUnit = true}));
    }
    void WriteUnit(unsigned number, bool access) {
        Write(MakePacket({.pid = kVideo, .continuity = number, .startsUnit = true, .randomAccess = access}));
    }
    void Attach() {
        m_buffer.Attach({.tablePid = kMap, .accessPid = kVideo, .accessType = kH264Video, .pids = {kVideo, kAudio}},
                        [this](Packets&& packets) { Append(m_fed, packets); });
    }
    std::vector<int> FedPictures() const {
        std::vector<int> numbers;
        for (const auto* packet : OfPid(m_fed, kVideo)) numbers.push_back(ContinuityOf(packet));
        return numbers;
    }

    StreamBuffer m_buffer;
    std::int64_t m_now = 0;
    Packets m_fed;
};

TEST_F(StreamBufferTest, GivesTablesAndEverythingSinceTheLastCompleteAccessPoint) {
    WriteTables();
    WriteUnit(1, true);
    WriteUnit(2, false);
    WriteUnit(3, true);
    WriteUnit(4, false);
    Attach();
    EXPECT_EQ(OfPid(m_fed, 0).size(), 1u);
    EXPECT_EQ(OfPid(m_fed, kMap).size(), 1u);
    EXPECT_EQ(FedPictures(), (std::vector{3, 4}));
    EXPECT_EQ(PidOf(m_fed.data()), 0) << "the PAT comes first";
}

TEST_F(StreamBufferTest, TakesTheAccessPointBeforeWhenTheLastOneIsNotComplete) {
    WriteTables();
    WriteUnit(1, true);
    WriteUnit(2, false);
    WriteUnit(3, true);
    Attach();
    EXPECT_EQ(FedPictures(), (std::vector{1, 2, 3}));
}

TEST_F(StreamBufferTest, GoesOnWithWhatComes) {
    WriteTables();
    WriteUnit(1, true);
    WriteUnit(2, false);
    Attach();
    WriteUnit(3, false);
    Write(MakePacket({.pid = kOther}));
    EXPECT_EQ(FedPictures(), (std::vector{1, 2, 3}));
    EXPECT_TRUE(OfPid(m_fed, kOther).empty());
}

TEST_F(StreamBufferTest, WaitsForAnAccessPointWhenItHasNone) {
    Attach();
    WriteTables();
    WriteUnit(1, false);
    EXPECT_EQ(FedPictures(), std::vector<int>{});
    EXPECT_EQ(OfPid(m_fed, kMap).size(), 1u);
    WriteUnit(2, true);
    WriteUnit(3, false);
    EXPECT_EQ(FedPictures(), (std::vector{2, 3}));
}

TEST_F(StreamBufferTest, BeginsSoundAtAnyUnit) {
    Write(MakePacket({.pid = kAudio, .continuity = 1, .startsUnit = true}));
    Write(MakePacket({.pid = kAudio, .continuity = 2}));
    Write(MakePacket({.pid = kAudio, .continuity = 3, .startsUnit = true}));
    m_buffer.Attach({.tablePid = kMap, .accessPid = kAudio, .accessAnywhere = true, .pids = {kAudio}},
                    [this](Packets&& packets) { Append(m_fed, packets); });
    EXPECT_EQ(OfPid(m_fed, kAudio).size(), 3u);
}

TEST_F(StreamBufferTest, ForgetsWhatIsOlderThanThreeSeconds) {
    WriteTables();
    WriteUnit(1, true);
    WriteUnit(2, false);
    m_now += 4 * kClockRate;
    WriteUnit(3, false);
    Attach();
    EXPECT_EQ(FedPictures(), std::vector<int>{});
}

TEST_F(StreamBufferTest, CopiesATableOfSeveralPackets) {
    Write(MakePacket({.pid = kMap, .continuity = 1, .startsUnit = true}));
    Write(MakePacket({.pid = kMap, .continuity = 2}));
    Write(MakePacket({.pid = kMap, .continuity = 3, .startsUnit = true}));
    Write(MakePacket({.pid = kMap, .continuity = 4}));
    WriteUnit(1, true);
    WriteUnit(2, false);
    Attach();
    const auto tables = OfPid(m_fed, kMap);
    ASSERT_EQ(tables.size(), 2u);
    EXPECT_EQ(ContinuityOf(tables[0]), 3);
    EXPECT_EQ(ContinuityOf(tables[1]), 4);
}

TEST_F(StreamBufferTest, GivesTheNewestTablesAndNoOlderOnes) {
    WriteTables();
    WriteUnit(1, true);
    Write(MakePacket({.pid = 0, .continuity = 1, .startsUnit = true}));
    WriteUnit(2, false);
    Write(MakePacket({.pid = 0, .continuity = 2, .startsUnit = true}));
    Attach();
    const auto tables = OfPid(m_fed, 0);
    ASSERT_EQ(tables.size(), 1u);
    EXPECT_EQ(ContinuityOf(tables[0]), 2);
    EXPECT_EQ(PidOf(m_fed.data()), 0);
    EXPECT_EQ(FedPictures(), (std::vector{1, 2}));
}

TEST_F(StreamBufferTest, ForgetsEverythingWhenItIsCleared) {
    WriteTables();
    WriteUnit(1, true);
    WriteUnit(2, false);
    m_buffer.Clear();
    Attach();
    EXPECT_TRUE(m_fed.empty());
}

TEST(StreamBufferThreads, CallNoFeedAfterItIsDetached) {
    StreamBuffer buffer;
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        const Packets packet = MakePacket({.pid = kVideo, .startsUnit = true, .randomAccess = true});
        for (std::int64_t now = 0; !stop; now += kClockRate / 1000) buffer.Write(packet, now);
    });
    for (int i = 0; i < 2000; ++i) {
        auto fed = std::make_unique<std::size_t>(0);
        buffer.Attach({.accessPid = kVideo, .accessType = kH264Video, .pids = {kVideo}},
                      [counter = fed.get()](Packets&& packets) { *counter += packets.size(); });
        buffer.Detach();
        fed.reset();
    }
    stop = true;
    writer.join();
}

}  // namespace
}  // namespace television::test
