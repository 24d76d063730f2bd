// Sections from packets, stream events from sections, and their declarations: right ones and hostile ones.
#include <gtest/gtest.h>

#include <random>

#include "television/demonstration/SectionWriter.h"
#include "television/events/EventDeclaration.h"
#include "television/events/StreamEventSection.h"
#include "tests/television/Packets.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using demonstration::Packetize;
using Written = demonstration::Section;

constexpr std::uint16_t kPid = 0x104;

Bytes Descriptor(std::uint16_t id, const std::string& data) {
    return Bytes().PutDescriptor(kStreamEventTag, Bytes().Put16(id).Put32(0xfffffffe).Put32(0).Put(data));
}

Written Written3d(const Bytes& body, unsigned extension = 1, unsigned version = 0) {
    return MakeSection({kStreamDescriptorTable, extension, version}, body);
}

Packets Packed(const Written& section, std::uint8_t continuity = 0) {
    Packets packets;
    Packetize(section, kPid, continuity, packets);
    return packets;
}

// What a collector makes of packets: the lengths of the sections' bodies.
struct Collected {
    SectionCollector collector;
    std::vector<std::size_t> bodies;
    void Push(const Packets& packets) {
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize)
            collector.Push(packets.data() + at,
                           [this](const Section& section) { bodies.push_back(section.body.size()); });
    }
};
using Sizes = std::vector<std::size_t>;

Written Long(std::size_t body) { return MakeSection({.table = 0x3c}, Bytes().Put(std::string(body, 'x'))); }

// Bytes behind a pointer to the first section that begins among them.
Packets PacketWith(std::uint8_t pointer, const std::vector<std::uint8_t>& bytes, unsigned continuity) {
    Packets payload{pointer};
    payload.insert(payload.end(), bytes.begin(), bytes.end());
    return MakePacket({.pid = kPid, .continuity = continuity, .startsUnit = true, .payload = payload});
}

std::vector<StreamEvent> EventsOf(const Written& bytes) {
    const auto section = ReadSection(bytes);
    return section ? EventsIn(*section) : std::vector<StreamEvent>{};
}

TEST(SectionCollectors, PutSectionsOfAnyLengthTogether) {
    Collected collected;
    std::uint8_t continuity = 9;
    Packets packets;
    for (const std::size_t size : {0u, 171u, 172u, 4084u}) Packetize(Long(size), kPid, continuity, packets);
    collected.Push(packets);
    EXPECT_EQ(collected.bodies, (Sizes{0, 171, 172, 4084}));
}

TEST(SectionCollectors, TakeSectionsThatShareAPacket) {
    const Written first = Long(100), second = Long(10), third = Long(150);
    std::vector<std::uint8_t> bytes = first;
    Append(bytes, second);
    Append(bytes, third);
    const std::ptrdiff_t cut = 183;
    Collected collected;
    collected.Push(PacketWith(0, {bytes.begin(), bytes.begin() + cut}, 0));
    EXPECT_EQ(collected.bodies, (Sizes{100, 10}));
    std::vector<std::uint8_t> rest{bytes.begin() + cut, bytes.end()};
    const auto pointer = static_cast<std::uint8_t>(rest.size());
    Append(rest, Long(1));
    collected.Push(PacketWith(pointer, rest, 1));
    EXPECT_EQ(collected.bodies, (Sizes{100, 10, 150, 1}));
}

TEST(SectionCollectors, TakeAPacketThatComesTwiceOnce) {
    Packets packets = Packed(Long(300));
    packets.insert(packets.begin(), packets.begin(), packets.begin() + kPacketSize);
    Collected collected;
    collected.Push(packets);
    EXPECT_EQ(collected.bodies, Sizes{300});
}

TEST(SectionCollectors, DropASectionOfWhichAPacketIsMissing) {
    Packets packets = Packed(Long(500));
    packets.erase(packets.begin() + kPacketSize, packets.begin() + 2 * kPacketSize);
    Collected collected;
    collected.Push(packets);
    EXPECT_TRUE(collected.bodies.empty());
    collected.Push(Packed(Long(7), 3));
    EXPECT_EQ(collected.bodies, Sizes{7});
}

TEST(SectionCollectors, DropASectionWithAWrongCrc) {
    for (const std::size_t at : {0u, 3u, 8u, 107u, 111u}) {
        Written section = Long(100);
        section[at] ^= 0x10;
        Collected collected;
        collected.Push(Packed(section));
        EXPECT_TRUE(collected.bodies.empty()) << at;
    }
}

