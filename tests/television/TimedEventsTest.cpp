// Stream events at a normal play time: what sections say of it, and when it has come.
#include "television/events/TimedEvents.h"

#include "television/demonstration/SectionWriter.h"
#include "television/stream/Restamper.h"
#include "tests/television/Packets.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using Written = demonstration::Section;

constexpr std::int64_t kSecond = 90'000;
constexpr unsigned kReferences = 0x4000, kTimed = 0x8001;

Bytes Time(unsigned reserved, std::int64_t time) {
    return Bytes().Put8(reserved | static_cast<unsigned>(time >> 32)).Put32(static_cast<std::uint32_t>(time));
}

Bytes Reference(const NptReference& reference, unsigned flags = 0) {
    Bytes data;
    data.Put8(flags).Put(Time(0xfe, reference.clock)).Put(std::string(3, '\xff')).Put(Time(0xfe, reference.npt));
    data.Put16(reference.numerator).Put16(reference.denominator);
    return Bytes().PutDescriptor(0x17, data);
}

Bytes Event(unsigned id, std::int64_t npt, const std::string& data = "") {
    return Bytes().PutDescriptor(kStreamEventTag,
                                 Bytes().Put16(id).Put(std::string(3, '\xff')).Put(Time(0xfe, npt)).Put(data));
}

Written Written3d(const Bytes& body, unsigned extension) {
    return MakeSection({.table = kStreamDescriptorTable, .extension = extension}, body);
}

std::optional<NptReference> ReferenceOf(const Written& bytes) { return ReferenceIn(*ReadSection(bytes)); }
std::vector<TimedEvent> EventsOf(const Written& bytes) { return TimedEventsIn(*ReadSection(bytes)); }

TEST(NptReferences, TellATimeAgainstTheClock) {
    const NptReference reference{0x1'2345'6789, 0x1'0000'0001, 1, 2};
    EXPECT_EQ(ReferenceOf(Written3d(Reference(reference), kReferences)), reference);
}

TEST(NptReferences, ThatDoNotHoldAreNone) {
    const NptReference reference{1, 2, 1, 1};
    EXPECT_EQ(ReferenceOf(Written3d(Reference(reference, 0x80), kReferences)), std::nullopt) << "later";
    EXPECT_EQ(ReferenceOf(Written3d(Reference({1, 2, 0, 0}), kReferences)), std::nullopt) << "no rate";
    EXPECT_EQ(ReferenceOf(Written3d(Reference(reference), kTimed)), std::nullopt);
    EXPECT_EQ(ReferenceOf(Written3d(Bytes().PutDescriptor(0x17, Bytes().Put32(0)), kReferences)), std::nullopt);
    EXPECT_EQ(ReferenceOf(Written3d(Reference(reference).Put8(0x17).Put8(9), kReferences)), std::nullopt);
}

TEST(NptReferences, MoveWithTheClockOfAFileThatBeginsAgain) {
    Restamper restamper;
    Packets packets;
    const NptReference reference{kTimeWrap - 10, 5, 1, 1};
    const auto turn = [&] {
        packets.clear();
        std::uint8_t continuity = 0;
        Append(packets, MakePacket({.pid = 1, .clock = 0}));
        demonstration::Packetize(Written3d(Reference(reference), kReferences), 0x104, continuity, packets);
        Append(packets, MakePacket({.pid = 1, .clock = kClockRate}));
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize) restamper.Next(&packets[at]);
    };
    const auto told = [&] {
        std::optional<NptReference> found;
        SectionCollector().Push(&packets[kPacketSize], [&](const Section& section) { found = ReferenceIn(section); });
        return found;
    };
    turn();
    EXPECT_EQ(told(), reference);
    restamper.TurnAround();
    turn();
    const std::int64_t shift = *ClockOf(packets.data()) / 300;
    EXPECT_GT(shift, kSecond);
    EXPECT_EQ(told(), (NptReference{shift - 10, 5, 1, 1})) << "with a CRC that is right";
}

TEST(TimedEventSections, HoldEventsAndTheirTimes) {
    Bytes body = Event(7, 0x1'0000'0002, "go");
    body.Put(Event(8, 3));
    EXPECT_EQ(EventsOf(Written3d(body, kTimed)),
              (std::vector<TimedEvent>{{{7, {'g', 'o'}}, 0x1'0000'0002}, {{8, {}}, 3}}));
    EXPECT_TRUE(EventsOf(Written3d(body, 1)).empty()) << "done now";
    EXPECT_TRUE(EventsOf(Written3d(body, 0xc001)).empty()) << "reserved";
}

