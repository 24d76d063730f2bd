// Reading and writing single packets.
#include <gtest/gtest.h>

#include "television/stream/PacketAligner.h"
#include "television/stream/RandomAccess.h"
#include "television/stream/StreamClock.h"
#include "television/stream/StreamTypes.h"
#include "tests/television/Packets.h"

namespace television::test {
namespace {

TEST(TransportPacket, GivesItsPidAndCounter) {
    const Packets packet = MakePacket({.pid = 0x1abc, .continuity = 9});
    EXPECT_EQ(PidOf(packet.data()), 0x1abc);
    EXPECT_EQ(ContinuityOf(packet.data()), 9);
    EXPECT_EQ(PayloadOf(packet.data()).size(), 184u);
}

TEST(TransportPacket, KeepsAClockOfThirtyThreeBitsAndItsExtension) {
    const std::int64_t clock = kClockWrap - 1;
    EXPECT_EQ(ClockOf(MakePacket({.clock = clock}).data()), clock);
    EXPECT_EQ(ClockOf(MakePacket({.clock = 12345}).data()), 12345);
}

TEST(TransportPacket, HasNoClockWithoutOne) {
    EXPECT_FALSE(ClockOf(MakePacket({}).data()));
    EXPECT_FALSE(ClockOf(MakePacket({.randomAccess = true}).data()));
}

TEST(TransportPacket, KeepsBothTimesOfAPesHeader) {
    const Packets packet = MakePacket({.startsUnit = true, .presentation = kTimeWrap - 1, .decoding = 0x155555555});
    EXPECT_EQ(TimesOf(packet.data()).presentation, kTimeWrap - 1);
    EXPECT_EQ(TimesOf(packet.data()).decoding, 0x155555555);
}

TEST(TransportPacket, HasNoTimesInsideAUnitOrWhenScrambled) {
    Packets packet = MakePacket({.startsUnit = true, .presentation = 90000});
    packet[3] |= 0x80;
    EXPECT_FALSE(TimesOf(packet.data()).presentation);
    EXPECT_FALSE(TimesOf(MakePacket({.startsUnit = false, .presentation = 90000}).data()).presentation);
}

TEST(TransportPacket, HasNoPayloadWhenItsAdaptationFieldOverrunsIt) {
    Packets packet = MakePacket({.clock = 1});
    packet[4] = 250;
    EXPECT_TRUE(PayloadOf(packet.data()).empty());
    EXPECT_FALSE(ClockOf(packet.data()));
    EXPECT_FALSE(IsRandomAccess(packet.data()));
}

TEST(TransportPacket, MeasuresDifferencesAcrossTheWrap) {
    EXPECT_EQ(WrappedDifference(5, kTimeWrap - 5, kTimeWrap), 10);
    EXPECT_EQ(WrappedDifference(kTimeWrap - 5, 5, kTimeWrap), -10);
}

TEST(RandomAccess, IsWhereThePacketSaysSo) {
    EXPECT_TRUE(BeginsRandomAccess(MakePacket({.startsUnit = true, .randomAccess = true}).data(), kH264Video));
}

TEST(RandomAccess, IsWhereAParameterSetOrSequenceHeaderBegins) {
    const auto with = [](std::uint8_t code) {
        return MakePacket({.startsUnit = true, .presentation = 0, .payload = {0, 0, 1, 0x09, 0xf0, 0, 0, 1, code}});
    };
    EXPECT_TRUE(BeginsRandomAccess(with(0x67).data(), kH264Video));
    EXPECT_TRUE(BeginsRandomAccess(with(0x27).data(), kH264Video));
    EXPECT_FALSE(BeginsRandomAccess(with(0x41).data(), kH264Video));
    EXPECT_TRUE(BeginsRandomAccess(with(0xb3).data(), kMpeg2Video));
    EXPECT_FALSE(BeginsRandomAccess(with(0x27).data(), kMpeg2Video)) << "a slice";
    EXPECT_TRUE(BeginsRandomAccess(with(0x40).data(), kH265Video));
    EXPECT_FALSE(BeginsRandomAccess(with(0x02).data(), kH265Video));
}

TEST(PacketAligner, FindsPacketsBehindGarbageAndAcrossPieces) {
    Packets stream{1, kSyncByte, 2, 3};
    for (unsigned i = 0; i < 10; ++i) Append(stream, MakePacket({.continuity = i}));
    PacketAligner aligner;
    Packets packets;
    for (std::size_t at = 0; at < stream.size(); at += 100)
        aligner.Push(std::span(stream).subspan(at, std::min<std::size_t>(100, stream.size() - at)), packets);
    ASSERT_EQ(Count(packets), 10u);
    EXPECT_EQ(ContinuityOf(packets.data() + 9 * kPacketSize), 9);
}

TEST(PacketAligner, ResumesBehindAFault) {
    Packets stream;
    for (unsigned i = 0; i < 6; ++i) Append(stream, MakePacket({.continuity = i}));
    Append(stream, Packets(50, 0));
    for (unsigned i = 6; i < 12; ++i) Append(stream, MakePacket({.continuity = i}));
    PacketAligner aligner;
    Packets packets;
    aligner.Push(stream, packets);
    ASSERT_EQ(Count(packets), 12u);
    EXPECT_EQ(ContinuityOf(packets.data() + 11 * kPacketSize), 11);
}

// Packets with other bytes between them, and the same bytes ahead of the first one or behind the last one.
Packets Spaced(std::size_t before, std::size_t behind, unsigned count) {
    Packets stream;
    for (unsigned i = 0; i < count; ++i) {
        stream.insert(stream.end(), before, static_cast<std::uint8_t>(i));
        Append(stream, MakePacket({.continuity = i & 15}));
        stream.insert(stream.end(), behind, static_cast<std::uint8_t>(i));
    }
    return stream;
}

void ExpectCounted(const Packets& packets, unsigned count) {
    ASSERT_EQ(Count(packets), count);
    for (unsigned i = 0; i < count; ++i) EXPECT_EQ(ContinuityOf(packets.data() + i * kPacketSize), i & 15) << i;
}

TEST(PacketAligner, TakesPacketsWithTimesBeforeThemOrErrorCorrectionBehindThem) {
    for (const auto& stream : {Spaced(4, 0, 200), Spaced(0, 16, 200)})
        for (const std::size_t piece : {1u, 100u, 204u, 100'000u}) {
            PacketAligner aligner;
            Packets packets;
            for (std::size_t at = 0; at < stream.size(); at += piece)
                aligner.Push(std::span(stream).subspan(at, std::min(piece, stream.size() - at)), packets);
            ExpectCounted(packets, 200);
        }
}

TEST(PacketAligner, TakesAnotherDistanceBehindAFaultAndFromTheBeginning) {
    Packets stream = Spaced(0, 16, 16);
    Append(stream, Packets(50, 0));
    Append(stream, Spaced(4, 0, 16));
    Append(stream, Spaced(0, 0, 16));
    PacketAligner aligner;
    Packets packets;
    aligner.Push(stream, packets);
    ExpectCounted(packets, 48);
    for (const auto& [before, behind] : {std::pair{4, 0}, {0, 16}, {0, 0}}) {
        aligner.Reset();
        packets.clear();
        aligner.Push(Spaced(static_cast<std::size_t>(before), static_cast<std::size_t>(behind), 16), packets);
        ExpectCounted(packets, 16);
    }
}

TEST(PacketAligner, TakesNoTextForPackets) {
    std::string text;
    while (text.size() < 4000) text += "GET THE GREAT PAGE\n";
    PacketAligner aligner;
    Packets packets;
    aligner.Push({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, packets);
    EXPECT_TRUE(packets.empty());
}

TEST(StreamClock, CountsTheFollowedProgrammesTime) {
    StreamClock clock;
    EXPECT_FALSE(clock.Observe(MakePacket({.pid = 1, .clock = kClockWrap - 100}).data()));
    EXPECT_FALSE(clock.Observe(MakePacket({.pid = 2, .clock = 77777}).data()));
    EXPECT_FALSE(clock.Observe(MakePacket({.pid = 1, .clock = 900}).data()));
    EXPECT_EQ(clock.Now(), 1000);
}

TEST(StreamClock, TellsAJumpAndDoesNotCountIt) {
    StreamClock clock;
    clock.Observe(MakePacket({.clock = 0}).data());
    EXPECT_TRUE(clock.Observe(MakePacket({.clock = 100 * kClockRate}).data()));
    EXPECT_TRUE(clock.Observe(MakePacket({.clock = 50 * kClockRate}).data()));
    EXPECT_FALSE(clock.Observe(MakePacket({.clock = 50 * kClockRate + 500}).data()));
    EXPECT_EQ(clock.Now(), 500);
}

TEST(StreamClock, FollowsAnotherProgrammeWhenItsOwnEnds) {
    StreamClock clock;
    clock.Observe(MakePacket({.pid = 1, .clock = 0}).data());
    for (std::int64_t i = 0; i < 300; ++i) clock.Observe(MakePacket({.pid = 2, .clock = i * 1000}).data());
    EXPECT_GT(clock.Now(), 0);
}

}  // namespace
}  // namespace television::test