TEST(SectionCollectors, DropWhatHasTheShortFormOrIsTooLongOrTooShort) {
    Collected collected;
    collected.Push(Packed(demonstration::MakeShortSection(0x3d, Bytes().Put("0123456789"))));
    Written tooLong = Long(4084);
    tooLong[1] = tooLong[2] = 0xff;  // 4095 bytes behind the length
    collected.Push(Packed(tooLong, 1));
    for (std::uint8_t length = 0; length < 9; ++length) {
        std::vector<std::uint8_t> bytes{0x3d, 0xb0, length};
        bytes.resize(3u + length, 0);
        collected.Push(PacketWith(0, bytes, (8u + length) & 15u));
    }
    EXPECT_TRUE(collected.bodies.empty());
}

TEST(SectionCollectors, DropWhatABrokenOrScrambledPacketBelongsTo) {
    for (const int damage : {0, 1}) {
        Packets packets = Packed(Long(500));
        (damage ? packets[kPacketSize + 1] : packets[kPacketSize + 3]) |= 0x80;
        Collected collected;
        collected.Push(packets);
        EXPECT_TRUE(collected.bodies.empty());
    }
}

TEST(SectionCollectors, DropAPointerBehindThePacket) {
    Collected collected;
    collected.Push(PacketWith(0xff, Long(10), 0));
    EXPECT_TRUE(collected.bodies.empty());
}

TEST(SectionCollectors, ReadOnlyWhatIsThereWhateverComes) {
    std::mt19937 random(1);
    Collected collected;
    for (unsigned i = 0; i < 20'000; ++i) {
        Packets packet(kPacketSize);
        for (auto& byte : packet) byte = static_cast<std::uint8_t>(random());
        SetContinuity(packet.data(), i);
        collected.Push(packet);
    }
    EXPECT_TRUE(collected.bodies.empty()) << "no CRC is right by chance so soon";
}

TEST(StreamEventSections, HoldAnEventWithItsData) {
    EXPECT_EQ(EventsOf(Written3d(Descriptor(0x1234, "go"))), (std::vector<StreamEvent>{{0x1234, {'g', 'o'}}}));
    EXPECT_EQ(EventsOf(Written3d(Descriptor(1, ""))), (std::vector<StreamEvent>{{1, {}}}));
}

TEST(StreamEventSections, MayHoldOtherDescriptorsAndSeveralEvents) {
    Bytes body;
    body.PutDescriptor(0x17, Bytes().Put32(0)).Put(Descriptor(1, "a")).Put(Descriptor(2, std::string(245, 'z')));
    const auto events = EventsOf(Written3d(body));
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[1].data.size(), 245u);
}

TEST(StreamEventSections, OfOtherTablesOfLaterOnesAndOfScheduledEventsHoldNone) {
    const Bytes body = Descriptor(1, "x");
    EXPECT_TRUE(EventsOf(MakeSection({.table = 0x3c, .extension = 1}, body)).empty());
    EXPECT_TRUE(EventsOf(Written3d(body, 0x8001)).empty());
    EXPECT_TRUE(EventsOf(Written3d(body, 0x4001)).empty());
    auto section = *ReadSection(Written3d(body));
    section.current = false;
    EXPECT_TRUE(EventsIn(section).empty());
}

TEST(StreamEventSections, WithWrongLengthsHoldNone) {
    EXPECT_TRUE(EventsOf(Written3d({})).empty());
    EXPECT_TRUE(EventsOf(Written3d(Bytes().Put8(kStreamEventTag))).empty());
    EXPECT_TRUE(EventsOf(Written3d(Bytes().Put8(kStreamEventTag).Put8(10).Put16(1))).empty());
    EXPECT_TRUE(EventsOf(Written3d(Bytes().PutDescriptor(kStreamEventTag, Bytes().Put16(1).Put32(0)))).empty());
    EXPECT_TRUE(EventsOf(Written3d(Descriptor(1, "x").Put8(0x1a).Put8(200))).empty()) << "not even the first";
}

TEST(StreamEventVersions, AreOneEventEach) {
    EventVersions versions;
    const auto isNew = [&](unsigned extension, unsigned version) {
        const Written bytes = Written3d({}, extension, version);
        return versions.IsNew(*ReadSection(bytes));
    };
    EXPECT_TRUE(isNew(1, 0));
    EXPECT_FALSE(isNew(1, 0));
    EXPECT_TRUE(isNew(1, 1));
    EXPECT_TRUE(isNew(2, 1)) << "another event";
    EXPECT_FALSE(isNew(1, 1));
    EXPECT_TRUE(isNew(1, 0)) << "versions begin again";
}

std::string Declared(const std::string& objects) {
    return "<?xml version=\"1.0\"?><dsmcc xmlns=\"urn:dvb:mis:dsmcc:2009\">" + objects + "</dsmcc>";
}

