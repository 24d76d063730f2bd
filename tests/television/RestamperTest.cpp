// Files that are played endlessly: their end joins their beginning.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "television/stream/FileSource.h"
#include "television/stream/Restamper.h"
#include "tests/television/Packets.h"

namespace television::test {
namespace {

constexpr std::int64_t kFrame = 3600;  // of 25 in a second, in 90 kHz

// Ten pictures of two packets, the first of each with clock and time, and a sound packet behind each.
Packets ShortStream() {
    Packets stream;
    for (unsigned i = 0; i < 10; ++i) {
        const std::int64_t time = 900'000 + i * kFrame;
        Append(stream, MakePacket({.pid = 0x101,
                                   .continuity = (2 * i) & 15,
                                   .startsUnit = true,
                                   .clock = (time - 45'000) * 300,
                                   .presentation = time,
                                   .decoding = time - kFrame}));
        Append(stream, MakePacket({.pid = 0x101, .continuity = (2 * i + 1) & 15}));
        Append(stream, MakePacket({.pid = 0x102, .continuity = i & 15, .startsUnit = true, .presentation = time}));
    }
    return stream;
}

Packets Turns(const Packets& stream, int turns) {
    Packets all;
    Restamper restamper;
    for (int turn = 0; turn < turns; ++turn) {
        Packets copy = stream;
        for (std::size_t at = 0; at < copy.size(); at += kPacketSize) restamper.Next(copy.data() + at);
        restamper.TurnAround();
        Append(all, copy);
    }
    return all;
}

TEST(Restamper, LeavesTheFirstTurnAsItIs) { EXPECT_EQ(Turns(ShortStream(), 1), ShortStream()); }

TEST(Restamper, TakesNoTurnForLongerThanASecondAPacket) {
    constexpr std::int64_t kPackets = 8'000'000, kFarAhead = kClockWrap / 2 - 300;
    Restamper restamper;
    Packets first = MakePacket({.pid = 0x101, .clock = 0}), last = MakePacket({.pid = 0x101, .clock = kFarAhead});
    restamper.Next(first.data());
    restamper.Next(last.data());
    Packets null(kPacketSize);
    MakeNullPacket(null.data());
    for (std::int64_t i = 0; i < kPackets; ++i) restamper.Next(null.data());
    restamper.TurnAround();
    Packets again = MakePacket({.pid = 0x101, .clock = 0});
    restamper.Next(again.data());
    EXPECT_EQ(ClockOf(again.data()), Wrapped(kFarAhead + kClockRate * (kPackets + 1), kClockWrap) / 300 * 300);
}

TEST(Restamper, KeepsPicturesAtTheirDistanceOverTheSeam) {
    const Packets packets = Turns(ShortStream(), 3);
    std::vector<PesTimes> times;
    for (const auto* packet : OfPid(packets, 0x101))
        if (StartsUnit(packet)) times.push_back(TimesOf(packet));
    ASSERT_EQ(times.size(), 30u);
    for (std::size_t i = 1; i < times.size(); ++i) {
        EXPECT_EQ(*times[i].presentation - *times[i - 1].presentation, kFrame) << i;
        EXPECT_EQ(*times[i].decoding - *times[i - 1].decoding, kFrame) << i;
    }
}

TEST(Restamper, KeepsSoundAndClockWithThePictures) {
    const Packets packets = Turns(ShortStream(), 3);
    const auto pictures = OfPid(packets, 0x101), sounds = OfPid(packets, 0x102);
    for (std::size_t i = 0; i < sounds.size(); ++i) {
        const auto* picture = pictures[2 * i];
        EXPECT_EQ(*TimesOf(sounds[i]).presentation, *TimesOf(picture).presentation);
        EXPECT_EQ(*ClockOf(picture) / 300, *TimesOf(picture).presentation - 45'000);
    }
}

TEST(Restamper, KeepsPicturesAtTheirDistanceWhereTheLastClockComesAfterTheirEnd) {
    Packets stream = ShortStream();
    const std::int64_t end = (900'000 + 10 * kFrame - 45'000) * 300;
    Append(stream, MakePacket({.pid = 0x101, .continuity = 3, .clock = end + kClockRate / 60}));
    const Packets packets = Turns(stream, 3);
    std::optional<std::int64_t> time, clock;
    for (const auto* packet : OfPid(packets, 0x101)) {
        if (const auto next = TimesOf(packet).presentation) {
            EXPECT_EQ(*next - time.value_or(*next - kFrame), kFrame);
            time = next;
        }
        if (const auto next = ClockOf(packet)) {
            EXPECT_GT(*next, clock.value_or(0));
            clock = next;
        }
    }
}

TEST(Restamper, CountsContinuityOverTheSeam) {
    const Packets packets = Turns(ShortStream(), 3);
    for (const std::uint16_t pid : {0x101, 0x102}) {
        const auto ofPid = OfPid(packets, pid);
        for (std::size_t i = 1; i < ofPid.size(); ++i)
            EXPECT_EQ(ContinuityOf(ofPid[i]), (ContinuityOf(ofPid[i - 1]) + 1) % 16) << pid << " " << i;
    }
}

TEST(Restamper, WrapsTimesAfterTwentySixHours) {
    Packets stream;
    for (unsigned i = 0; i < 10; ++i) {
        const std::int64_t time = kTimeWrap - 5 * kFrame + i * kFrame;
        Append(stream, MakePacket({.pid = 0x101,
                                   .continuity = i,
                                   .startsUnit = true,
                                   .clock = Wrapped(time, kTimeWrap) * 300,
                                   .presentation = Wrapped(time, kTimeWrap)}));
    }
    const Packets packets = Turns(stream, 2);
    const auto pictures = OfPid(packets, 0x101);
    for (std::size_t i = 1; i < pictures.size(); ++i)
        EXPECT_EQ(
            WrappedDifference(*TimesOf(pictures[i]).presentation, *TimesOf(pictures[i - 1]).presentation, kTimeWrap),
            kFrame)
            << i;
}

// The real stream: three turns of the demonstration's file.
class PlayedFile : public testing::Test {
protected:
    void SetUp() override {
        FileSource source(DEMONSTRATION_STREAM);
        ASSERT_EQ(source.Open(), std::nullopt);
        while (m_packets.size() < 3 * 7'300'000u) ASSERT_EQ(source.Read(m_packets), PacketSource::Result::Packets);
    }
    Packets m_packets;
};

TEST_F(PlayedFile, HasNoGapInItsCounters) {
    std::map<std::uint16_t, std::uint8_t> last;
    std::size_t faults = 0;
    for (std::size_t at = 0; at < m_packets.size(); at += kPacketSize) {
        const auto* packet = m_packets.data() + at;
        const auto known = last.find(PidOf(packet));
        if (PidOf(packet) != kNullPid && known != last.end())
            faults += ContinuityOf(packet) != ((known->second + HasPayload(packet)) & 15);
        last[PidOf(packet)] = ContinuityOf(packet);
    }
    EXPECT_EQ(faults, 0u);
}

TEST_F(PlayedFile, HasAPictureEachFortyMilliseconds) {
    for (const std::uint16_t pid : {0x101, 0x201, 0x301}) {
        std::optional<std::int64_t> last;
        for (const auto* packet : OfPid(m_packets, pid)) {
            const auto time = TimesOf(packet).presentation;
            if (!time) continue;
            ASSERT_EQ(WrappedDifference(*time, last.value_or(*time - kFrame), kTimeWrap), kFrame) << pid;
            last = time;
        }
    }
}

TEST_F(PlayedFile, HasSoundWithoutAGap) {
    std::optional<std::int64_t> last;
    for (const auto* packet : OfPid(m_packets, 0x102)) {
        const auto time = TimesOf(packet).presentation;
        if (!time) continue;
        ASSERT_NEAR(WrappedDifference(*time, last.value_or(*time - 2160), kTimeWrap), 2160, 1) << "one frame of 24 ms";
        last = time;
    }
}

TEST_F(PlayedFile, HasClocksThatNeverRunBackwards) {
    std::map<std::uint16_t, std::int64_t> last;
    for (std::size_t at = 0; at < m_packets.size(); at += kPacketSize) {
        const auto* packet = m_packets.data() + at;
        const auto clock = ClockOf(packet);
        if (!clock) continue;
        if (const auto known = last.find(PidOf(packet)); known != last.end()) {
            const auto step = WrappedDifference(*clock, known->second, kClockWrap);
            ASSERT_GT(step, 0) << PidOf(packet);
            ASSERT_LT(step, kClockRate / 10) << PidOf(packet);
        }
        last[PidOf(packet)] = *clock;
    }
}

}  // namespace
}  // namespace television::test