class TimedEventsTest : public testing::Test {
protected:
    void Plan(const Bytes& body, unsigned extension = kTimed) {
        const Written bytes = Written3d(body, extension);
        const Section section = *ReadSection(bytes);
        m_events.Plan(section, TimedEventsIn(section));
    }
    // The events that come while the clock runs on to this time, with half a second between its readings.
    std::vector<unsigned> RunTo(std::int64_t clock) {
        std::vector<unsigned> ids;
        while (m_clock < clock) {
            m_clock = std::min(clock, m_clock + kSecond / 2);
            for (const StreamEvent& event : m_events.DueBy(Wrapped(m_clock, kTimeWrap))) ids.push_back(event.id);
        }
        return ids;
    }
    using Ids = std::vector<unsigned>;

    TimedEvents m_events;
    std::int64_t m_clock = 0;
};

TEST_F(TimedEventsTest, ComeWhenTheirTimeHasCome) {
    m_events.SetReference({0, 100 * kSecond, 1, 1});
    Plan(Event(1, 110 * kSecond).Put(Event(2, 120 * kSecond)));
    EXPECT_EQ(RunTo(10 * kSecond - 1), Ids{});
    EXPECT_EQ(RunTo(10 * kSecond), Ids{1});
    EXPECT_EQ(RunTo(30 * kSecond), Ids{2}) << "each once";
}

TEST_F(TimedEventsTest, ComeSoonerOrLaterWhenTheTimeRunsFasterOrStands) {
    Plan(Event(1, 10 * kSecond).Put(Event(2, 11 * kSecond)));
    m_events.SetReference({0, 0, 2, 1});
    EXPECT_EQ(RunTo(5 * kSecond), Ids{1});
    m_events.SetReference({5 * kSecond, 10 * kSecond, 0, 1});
    EXPECT_EQ(RunTo(50 * kSecond), Ids{});
    m_events.SetReference({50 * kSecond, 10 * kSecond, 1, 1});
    EXPECT_EQ(RunTo(51 * kSecond), Ids{2});
}

TEST_F(TimedEventsTest, WaitForAReference) {
    Plan(Event(1, 5 * kSecond));
    EXPECT_EQ(RunTo(20 * kSecond), Ids{});
    EXPECT_FALSE(m_events.HasReference());
    m_events.SetReference({20 * kSecond, 4 * kSecond, 1, 1});
    EXPECT_EQ(RunTo(21 * kSecond), Ids{1});
}

TEST_F(TimedEventsTest, AreOverWhenTheirTimeIs) {
    m_events.SetReference({0, 0, 1, 1});
    RunTo(10 * kSecond);
    Plan(Event(1, 5 * kSecond).Put(Event(2, 10 * kSecond)));
    EXPECT_EQ(RunTo(11 * kSecond), Ids{2}) << "just now";
}

TEST_F(TimedEventsTest, AreReplacedByThoseOfTheNextVersion) {
    m_events.SetReference({0, 0, 1, 1});
    Plan(Event(1, 5 * kSecond));
    Plan(Event(2, 6 * kSecond));
    Plan(Event(3, 7 * kSecond), kTimed + 1);
    EXPECT_EQ(RunTo(10 * kSecond), (Ids{2, 3}));
}

TEST_F(TimedEventsTest, WaitForAReferenceToTheNewClockWhenItJumps) {
    m_events.SetReference({0, 0, 1, 1});
    Plan(Event(1, 5 * kSecond));
    EXPECT_EQ(RunTo(kSecond), Ids{});
    m_clock = 4 * kSecond;
    EXPECT_EQ(RunTo(6 * kSecond), Ids{});
    m_events.SetReference({6 * kSecond, 2 * kSecond, 1, 1});
    EXPECT_EQ(RunTo(9 * kSecond), Ids{1});
}

TEST_F(TimedEventsTest, ComeInTimeWhileTheClockWraps) {
    m_clock = kTimeWrap - kSecond;
    m_events.SetReference({m_clock, kTimeWrap - 2 * kSecond, 1, 1});
    Plan(Event(1, kSecond));
    EXPECT_EQ(RunTo(m_clock + 3 * kSecond - 1), Ids{});
    EXPECT_EQ(RunTo(m_clock + 1), Ids{1});
}

}  // namespace
}  // namespace television::test
