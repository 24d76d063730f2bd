// Tables that nobody sends by mistake: lengths that lead out of their section, more services than there can be, texts
// and countries that are none.
#include <gtest/gtest.h>

#include "television/demonstration/SectionWriter.h"
#include "television/tables/DescriptorTags.h"
#include "television/tables/DvbText.h"
#include "television/tables/ProgrammeList.h"
#include "television/tables/SectionGate.h"
#include "television/tables/ServiceList.h"
#include "television/tables/TableReader.h"
#include "tests/television/Packets.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using demonstration::Section;

constexpr unsigned kPat = 0x00, kPmt = 0x02, kNit = 0x40, kSdt = 0x42, kEit = 0x4e;

class Reader {
public:
    void Read(const Section& section, std::uint16_t pid) {
        Packets packets;
        demonstration::Packetize(section, pid, m_continuity[pid], packets);
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize) m_reader.Push(packets.data() + at);
    }
    const Tables& Current() const { return m_reader.Current(); }

private:
    std::map<std::uint16_t, std::uint8_t> m_continuity;
    TableReader m_reader{[](const Tables&) {}};
};

Section Association(unsigned first, unsigned count, unsigned number = 0, unsigned last = 0) {
    Bytes body;
    for (unsigned sid = first; sid < first + count; ++sid) body.Put16(sid).Put16(0xe100);
    return MakeSection({kPat, 1, 0, number, last}, body);
}

bool Holds(unsigned table, const Bytes& body) { return LengthsHold(*ReadSection(MakeSection({.table = table}, body))); }

TEST(SectionGate, LetsNoLoopRunOverTheEndOfItsSection) {
    EXPECT_TRUE(Holds(kPat, Bytes().Put16(1).Put16(0xe100)));
    EXPECT_FALSE(Holds(kPat, Bytes().Put16(1)));
    EXPECT_TRUE(Holds(kPmt, Bytes().Put16(0xe101).PutLoop(Bytes().Put16(0x0900)).Put8(2).Put16(0xe101).PutLoop({})));
    EXPECT_FALSE(Holds(kPmt, Bytes().Put16(0xe101)));
    EXPECT_FALSE(Holds(kPmt, Bytes().Put16(0xe101).Put16(0xffff)));
    EXPECT_FALSE(Holds(kPmt, Bytes().Put16(0xe101).PutLoop({}).Put8(2).Put16(0xe101).Put16(0xf001)));
    EXPECT_TRUE(Holds(kSdt, Bytes().Put16(1).Put8(0xff).Put16(1).Put8(0xfc).PutLoop({})));
    EXPECT_FALSE(Holds(kSdt, Bytes().Put16(1)));
    EXPECT_FALSE(Holds(kSdt, Bytes().Put16(1).Put8(0xff).Put16(1).Put8(0xfc).Put16(0x8001)));
    EXPECT_TRUE(Holds(kNit, Bytes().PutLoop(Bytes().Put16(0x4000)).PutLoop(Bytes().Put32(1).PutLoop({}))));
    EXPECT_FALSE(Holds(kNit, Bytes().PutLoop({})));
    EXPECT_FALSE(Holds(kNit, Bytes().PutLoop(Bytes().Put16(0x40ff)).PutLoop({}))) << "a descriptor";
    EXPECT_FALSE(Holds(kNit, Bytes().PutLoop({}).PutLoop(Bytes().Put32(1).Put16(0xf001))));
    EXPECT_TRUE(Holds(kEit, Bytes().Put32(0).Put16(0).Put16(1).Put40(0).Put8(0).Put16(0).PutLoop({})));
    EXPECT_FALSE(Holds(kEit, Bytes().Put32(0)));
    EXPECT_FALSE(Holds(kEit, Bytes().Put32(0).Put16(0).Put16(1)));
}

TEST(SectionGate, PassesAGapInThePacketsOn) {
    SectionGate gate;
    std::vector<unsigned> counts;
    const auto push = [&](std::uint8_t continuity) {
        Packets packets;
        demonstration::Packetize(Association(5, 1), 0, continuity, packets);
        gate.Push(packets.data(), [&](const std::uint8_t* packet) { counts.push_back(ContinuityOf(packet)); });
    };
    push(7);
    push(8);
    push(10);
    EXPECT_EQ(counts, (std::vector<unsigned>{0, 1, 3}));
}

