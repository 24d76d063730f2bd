// The count of packets without the gaps that bad reception leaves in it.
#include "television/stream/Renumbering.h"

#include "tests/television/Packets.h"

namespace television::test {
namespace {

constexpr std::uint16_t kVideo = 0x101;

Packets Numbered(const std::vector<unsigned>& counts, std::uint16_t pid = kVideo) {
    Packets packets;
    for (const unsigned count : counts) Append(packets, MakePacket({.pid = pid, .continuity = count, .payload = {1}}));
    return packets;
}

std::vector<unsigned> Numbers(const Packets& packets) {
    std::vector<unsigned> numbers;
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) numbers.push_back(ContinuityOf(&packets[at]));
    return numbers;
}

// How far each packet is from the one before.
std::vector<unsigned> StepsOf(Renumbering& renumbering, Packets packets) {
    renumbering.Apply(kVideo, packets);
    const auto numbers = Numbers(packets);
    std::vector<unsigned> steps;
    for (std::size_t i = 1; i < numbers.size(); ++i) steps.push_back((numbers[i] - numbers[i - 1]) & 15);
    return steps;
}

using Steps = std::vector<unsigned>;

TEST(Renumberings, LeaveNoGap) {
    Renumbering renumbering;
    EXPECT_EQ(StepsOf(renumbering, Numbered({14, 15, 0, 3, 4, 2})), (Steps{1, 1, 1, 1, 1}));
}

TEST(Renumberings, GoOnFromOneRunOfPacketsToTheNext) {
    Renumbering renumbering;
    Packets first = Numbered({5, 6}), second = Numbered({9});
    renumbering.Apply(kVideo, first);
    renumbering.Apply(kVideo, second);
    EXPECT_EQ(Numbers(second)[0], (Numbers(first)[1] + 1) & 15);
}

TEST(Renumberings, KeepAPacketThatComesTwiceTheSame) {
    Renumbering renumbering;
    EXPECT_EQ(StepsOf(renumbering, Numbered({7, 7, 8})), (Steps{0, 1}));
}

TEST(Renumberings, DoNotCountPacketsWithoutAPayload) {
    Packets packets = Numbered({3, 3, 4});
    packets[kPacketSize + 3] = static_cast<std::uint8_t>((packets[kPacketSize + 3] & 0x0f) | 0x20);
    Renumbering renumbering;
    EXPECT_EQ(StepsOf(renumbering, packets), (Steps{0, 1}));
}

TEST(Renumberings, LeaveOtherPidsAlone) {
    Packets packets = Numbered({3, 9}, kVideo + 1);
    Renumbering renumbering;
    renumbering.Apply(kVideo, packets);
    EXPECT_EQ(packets, Numbered({3, 9}, kVideo + 1));
}

}  // namespace
}  // namespace television::test