TEST(EventDeclarations, NameEventsOfComponents) {
    const auto declaration = ReadEventDeclaration(
        Declared("<dsmcc_object component_tag=\"10\">"
                 "<stream_event stream_event_id=\"1\" stream_event_name=\"goal\"/>"
                 "<stream_event stream_event_id=\"65535\" stream_event_name=\"&lt;&#x00fc;&gt;\"/></dsmcc_object>"
                 "<dsmcc_object component_tag=\"0xFF\">"
                 "<stream_event stream_event_id=\"1\" stream_event_name=\"end\"/></dsmcc_object>"));
    EXPECT_EQ(declaration.fault, "");
    EXPECT_EQ(declaration.events,
              (std::vector<DeclaredEvent>{{10, 1, "goal"}, {10, 65535, "<\u00fc>"}, {255, 1, "end"}}));
}

TEST(EventDeclarations, MayHaveAnyPrefix) {
    EXPECT_EQ(ReadEventDeclaration("<d:dsmcc xmlns:d=\"urn:dvb:mis:dsmcc:2009\"><d:dsmcc_object component_tag=\"1\">"
                                   "<d:stream_event stream_event_id=\"2\" stream_event_name=\"n\"></d:stream_event>"
                                   "</d:dsmcc_object></d:dsmcc>")
                  .events,
              (std::vector<DeclaredEvent>{{1, 2, "n"}}));
}

TEST(EventDeclarations, OfAnotherNamespaceOrOfNoneAreRefused) {
    const std::string rest = "<dsmcc_object component_tag=\"1\"><stream_event stream_event_id=\"2\" "
                             "stream_event_name=\"n\"/></dsmcc_object></dsmcc>";
    const auto other = ReadEventDeclaration("<dsmcc xmlns=\"urn:dvb:dsmcc:2009\">" + rest);
    EXPECT_TRUE(other.events.empty());
    EXPECT_EQ(other.fault, "its <dsmcc> is in the namespace \"urn:dvb:dsmcc:2009\"; it must begin with "
                           "<dsmcc xmlns=\"urn:dvb:mis:dsmcc:2009\">");
    const auto none = ReadEventDeclaration("<dsmcc>" + rest);
    EXPECT_TRUE(none.events.empty());
    EXPECT_EQ(none.fault,
              "its <dsmcc> is in no namespace; it must begin with <dsmcc xmlns=\"urn:dvb:mis:dsmcc:2009\">");
}

TEST(EventDeclarations, LeaveOutElementsAndAttributesOfOtherNamespaces) {
    const std::string event = "<stream_event stream_event_id=\"1\" stream_event_name=\"n\"/>";
    for (const std::string& object : std::vector<std::string>{
             "<dsmcc_object xmlns=\"urn:x\" component_tag=\"1\">" + event + "</dsmcc_object>",
             "<dsmcc_object component_tag=\"1\"><x:stream_event xmlns:x=\"urn:x\" stream_event_id=\"1\" "
             "stream_event_name=\"n\"/></dsmcc_object>",
             "<dsmcc_object xmlns:x=\"urn:x\" x:component_tag=\"1\">" + event + "</dsmcc_object>"}) {
        const auto declaration = ReadEventDeclaration(Declared(object));
        EXPECT_EQ(declaration.fault, "") << object;
        EXPECT_TRUE(declaration.events.empty()) << object;
    }
}

TEST(EventDeclarations, LeaveOutEntriesWithoutANumberOrAName) {
    for (const std::string& tag :
         std::vector<std::string>{"", "component_tag=\"\"", "component_tag=\"256\"", "component_tag=\"-1\"",
                                  "component_tag=\"1x\"", "component_tag=\"0x\""})
        EXPECT_TRUE(ReadEventDeclaration(Declared("<dsmcc_object " + tag +
                                                  "><stream_event stream_event_id=\"1\" "
                                                  "stream_event_name=\"n\"/></dsmcc_object>"))
                        .events.empty());
    const std::string object = "<dsmcc_object component_tag=\"1\">";
    for (const std::string& event : std::vector<std::string>{
             "<stream_event/>", "<stream_event stream_event_id=\"1\"/>", "<stream_event stream_event_name=\"n\"/>",
             "<stream_event stream_event_id=\"65536\" stream_event_name=\"n\"/>",
             "<x><stream_event stream_event_id=\"1\" stream_event_name=\"n\"/></x>"})
        EXPECT_TRUE(ReadEventDeclaration(Declared(object + event + "</dsmcc_object>")).events.empty()) << event;
    EXPECT_TRUE(
        ReadEventDeclaration(Declared("<stream_event stream_event_id=\"1\" stream_event_name=\"n\"/>")).events.empty());
}

TEST(EventDeclarations, SayWhatIsWrongWithThem) {
    EXPECT_EQ(ReadEventDeclaration("<dsmcc>\n<dsmcc_object>").fault, "it is no XML: no element found in line 2");
    EXPECT_EQ(ReadEventDeclaration("").fault, "it is no XML: no element found in line 1");
    EXPECT_EQ(ReadEventDeclaration("<html><dsmcc/></html>").fault,
              "its XML is no declaration of stream events, which begins with <dsmcc>");
}

}  // namespace
}  // namespace television::test