TEST(TableReader, IgnoresAMapWhoseLoopsLeadOutOfIt) {
    Reader reader;
    reader.Read(Association(5, 1), 0);
    Bytes nonsense = Bytes().Put16(0xe101).Put16(0xffff);
    while (nonsense.Size() < 1012) nonsense.Put8(0x55);
    reader.Read(MakeSection({.table = kPmt, .extension = 5}, nonsense), 0x100);
    EXPECT_TRUE(reader.Current().maps.empty());
    reader.Read(MakeSection({.table = kPmt, .extension = 5, .version = 1}, Bytes().Put16(0xe101).PutLoop({})), 0x100);
    EXPECT_EQ(reader.Current().maps.count(5), 1u) << "the next one is read";
}

TEST(TableReader, ReadsATableOfTheSameVersionAgainAfterAGap) {
    TableReader reader([](const Tables&) {});
    std::uint8_t continuity = 0;
    for (const unsigned sid : {5u, 6u}) {
        Packets packets;
        demonstration::Packetize(Association(sid, 1), 0, continuity, packets);
        reader.Push(packets.data());
        continuity = 9;
    }
    ASSERT_TRUE(reader.Current().association);
    EXPECT_EQ(reader.Current().association->services.front().sid, 6) << "it is another stream's";
}

TEST(TableReader, BelievesAThousandServicesOfEightThousand) {
    Reader reader;
    constexpr unsigned kCount = 8192, kInOne = 250, kLast = kCount / kInOne;
    for (unsigned number = 0; number <= kLast; ++number)
        reader.Read(Association(1 + number * kInOne, std::min(kInOne, kCount - number * kInOne), number, kLast), 0);
    ASSERT_TRUE(reader.Current().association);
    EXPECT_EQ(reader.Current().association->services.size(), 1024u);
    ServiceIds ids;
    EXPECT_EQ(ListServices(reader.Current(), ids).size(), 1024u);
}

// A present and a following event in two sections; where there are two hundred they are something else.
TEST(TableReader, KeepsNoEventsOfATableThatNeverEnds) {
    Reader reader;
    const Bytes event = Bytes().Put32(0).Put16(0).Put16(1).Put40(0).Put8(0).Put16(0).PutLoop({});
    for (unsigned number = 0; number < 200; ++number) reader.Read(MakeSection({kEit, 5, 0, number, 199}, event), 0x12);
    EXPECT_TRUE(reader.Current().events.empty());
    for (unsigned number = 0; number < 2; ++number) reader.Read(MakeSection({kEit, 5, 1, number, 1}, event), 0x12);
    ASSERT_EQ(reader.Current().events.count(5), 1u);
    EXPECT_EQ(reader.Current().events.at(5).size(), 2u);
}

TEST(DvbText, IsUtf8WhateverCallsItselfUtf8) {
    const auto decode = [](std::string_view text) {
        return DecodeText({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    };
    EXPECT_EQ(decode("\x15" "Caf\xc3\xa9"), "Café");
    const std::string beyond = decode("\x15" "a\xf6\x95\x82\x8a" "b");
    EXPECT_EQ(beyond.find('\xf6'), std::string::npos) << "beyond U+10FFFF";
    EXPECT_EQ(beyond.front(), 'a');
    EXPECT_EQ(beyond.back(), 'b');
    const std::string cut = decode("\x15\xbf\xff\xff\xff\xff\xff\xfb\x8a\x8a\x8a\x8a");
    for (std::size_t at = 0; at < cut.size(); at += 3) EXPECT_EQ(cut.substr(at, 3), "\xef\xbf\xbd") << at;
}

TEST(Programmes, HaveNoRatingsOfWhatIsNoCountry) {
    Tables tables;
    const std::vector<std::uint8_t> ratings{0xff, 0xfe, 0xfd, 9,   'D', 'E',  'U', 10,
                                            '9',  '0',  '2',  11, 'a', '\'', 'b', 12};
    tables.association = AssociationTable{1, {{5, 0x100}}, {}};
    tables.events[5].resize(1);
    tables.events[5][0].descriptors = {{kParentalRatingTag, ratings}};
    ServiceIds ids;
    const auto programmes = ListProgrammes(tables, ListServices(tables, ids).front());
    ASSERT_EQ(programmes.size(), 1u);
    ASSERT_EQ(programmes[0].ratings.size(), 2u);
    EXPECT_EQ(programmes[0].ratings[0].country, "DEU");
    EXPECT_EQ(programmes[0].ratings[1].country, "902");
}

}  // namespace
}  // namespace television::test
